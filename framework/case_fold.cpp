#include "framework/case_fold.h"

#include <locale.h>

#include <cwctype>

namespace {
// The user's locale may be "C", which folds ASCII only; the built-in C.UTF-8 locale folds every
// letter.
locale_t Unicode() {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    return unicode;
}

wchar_t Fold(wchar_t c) {
    return static_cast<wchar_t>(Unicode() ? towlower_l(c, Unicode()) : std::towlower(c));
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

std::wstring ZebUpperCase(std::wstring_view text) {
    std::wstring upper;
    upper.reserve(text.size());
    for (const wchar_t c : text)
        upper.push_back(
            static_cast<wchar_t>(Unicode() ? towupper_l(c, Unicode()) : std::towupper(c)));
    return upper;
}
