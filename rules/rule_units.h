#pragma once

#include <string>

#include "framework/param_storage.h"
#include "framework/zeb_types.h"
#include "util/rule_params.h"

// A length from one unit code to another.
double ConvertLength(double value, int32_t from, int32_t to);
// The length cells of table `spec` in every row of `table` that has them all: read as number
// text, converted, written back as number text. Text that is not a number converts as 0.
void ConvertLengthCells(ZebTypedParam<ZebRow>* table, const ParamSpec& spec, int32_t from,
                        int32_t to);
// True when both settings are given and their length units differ.
bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to);
