#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "framework/vantor_export.h"

// All text of the system is wide; files, XML and the terminal are UTF-8.
VANTOR_FW_API std::string ToUtf8(std::wstring_view text);
VANTOR_FW_API std::wstring FromUtf8(std::string_view text);

// Appends `text` as UTF-8 to `out`, as ToUtf8 converts it; for a buffer reused over many texts.
VANTOR_FW_API void AppendUtf8(std::string& out, std::wstring_view text);
// Writes the code point `c` as UTF-8 to `out`, which has room for 4 bytes, and returns the end.
// What is no Unicode scalar value is written as U+FFFD, as ToUtf8 writes it.
VANTOR_FW_API char* WriteUtf8(char32_t c, char* out);
// Writes `text` widened as FromUtf8 widens it to `out`, which has room for text.size()
// characters (never more are needed), and returns how many were written. No L'\0' is added.
VANTOR_FW_API size_t Utf8ToWide(std::string_view text, wchar_t* out);
