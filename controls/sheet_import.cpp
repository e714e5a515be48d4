#include "controls/sheet_import.h"

#include "app/assembly_rules_app.h"
#include "controls/number_entry.h"
#include "framework/resource_library.h"
#include "framework/ui/ui_service.h"
#include "framework/unit_convertor.h"
#include "util/spreadsheet.h"
#include "util/table_export.h"
#include "util/texts.h"

namespace {
// A message box shows the first refused values; the log holds them all.
constexpr size_t kRefusedValuesShown = 15;
}  // namespace

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

double SheetLengthConversion::Apply(double value) const {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(value, 1, from, to);
}

std::optional<SheetLengthConversion> ConversionForSheet(QWidget* parent, const std::wstring& path,
                                                        int32_t tableUnit) {
    const std::optional<int32_t> sheetUnit = ReadSheetLengthUnit(path);
    if (!sheetUnit || *sheetUnit == tableUnit) return std::nullopt;
    ZebUiMessage(parent,
                 ZebFormatText(LoadLocalizedString(IDS_IMPORT_UNIT_CONVERTED),
                               {GetUnitText(*sheetUnit), GetUnitText(tableUnit)}),
                 ZebMsgIcon::Information, ZebMsgButtons::Ok);
    return SheetLengthConversion{*sheetUnit, tableUnit};
}

NumberEntry ImportLength(const std::wstring& text,
                         const std::optional<SheetLengthConversion>& conversion) {
    NumberEntry entry = ReadNumberEntry(text);
    if (!entry.Ok() || !conversion) return entry;
    entry.value = conversion->Apply(entry.value);
    entry.text = FormatNumber(entry.value);
    return entry;
}

std::vector<std::wstring> RefusedValueLines(const std::vector<RefusedSheetValue>& refused) {
    std::vector<std::wstring> lines;
    lines.reserve(refused.size());
    for (const RefusedSheetValue& value : refused)
        lines.push_back(ZebFormatText(LoadLocalizedString(IDS_REFUSED_VALUE_AT),
                                      {std::to_wstring(value.row), value.column, value.text}) +
                        L" " + NumberFaultText(value.fault));
    return lines;
}

void ShowRefusedValues(QWidget* parent, const std::vector<RefusedSheetValue>& refused) {
    if (refused.empty()) return;
    std::vector<std::wstring> lines = RefusedValueLines(refused);
    std::wstring list;
    for (size_t i = 0; i < lines.size() && i < kRefusedValuesShown; ++i) list += lines[i] + L"\n";
    if (lines.size() > kRefusedValuesShown) list += L"…";
    ZebUiMessage(parent, ZebFormatText(LoadLocalizedString(IDS_IMPORT_VALUES_REFUSED), {list}),
                 ZebMsgIcon::Warning, ZebMsgButtons::Ok);
}
