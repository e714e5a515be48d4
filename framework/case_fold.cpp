#include "framework/case_fold.h"

#include <locale.h>

#include <cwctype>

namespace {
// The user's locale may be "C", which folds ASCII only; the built-in C.UTF-8 locale folds every
// letter.
wchar_t Fold(wchar_t c) {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    return static_cast<wchar_t>(unicode ? towlower_l(c, unicode) : std::towlower(c));
}
}  // namespace

std::wstring ZebFoldCase(std::wstring_view text) {
    std::wstring folded;
    folded.reserve(text.size());
    for (const wchar_t c : text) folded.push_back(Fold(c));
    return folded;
}

bool ZebEqualsNoCase(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && Fold(a[i]) != Fold(b[i])) return false;
    return true;
}
