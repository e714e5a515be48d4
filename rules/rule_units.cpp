#include "rules/rule_units.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "framework/parallel_ranges.h"
#include "framework/unit_convertor.h"
#include "util/number_text.h"

double ConvertLength(double value, int32_t from, int32_t to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(value, 1, from, to);
}

void ConvertLengthCells(ZebTypedParam<ZebRow>* table, std::initializer_list<size_t> columns,
                        int32_t from, int32_t to) {
    if (!table) return;
    // The separator and the factor are worked out once: tables reach hundreds of thousands of
    // rows, which are converted in ranges at once.
    const std::wstring separator = UserDecimalSeparator();
    const ZebUnitScale scale(from, to, 1);
    const size_t needed = columns.size() == 0 ? 0 : std::max(columns) + 1;
    ZebArray<ZebRow>& rows = table->values;
    ZebForRanges(static_cast<size_t>(rows.GetSize()), [&](size_t begin, size_t end) {
        NumberTextWriter number(separator);
        std::vector<std::wstring> converted(columns.size());
        std::vector<std::wstring_view> cells;
        for (size_t r = begin; r < end; ++r) {
            ZebRow& row = rows[static_cast<int32_t>(r)];
            if (row.size() < needed) continue;
            bool sameLengths = true;
            size_t k = 0;
            for (size_t column : columns) {
                converted[k] = number.Format(scale.Apply(ParseNumber(row[column])));
                sameLengths = sameLengths && converted[k].size() == row[column].size();
                ++k;
            }
            if (sameLengths) {
                // Each text goes where the old one stands.
                k = 0;
                for (size_t column : columns) row.Set(column, converted[k++]);
                continue;
            }
            // Otherwise the row is built again once, with all its new cells.
            cells.assign(row.begin(), row.end());
            k = 0;
            for (size_t column : columns) cells[column] = converted[k++];
            row = ZebRow(cells.begin(), cells.end());
        }
    });
}

bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to) {
    return from && to && from->LengthUnit != to->LengthUnit;
}
