#include "rules/rule_units.h"

#include "framework/unit_convertor.h"
#include "util/number_text.h"

double ConvertLength(double value, int32_t from, int32_t to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(value, 1, from, to);
}

void ConvertCell(std::wstring& cell, int32_t from, int32_t to) {
    cell = FormatNumber(ConvertLength(ParseNumber(cell), from, to));
}

bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to) {
    return from && to && from->LengthUnit != to->LengthUnit;
}
