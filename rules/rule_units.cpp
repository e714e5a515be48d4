#include "rules/rule_units.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "framework/unit_convertor.h"
#include "util/number_text.h"

double ConvertLength(double value, int32_t from, int32_t to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(value, 1, from, to);
}

void ConvertLengthCells(ZebTypedParam<ZebRow>* table, std::initializer_list<size_t> columns,
                        int32_t from, int32_t to) {
    if (!table) return;
    // The separator is looked up once: tables reach hundreds of thousands of rows.
    NumberTextWriter number(UserDecimalSeparator());
    const size_t needed = columns.size() == 0 ? 0 : std::max(columns) + 1;
    // Each row is built again once, with all its converted cells, rather than once per cell.
    std::vector<std::wstring> converted(needed);
    std::vector<std::wstring_view> cells;
    for (ZebRow& row : table->values) {
        if (row.size() < needed) continue;
        cells.assign(row.begin(), row.end());
        for (size_t column : columns) {
            converted[column] = number.Format(ConvertLength(ParseNumber(row[column]), from, to));
            cells[column] = converted[column];
        }
        row = ZebRow(cells.begin(), cells.end());
    }
}

bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to) {
    return from && to && from->LengthUnit != to->LengthUnit;
}
