// ZEBCLRMangedHelper.so: the spreadsheet reader library the module calls for ".xlsx" paths.
// It reads Open XML workbooks with the module's own Open XML reader and column rule, so both
// roads give the same table; it keeps no state between calls.
#include <memory>

#include "framework/location_helper.h"
#include "framework/resource_library.h"
#include "module/assembly_rules_app.h"
#include "util/spreadsheet.h"

namespace {
// The library has no application object of its own: its texts come straight from the
// localized resource library, or the English one.
std::wstring LoadErrorText(unsigned id) {
    for (const std::wstring& folder :
         {CLocationHelper::GetLocalizedResPath(), CLocationHelper::GetDefaultResPath()}) {
        std::unique_ptr<CZebResourceLibrary> library(
            CZebResourceLibrary::Load(folder + L"/" + CZEBAssemblyRulesApp::kResourceFileName));
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
    const unsigned id = ReadWorkbookTable(path, columns, table, rowLimit, true);
    if (id == 0) return true;
    table.clear();
    error = LoadErrorText(id);
    return false;
}
