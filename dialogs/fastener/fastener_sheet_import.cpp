#include "dialogs/fastener/fastener_sheet_import.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

#include "app/assembly_rules_app.h"
#include "controls/sheet_import.h"
#include "dialogs/common/fastener_additions.h"
#include "dialogs/database/fastener_error_dlg.h"
#include "framework/case_fold.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"
#include "util/number_text.h"

namespace {
const std::wstring kNoText;

// The sheet columns A, B, ... as letters.
std::vector<SpreadsheetColumn> FirstColumns(size_t count) {
    std::vector<SpreadsheetColumn> columns;
    for (size_t i = 0; i < count; ++i)
        columns.push_back({std::wstring(1, static_cast<wchar_t>(L'A' + i))});
    return columns;
}

// True when the columns' first texts are the layout's headings, letter case aside, and the name
// column holds more than its heading.
bool Matches(const FastenerSheetLayout& layout, const SpreadsheetTable& columns) {
    if (columns.empty() || columns.front().size() < 2) return false;
    for (size_t i = 0; i < layout.headings.size(); ++i) {
        if (i >= columns.size() || columns[i].empty()) return false;
        if (!ZebEqualsNoCase(columns[i].front(), layout.headings[i])) return false;
    }
    return true;
}

void WarnWith(QWidget* parent, ZebStringId message) {
    ZebUiMessage(parent, LoadLocalizedString(message), ZebMsgIcon::Warning, ZebMsgButtons::Ok);
}

// One row in the merge: a table row (first) or a sheet row (after them), by upper-case name.
struct MergeEntry {
    std::wstring name;
    size_t order;
    std::array<double, kMaxFastenerValues> values;
};
}  // namespace

const std::wstring& FastenerSheetRow::Under(const std::wstring& heading) const {
    // The headings asked for are the layouts' own, so they compare as written.
    for (size_t i = 0; i < m_layout->headings.size(); ++i)
        if (m_layout->headings[i] == heading) return At(static_cast<int>(i));
    return kNoText;
}

const std::wstring& FastenerSheetRow::At(int column) const {
    return column >= 0 && column < static_cast<int>(m_layout->headings.size()) ? m_cells[column]
                                                                               : kNoText;
}

bool CFastenerSheetImport::Read(QWidget* parent, int32_t tableUnit) {
    if (!ChooseSpreadsheet(parent, m_path)) return false;
    size_t width = 0;
    for (const FastenerSheetLayout& layout : m_kind.layouts)
        width = std::max(width, layout.headings.size());
    if (m_secondList) ++width;
    SpreadsheetTable table;
    if (!ReadImportColumns(parent, m_path, FirstColumns(width), table)) return false;
    BuildImportLogPath(m_path, m_kind.logSuffix, m_logPath);

    const auto matching =
        std::find_if(m_kind.layouts.begin(), m_kind.layouts.end(), [&](FastenerSheetLayout layout) {
            if (m_secondList) layout.headings.push_back(L"N");
            return Matches(layout, table);
        });
    if (matching == m_kind.layouts.end()) {
        WarnWith(parent, IDS_SHEET_LAYOUT_UNEXPECTED);
        return false;
    }
    m_layout = *matching;
    if (m_secondList) m_layout.headings.push_back(L"N");
    m_conversion = ConversionForSheet(parent, m_path, tableUnit);
    m_width = m_layout.headings.size();
    const size_t names = table.front().size();
    if (m_secondList) {
        const std::list<std::wstring>& thread = table[m_width - 1];
        const bool complete =
            thread.size() == names && std::none_of(thread.begin(), thread.end(),
                                                   [](const std::wstring& t) { return t.empty(); });
        if (!complete) {
            WarnWith(parent, IDS_SHEET_ROWS_INVALID);
            return false;
        }
    }
    // The cells row after row, the heading row left out.
    m_cells.assign((names - 1) * m_width, std::wstring());
    for (size_t column = 0; column < m_width; ++column) {
        size_t row = 0;
        for (auto cell = std::next(table[column].begin());
             cell != table[column].end() && row + 1 < names; ++cell, ++row)
            m_cells[row * m_width + column] = std::move(*cell);
    }
    return true;
}

bool CFastenerSheetImport::CheckRows(QWidget* parent) {
    std::vector<std::wstring> blocking, repeated;
    std::unordered_set<std::wstring_view> seen;
    seen.reserve(RowCount());
    for (size_t i = 0; i < RowCount(); ++i) {
        const FastenerSheetRow row = Row(i);
        if (m_kind.rowBlocks(row)) blocking.push_back(row.Name());
        if (!seen.insert(row.Name()).second) repeated.push_back(row.Name());
    }
    WriteImportLogPass(m_logPath, true, LoadLocalizedString(IDS_LOG_INVALID_VALUES), blocking);
    WriteImportLogPass(m_logPath, false, LoadLocalizedString(IDS_LOG_REPEATED_NAMES), repeated);
    if (!blocking.empty()) {
        ShowLog(parent, false);
        return false;
    }
    const std::vector<RefusedSheetValue> refused = RefusedValues();
    if (!refused.empty()) {
        WriteImportLogPass(m_logPath, false, LoadLocalizedString(IDS_LOG_REFUSED_VALUES),
                           RefusedValueLines(refused));
        ShowRefusedValues(parent, refused);
        return false;
    }
    if (repeated.empty()) return true;
    m_confirmed = ShowLog(parent, true);
    return m_confirmed;
}

