#pragma once

#include <string>
#include <string_view>

#include "framework/vantor_export.h"

// The one rule for names compared without regard to letter case: every letter is taken in lower
// case as Unicode has it, whatever the user's locale, so that "ISO 4017 m8" and "ISO 4017 M8" or
// "Stähle" and "STÄHLE" are one name everywhere: in tables, drop-downs, the catalogue and the
// database.

// The key under which a name is unique: the name with every letter in lower case.
VANTOR_FW_API std::wstring ZebFoldCase(std::wstring_view text);
// True when both texts fold to the same key.
VANTOR_FW_API bool ZebEqualsNoCase(std::wstring_view a, std::wstring_view b);
// The text with every letter in upper case, by the same rule.
VANTOR_FW_API std::wstring ZebUpperCase(std::wstring_view text);
