#include "controls/sheet_import.h"

#include "app/assembly_rules_app.h"
#include "framework/ui/ui_service.h"
#include "util/spreadsheet.h"

bool ChooseSpreadsheet(QWidget* parent, std::wstring& path) {
    IZebUiService* service = GetZebUiService();
    if (!service) return false;
    ZebOpenFileRequest request;
    request.filter = L"XLS Files (*.xls;*.xlsx)|*.xls; *.xlsx|";
    request.defaultExtension = L"XLS";
    std::vector<std::wstring> paths;
    if (!service->OpenFiles(parent, request, paths) || paths.empty() || paths.front().empty())
        return false;
    path = paths.front();
    return true;
}

bool ReadImportColumns(QWidget* parent, const std::wstring& path,
                       const std::vector<SpreadsheetColumn>& columns, SpreadsheetTable& table,
                       std::optional<int> rowCount) {
    SpreadsheetError error;
    const bool read = rowCount ? ReadSpreadsheetRows(path, columns, table, error, *rowCount)
                               : ReadSpreadsheet(path, columns, table, error);
    if (read) return true;
    table.clear();
    std::wstring text = SpreadsheetErrorText(error);
    // A missing reader library says nothing itself.
    if (text.empty()) text = LoadLocalizedString(IDS_SHEET_READER_MISSING);
    ZebUiMessage(parent, text, ZebMsgIcon::Warning, ZebMsgButtons::Ok);
    return false;
}

bool CheckImportNotEmpty(QWidget* parent, const SpreadsheetTable& table) {
    std::wstring message;
    if (CheckImportedColumns(table, message)) return true;
    ZebUiMessage(parent, message, ZebMsgIcon::Warning, ZebMsgButtons::Ok);
    return false;
}
