#pragma once

#include <cstdint>
#include <string_view>

#include "framework/vantor_export.h"

// The fixed texts of the operator codes (ZebOperator_e): 1 "RANGE", 3 "=", 5 "<", 6 ">", 7 ">=",
// 8 "<=". Null for a code without a text.
VANTOR_FW_API const wchar_t* ZebOperatorText(int32_t code);
// The code whose text equals `text` without regard to case; 0 for any other text.
VANTOR_FW_API int32_t ZebOperatorFromText(std::wstring_view text);
