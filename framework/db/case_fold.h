#pragma once

#include <string>
#include <string_view>

namespace zeb_db {

// The key under which a name is unique: the name in lower case, independent of the user's
// locale, so that "ISO 4017 m8" and "ISO 4017 M8" or "Stähle" and "STÄHLE" are one name.
std::wstring FoldCase(std::wstring_view text);

}  // namespace zeb_db
