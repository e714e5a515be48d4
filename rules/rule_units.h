#pragma once

#include <string>

#include "framework/zeb_types.h"

// A length from one unit code to another.
double ConvertLength(double value, int32_t from, int32_t to);
// Cell `index` of `row`, holding a length: read as number text, converted, written back as
// number text. Text that is not a number converts as 0.
void ConvertCell(ZebRow& row, size_t index, int32_t from, int32_t to);
// True when both settings are given and their length units differ.
bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to);