bool CFastenerSheetImport::MergeInto(QWidget* parent, std::vector<CZebGridModel::Row>& rows,
                                     FastenerAdditions& additions) {
    // The table's rows down to the first without a name, then the sheet's rows; sorted by name
    // and then by that order, the last entry of each name is the one that stays.
    std::vector<MergeEntry> entries;
    entries.reserve(rows.size() + RowCount());
    for (const CZebGridModel::Row& row : rows) {
        if (row.empty() || row.front().empty()) break;
        MergeEntry entry{ZebUpperCase(row.front()), entries.size(), {}};
        for (int i = 0; i < m_kind.valueCount; ++i)
            entry.values[i] =
                CellNumber(i + 1 < static_cast<int>(row.size()) ? row[i + 1] : kNoText, false);
        entries.push_back(std::move(entry));
    }
    const size_t tableRows = entries.size();
    for (size_t i = 0; i < RowCount(); ++i) {
        const FastenerSheetRow row = Row(i);
        MergeEntry entry{ZebUpperCase(row.Name()), entries.size(), {}};
        for (size_t cell = 0; cell < m_layout.valueColumns.size(); ++cell)
            entry.values[cell] = CellNumber(row.At(m_layout.valueColumns[cell]), true);
        entries.push_back(std::move(entry));
    }
    std::vector<size_t> sorted(entries.size());
    for (size_t i = 0; i < sorted.size(); ++i) sorted[i] = i;
    std::sort(sorted.begin(), sorted.end(), [&](size_t a, size_t b) {
        return entries[a].name != entries[b].name ? entries[a].name < entries[b].name : a < b;
    });

    // Sheet rows whose name the table holds are logged; a sheet row that replaces an entry needs
    // the user's word, once.
    std::vector<size_t> alreadyHeld;
    bool replaces = false;
    for (size_t first = 0, next = 0; first < sorted.size(); first = next) {
        next = first + 1;
        while (next < sorted.size() && entries[sorted[next]].name == entries[sorted[first]].name)
            ++next;
        if (next - first > 1 && sorted[next - 1] >= tableRows) replaces = true;
        if (sorted[first] >= tableRows) continue;
        for (size_t i = first + 1; i < next; ++i)
            if (sorted[i] >= tableRows) alreadyHeld.push_back(sorted[i] - tableRows);
    }
    std::sort(alreadyHeld.begin(), alreadyHeld.end());
    std::vector<std::wstring> heldNames;
    for (size_t row : alreadyHeld) heldNames.push_back(Row(row).Name());
    WriteImportLogPass(m_logPath, false, L"", heldNames);
    if (replaces && !m_confirmed) m_confirmed = ShowLog(parent, true);
    if (replaces && !m_confirmed) return false;

    const std::wstring separator = UserDecimalSeparator();
    std::vector<CZebGridModel::Row> refilled;
    refilled.reserve(entries.size() + rows.size());
    for (size_t i = 0; i < sorted.size(); ++i) {
        if (i + 1 < sorted.size() && entries[sorted[i + 1]].name == entries[sorted[i]].name)
            continue;
        MergeEntry& entry = entries[sorted[i]];
        CZebGridModel::Row row;
        row.reserve(1 + m_kind.valueCount);
        row.push_back(std::move(entry.name));
        for (int cell = 0; cell < m_kind.valueCount; ++cell)
            row.push_back(entry.values[cell] == kEmptyFastenerValue
                              ? std::wstring()
                              : FormatTrimmedNumber(entry.values[cell], separator));
        refilled.push_back(std::move(row));
    }
    const size_t merged = refilled.size();
    for (size_t i = 0; i < rows.size(); ++i)
        refilled.push_back(i < merged ? CZebGridModel::Row{} : std::move(rows[i]));
    rows = std::move(refilled);

    for (size_t i = 0; i < RowCount(); ++i) {
        const FastenerSheetRow row = Row(i);
        const std::wstring name = ZebUpperCase(row.Name());
        if (m_secondList)
            additions.RecordThread(ZebUpperCase(row.At(static_cast<int>(m_width) - 1)), name);
        else
            additions.RecordName(name);
    }
    return true;
}

bool CFastenerSheetImport::ShowLog(QWidget* parent, bool isWarning) const {
    CZEBFastenerErrorDlg dialog(m_logPath, isWarning ? 1 : 0, isWarning ? 0 : 1, parent);
    return dialog.DoModal() == 1;
}

double CFastenerSheetImport::CellNumber(const std::wstring& text, bool fromSheet) const {
    if (text.empty() && !m_kind.emptyReadsAsZero) return kEmptyFastenerValue;
    // Values that cannot be read were refused before the merge; a table cell holds what its
    // editor took.
    const NumberEntry entry = fromSheet ? ImportLength(text, m_conversion) : ReadNumberEntry(text);
    return entry.Ok() ? entry.value : 0.0;
}

std::vector<RefusedSheetValue> CFastenerSheetImport::RefusedValues() const {
    std::vector<RefusedSheetValue> refused;
    for (size_t i = 0; i < RowCount(); ++i) {
        for (const int column : m_layout.valueColumns) {
            const std::wstring& text = Row(i).At(column);
            if (text.empty()) continue;
            const NumberEntry entry = ReadNumberEntry(text);
            // Row 1 holds the headings.
            if (!entry.Ok())
                refused.push_back({i + 2, std::wstring(1, static_cast<wchar_t>(L'A' + column)),
                                   text, entry.fault});
        }
    }
    return refused;
}
