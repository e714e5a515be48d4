#include "util/component_names.h"

void SplitComponentName(std::wstring& name, std::wstring& extension) {
    for (const wchar_t* candidate : {L".prt", L".asm"}) {
        const size_t at = name.find(candidate);
        if (at != std::wstring::npos) {
            name.erase(at + 4);
            extension = candidate;
            return;
        }
    }
    extension.clear();
}

bool ComponentNamesDiffer(const std::wstring& first, const std::wstring& second) {
    std::wstring a = first, b = second, extA, extB;
    SplitComponentName(a, extA);
    SplitComponentName(b, extB);
    if (a != b) return true;
    return !extA.empty() && !extB.empty() && extA != extB;
}
