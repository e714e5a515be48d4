// ZEBCLRMangedHelper.so: the spreadsheet reader library the module calls for ".xlsx" paths.
// It reads Open XML workbooks with the module's own Open XML reader and column rule, so both
// roads give the same table; it keeps no state between calls.
#include <memory>

#include "framework/location_helper.h"
#include "framework/resource_library.h"
#include "resources/resource_file.h"
#include "util/sheet_table.h"

namespace {
// The library has no application object of its own: its texts come straight from the
// localized resource library, or the English one.
std::wstring LoadErrorText(ZebStringId id) {
    for (const std::wstring& folder :
         {CLocationHelper::GetLocalizedResPath(), CLocationHelper::GetDefaultResPath()}) {
        std::unique_ptr<CZebResourceLibrary> library(
            CZebResourceLibrary::Load(folder + L"/" + kZebResourceFileName));
        bool found = false;
        if (library) {
            std::wstring text = library->LoadString(id, &found);
            if (found) return text;
        }
    }
    return {};
}
}  // namespace

extern "C" __attribute__((visibility("default"))) bool ReadExcelAndFillTableColByCol(
    const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
    SpreadsheetTable& table, std::wstring& error) {
    int rowLimit = 0;
    ZebStringId id{};
    if (ReadWorkbookTable(path, columns, table, rowLimit, true, id)) return true;
    error = LoadErrorText(id);
    return false;
}
