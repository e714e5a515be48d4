#include "framework/db/case_fold.h"

#include <clocale>
#include <cwctype>
#include <locale.h>

namespace zeb_db {

std::wstring FoldCase(std::wstring_view text) {
    // The user's locale may be "C", which folds ASCII only; the built-in C.UTF-8 locale folds
    // every letter.
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    std::wstring folded;
    folded.reserve(text.size());
    for (const wchar_t c : text)
        folded.push_back(static_cast<wchar_t>(unicode ? towlower_l(c, unicode) : std::towlower(c)));
    return folded;
}

}  // namespace zeb_db
