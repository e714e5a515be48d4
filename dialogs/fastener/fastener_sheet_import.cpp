#include "dialogs/fastener/fastener_sheet_import.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "app/assembly_rules_app.h"
#include "database/fastener_error_dlg.h"
#include "dialogs/common/fastener_additions.h"
#include "dialogs/common/sheet_import.h"
#include "framework/case_fold.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"
#include "util/number_text.h"

namespace {
const std::wstring kNoText;

// The sheet columns A, B, ... as letters.
std::vector<SpreadsheetColumn> FirstColumns(size_t count) {
    std::vector<SpreadsheetColumn> columns;
    for (size_t i = 0; i < count; ++i) columns.push_back({std::wstring(1, static_cast<wchar_t>(L'A' + i))});
    return columns;
}

// True when the columns' first texts are the layout's headings, letter case aside, and the name
// column holds more than its heading.
bool Matches(const FastenerSheetLayout& layout, const std::vector<std::vector<std::wstring>>& columns) {
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
}  // namespace

const std::wstring& FastenerSheetRow::Under(const std::wstring& heading) const {
    for (size_t i = 0; i < m_layout->headings.size(); ++i)
        if (ZebEqualsNoCase(m_layout->headings[i], heading)) return At(static_cast<int>(i));
    return kNoText;
}

const std::wstring& FastenerSheetRow::At(int column) const {
    return column >= 0 && column < static_cast<int>(m_cells.size()) ? m_cells[column] : kNoText;
}

bool CFastenerSheetImport::Read(QWidget* parent) {
    if (!ChooseSpreadsheet(parent, m_path)) return false;
    size_t width = 0;
    for (const FastenerSheetLayout& layout : m_kind.layouts) width = std::max(width, layout.headings.size());
    if (m_secondList) ++width;
    SpreadsheetTable table;
    if (!ReadImportColumns(parent, m_path, FirstColumns(width), table)) return false;
    std::vector<std::vector<std::wstring>> columns;
    for (std::list<std::wstring>& column : table)
        columns.emplace_back(std::make_move_iterator(column.begin()), std::make_move_iterator(column.end()));
    BuildImportLogPath(m_path, m_kind.logSuffix, m_logPath);

    const auto matching = std::find_if(m_kind.layouts.begin(), m_kind.layouts.end(), [&](FastenerSheetLayout layout) {
        if (m_secondList) layout.headings.push_back(L"N");
        return Matches(layout, columns);
    });
    if (matching == m_kind.layouts.end()) {
        WarnWith(parent, IDS_SHEET_LAYOUT_UNEXPECTED);
        return false;
    }
    m_layout = *matching;
    const size_t names = columns.front().size();
    if (m_secondList) {
        m_layout.headings.push_back(L"N");
        const std::vector<std::wstring>& thread = columns[m_layout.headings.size() - 1];
        const bool complete = thread.size() == names &&
                              std::none_of(thread.begin(), thread.end(), [](const std::wstring& t) { return t.empty(); });
        if (!complete) {
            WarnWith(parent, IDS_SHEET_ROWS_INVALID);
            return false;
        }
    }
    m_rows.clear();
    m_rows.reserve(names - 1);
    for (size_t row = 1; row < names; ++row) {
        std::vector<std::wstring> cells;
        for (size_t column = 0; column < m_layout.headings.size(); ++column)
            cells.push_back(row < columns[column].size() ? std::move(columns[column][row]) : std::wstring());
        m_rows.emplace_back(m_layout, std::move(cells));
    }
    return true;
}

bool CFastenerSheetImport::CheckRows(QWidget* parent) {
    std::vector<std::wstring> blocking, repeated;
    std::set<std::wstring> seen;
    for (const FastenerSheetRow& row : m_rows) {
        if (m_kind.rowBlocks(row)) blocking.push_back(row.Name());
        if (!seen.insert(row.Name()).second) repeated.push_back(row.Name());
    }
    WriteImportLogPass(m_logPath, true, LoadLocalizedString(IDS_LOG_INVALID_VALUES), blocking);
    WriteImportLogPass(m_logPath, false, LoadLocalizedString(IDS_LOG_REPEATED_NAMES), repeated);
    if (!blocking.empty()) {
        ShowLog(parent, false);
        return false;
    }
    if (repeated.empty()) return true;
    m_confirmed = ShowLog(parent, true);
    return m_confirmed;
}

bool CFastenerSheetImport::MergeInto(QWidget* parent, std::vector<CZebGridModel::Row>& rows,
                                     FastenerAdditions& additions) {
    using Values = std::vector<double>;
    std::map<std::wstring, Values> merged;
    for (const CZebGridModel::Row& row : rows) {
        if (row.empty() || row.front().empty()) break;
        Values values;
        for (int i = 1; i <= m_kind.valueCount; ++i)
            values.push_back(CellNumber(i < static_cast<int>(row.size()) ? row[i] : kNoText));
        merged[ZebUpperCase(row.front())] = std::move(values);
    }

    std::vector<std::wstring> alreadyHeld;
    for (const FastenerSheetRow& row : m_rows)
        if (merged.count(ZebUpperCase(row.Name()))) alreadyHeld.push_back(row.Name());
    WriteImportLogPass(m_logPath, false, L"", alreadyHeld);

    FastenerAdditions imported;
    for (const FastenerSheetRow& row : m_rows) {
        const std::wstring name = ZebUpperCase(row.Name());
        Values values;
        for (int column : m_layout.valueColumns) values.push_back(CellNumber(row.At(column)));
        auto [entry, added] = merged.try_emplace(name, values);
        if (!added) {
            // The first name the table holds already asks once, unless the repeats did.
            if (!m_confirmed) m_confirmed = ShowLog(parent, true);
            if (!m_confirmed) return false;
            entry->second = std::move(values);
        }
        if (m_secondList) imported.RecordThread(ZebUpperCase(row.At(static_cast<int>(m_layout.headings.size()) - 1)), name);
        else imported.RecordName(name);
    }

    std::vector<CZebGridModel::Row> refilled;
    refilled.reserve(merged.size() + rows.size());
    for (auto& [name, values] : merged) {
        CZebGridModel::Row row{name};
        for (double value : values) row.push_back(value == kEmptyFastenerValue ? std::wstring() : FormatNumber(value));
        refilled.push_back(std::move(row));
    }
    for (size_t i = 0; i < rows.size(); ++i)
        refilled.push_back(i < merged.size() ? CZebGridModel::Row{} : std::move(rows[i]));
    rows = std::move(refilled);
    additions.names.insert(additions.names.end(), imported.names.begin(), imported.names.end());
    additions.threads.insert(additions.threads.end(), imported.threads.begin(), imported.threads.end());
    return true;
}

bool CFastenerSheetImport::ShowLog(QWidget* parent, bool isWarning) const {
    CZEBFastenerErrorDlg dialog(m_logPath, isWarning ? 1 : 0, isWarning ? 0 : 1, parent);
    return dialog.DoModal() == 1;
}

double CFastenerSheetImport::CellNumber(const std::wstring& text) const {
    if (text.empty() && !m_kind.emptyReadsAsZero) return kEmptyFastenerValue;
    return ParseNumber(text);
}
