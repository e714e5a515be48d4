#pragma once

#include <string>
#include <string_view>

#include "framework/vantor_export.h"

// All text of the system is wide; files, XML and the terminal are UTF-8.
VANTOR_FW_API std::string ToUtf8(std::wstring_view text);
VANTOR_FW_API std::wstring FromUtf8(std::string_view text);
