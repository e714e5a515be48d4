#include "dialogs/parts/component_table_import.h"

#include <algorithm>

#include "app/assembly_rules_app.h"
#include "controls/sheet_import.h"
#include "controls/zeb_list_ctrl.h"
#include "framework/resource_library.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"

std::vector<SpreadsheetColumn> SheetColumnsOf(const ParamColumns& cells) {
    std::vector<SpreadsheetColumn> columns;
    for (size_t c = 0; c < cells.count; ++c)
        columns.push_back({std::wstring(1, static_cast<wchar_t>(L'A' + c)),
                           cells.cells[c] == ParamCell::Length ? kSpreadsheetDecimalColumn : 0});
    return columns;
}

std::vector<CZebGridModel::Row> PlaceImportedColumns(std::vector<CZebGridModel::Row> rows,
                                                     const SpreadsheetTable& imported,
                                                     const ComponentImportLayout& layout,
                                                     int leastEmptied, int& count) {
    size_t largest = 0;
    for (const auto& column : imported) largest = std::max(largest, column.size());
    const size_t emptied = std::max<size_t>(
        std::max<size_t>(largest, static_cast<size_t>(layout.leastRows)) + layout.rowsBelow,
        static_cast<size_t>(std::max(leastEmptied, 0)));
    if (rows.size() < emptied) rows.resize(emptied);
    const size_t clearTo = layout.emptyEveryRow ? rows.size() : emptied;
    for (size_t i = 0; i < clearTo; ++i) rows[i].clear();

    count = static_cast<int>(largest);
    for (size_t c = 0; c < imported.size(); ++c) {
        size_t row = 0;
        for (const std::wstring& name : imported[c]) {
            if (layout.stopAtEmptyName && name.empty()) {
                count = 0;
                return rows;
            }
            CZebGridModel::Row& cells = rows[row++];
            if (cells.size() < c + 2) cells.resize(c + 2);
            cells[c + 1] = name;
        }
    }
    return rows;
}

namespace {
// The lengths of the imported column in the table's unit and number text; false, after the
// refused values were listed and logged, when some cannot be read.
bool TakeLengths(QWidget* parent, const std::wstring& path, const ComponentImportLayout& layout,
                 std::list<std::wstring>& lengths, int32_t tableUnit) {
    const std::optional<SheetLengthConversion> conversion =
        ConversionForSheet(parent, path, tableUnit);
    const std::wstring letter = layout.columns[static_cast<size_t>(layout.lengthColumn)].letter;
    std::vector<RefusedSheetValue> refused;
    size_t row = 0;
    for (std::wstring& text : lengths) {
        ++row;
        if (text.empty()) continue;
        NumberEntry entry = ImportLength(text, conversion);
        if (entry.Ok())
            text = std::move(entry.text);
        else
            refused.push_back({row, letter, text, entry.fault});
    }
    if (refused.empty()) return true;
    std::wstring logPath;
    BuildImportLogPath(path, layout.logSuffix, logPath);
    if (!logPath.empty())
        WriteImportLogPass(logPath, true, LoadLocalizedString(IDS_LOG_REFUSED_VALUES),
                           RefusedValueLines(refused));
    ShowRefusedValues(parent, refused);
    return false;
}
}  // namespace

bool ImportComponentTable(QWidget* parent, CZEBListCtrl& table, const ComponentImportLayout& layout,
                          SheetImportState& state, int leastEmptied, int32_t tableUnit) {
    // A value the table refused keeps its editor: the import waits until it is corrected.
    table.CommitCellEdit();
    if (table.HoldsRefusedText()) return false;
    std::wstring path;
    if (!ChooseSpreadsheet(parent, path)) return false;
    state.path = path;
    SpreadsheetTable imported;
    if (!ReadImportColumns(parent, path, layout.columns, imported,
                           layout.readByRows ? std::optional<int>(0) : std::nullopt) ||
        !CheckImportNotEmpty(parent, imported))
        return false;
    if (layout.lengthColumn >= 0 && static_cast<size_t>(layout.lengthColumn) < imported.size() &&
        !TakeLengths(parent, path, layout, imported[static_cast<size_t>(layout.lengthColumn)],
                     tableUnit))
        return false;
    int count = 0;
    table.SetRows(PlaceImportedColumns(table.GetRows(), imported, layout, leastEmptied, count));
    state.columns = std::move(imported);
    ZebUiMessage(parent,
                 ZebFormatText(LoadLocalizedString(IDS_ROWS_IMPORTED), {std::to_wstring(count)}),
                 ZebMsgIcon::Information, ZebMsgButtons::Ok);
    return true;
}
