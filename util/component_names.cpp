#include "util/component_names.h"

#include "framework/case_fold.h"

void SplitComponentName(std::wstring& name, std::wstring& extension) {
    // Extensions are found as names compare everywhere: without regard to letter case.
    const std::wstring folded = ZebFoldCase(name);
    const std::wstring& searched = folded.size() == name.size() ? folded : name;
    for (const wchar_t* candidate : {L".prt", L".asm"}) {
        const size_t at = searched.find(candidate);
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
    if (!ZebEqualsNoCase(a, b)) return true;
    return !extA.empty() && !extB.empty() && extA != extB;
}
