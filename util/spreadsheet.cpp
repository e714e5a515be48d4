#include "util/spreadsheet.h"

#include <dlfcn.h>

#include "app/assembly_rules_app.h"
#include "framework/location_helper.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"

namespace {
// Row limit of the module's lifetime; 0 means none yet.
int g_rowLimit = 0;

bool CallReaderLibrary(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                       SpreadsheetTable& table, SpreadsheetError& error) {
    const std::string library =
        ToUtf8(CLocationHelper::GetLibraryFolder()) + "/" + kSpreadsheetLibraryName;
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) return false;
    const auto read =
        reinterpret_cast<ReadExcelAndFillTableColByColFn>(dlsym(handle, kSpreadsheetEntryPoint));
    const bool ok = read && read(path, columns, table, error.text);
    dlclose(handle);
    if (!ok) return false;
    // The library keeps no state between calls; its column "A" sets the module's limit.
    for (size_t i = 0; i < columns.size() && i < table.size(); ++i)
        if (IsColumnA(columns[i].letter)) g_rowLimit = static_cast<int>(table[i].size()) + 2;
    return true;
}

bool EndsWithXlsx(const std::wstring& path) {
    return path.size() >= 5 && path.compare(path.size() - 5, 5, L".xlsx") == 0;
}
}  // namespace

bool ReadSpreadsheet(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                     SpreadsheetTable& table, SpreadsheetError& error) {
    error = {};
    if (EndsWithXlsx(path)) return CallReaderLibrary(path, columns, table, error);
    return ReadWorkbookTable(path, columns, table, g_rowLimit, false, error.id);
}

bool ReadSpreadsheetRows(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                         SpreadsheetTable& table, SpreadsheetError& error, int rowCount) {
    error = {};
    if (EndsWithXlsx(path)) return CallReaderLibrary(path, columns, table, error);
    return ReadWorkbookRows(path, columns, table, g_rowLimit, rowCount, error.id);
}

std::wstring SpreadsheetErrorText(const SpreadsheetError& error) {
    return error.id ? LoadLocalizedString(error.id) : error.text;
}

bool CheckImportedColumns(const SpreadsheetTable& table, std::wstring& message) {
    std::wstring numbers;
    for (size_t i = 0; i < table.size(); ++i) {
        if (!table[i].empty()) continue;
        if (!numbers.empty()) numbers += L", ";
        numbers += std::to_wstring(i + 1);
    }
    if (numbers.empty()) return true;
    message = ZebFormatText(LoadLocalizedString(IDS_SHEET_COLUMNS_EMPTY), {numbers});
    return false;
}

int SpreadsheetRowLimit() { return g_rowLimit; }
