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

namespace {
// Converts the length cells of one row after another. Each range of rows has one of its own, with
// its own copies of what it reads for every cell, so that ranges running at once share nothing
// in their way.
class LengthCellConverter {
public:
    LengthCellConverter(const std::vector<size_t>& columns, const ZebUnitScale& scale,
                        const std::wstring& separator)
        : m_columns(columns),
          m_needed(columns.empty() ? 0 : *std::max_element(columns.begin(), columns.end()) + 1),
          m_scale(scale),
          m_number(separator),
          m_converted(columns.size()) {}

    void Convert(ZebRow& row) {
        if (row.size() < m_needed) return;
        bool sameLengths = true;
        for (size_t k = 0; k < m_columns.size(); ++k) {
            const std::wstring_view old = row[m_columns[k]];
            // An empty cell holds no value: it stays empty, not 0.
            if (old.empty())
                m_converted[k].clear();
            else
                m_converted[k] = m_number.Format(m_scale.Apply(ParseNumber(old)));
            sameLengths = sameLengths && m_converted[k].size() == old.size();
        }
        if (sameLengths) {
            // Each text goes where the old one stands.
            for (size_t k = 0; k < m_columns.size(); ++k) row.Set(m_columns[k], m_converted[k]);
            return;
        }
        // Otherwise the row is built again once, with all its new cells.
        m_cells.assign(row.begin(), row.end());
        for (size_t k = 0; k < m_columns.size(); ++k) m_cells[m_columns[k]] = m_converted[k];
        row = ZebRow(m_cells.begin(), m_cells.end());
    }

private:
    const std::vector<size_t> m_columns;
    const size_t m_needed;
    const ZebUnitScale m_scale;
    NumberTextWriter m_number;
    std::vector<std::wstring> m_converted;
    std::vector<std::wstring_view> m_cells;
};
}  // namespace

void ConvertLengthCells(ZebTypedParam<ZebRow>* table, const ParamSpec& spec, int32_t from,
                        int32_t to) {
    if (!table) return;
    std::vector<size_t> columns;
    for (size_t c = 0; c < spec.columns.count; ++c)
        if (spec.columns.cells[c] == ParamCell::Length) columns.push_back(c);
    // The separator and the factor are worked out once: tables reach hundreds of thousands of
    // rows, which are converted in ranges at once.
    const std::wstring separator = UserDecimalSeparator();
    const ZebUnitScale scale(from, to, 1);
    ZebArray<ZebRow>& rows = table->values;
    ZebForRanges(static_cast<size_t>(rows.GetSize()), [&](size_t begin, size_t end) {
        LengthCellConverter converter(columns, scale, separator);
        ZebRow* const first = rows.begin();
        for (size_t r = begin; r < end; ++r) converter.Convert(first[r]);
    });
}

bool LengthUnitsDiffer(const UnitSetting* from, const UnitSetting* to) {
    return from && to && from->LengthUnit != to->LengthUnit;
}
