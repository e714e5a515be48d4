#include "rules/rule_units.h"

#include "framework/unit_convertor.h"
#include "util/number_text.h"

double ConvertLength(double value, int32_t from, int32_t to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(value, 1, from, to);
}

void ConvertCell(ZebRow& row, size_t index, int32_t from, int32_t to) {
    row.Set(index, FormatNumber(ConvertLength(ParseNumber(row[index]), from, to)));
}

bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to) {
    return from && to && from->LengthUnit != to->LengthUnit;
}
