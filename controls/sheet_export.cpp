#include "controls/sheet_export.h"

#include <QAction>
#include <QHeaderView>

#include "app/assembly_rules_app.h"
#include "controls/zeb_list_ctrl.h"
#include "framework/case_fold.h"
#include "framework/resource_library.h"
#include "framework/ui/ui_service.h"

namespace {
constexpr const char* kExportActionName = "zebExportTable";
const std::wstring kWorkbookExtension = L".xlsx";

bool HasWorkbookExtension(const std::wstring& path) {
    return path.size() > kWorkbookExtension.size() &&
           ZebEqualsNoCase(path.substr(path.size() - kWorkbookExtension.size()),
                           kWorkbookExtension);
}
}  // namespace

void OfferTableExport(CZEBListCtrl& table, std::function<void()> run) {
    QHeaderView* header = table.horizontalHeader();
    for (QAction* action : header->actions())
        if (action->objectName() == QLatin1String(kExportActionName)) return;
    auto* action =
        new QAction(QString::fromStdWString(LoadLocalizedString(IDS_EXPORT_TABLE)), header);
    action->setObjectName(QLatin1String(kExportActionName));
    QObject::connect(action, &QAction::triggered, header, [run = std::move(run)] { run(); });
    header->addAction(action);
    header->setContextMenuPolicy(Qt::ActionsContextMenu);
}

TextRows TableTexts(const CZEBListCtrl& table, int first, int count) {
    TextRows texts;
    texts.reserve(table.GetRows().size());
    for (const CZebGridModel::Row& row : table.GetRows()) {
        std::vector<std::wstring> cells;
        cells.reserve(static_cast<size_t>(count));
        for (int c = first; c < first + count; ++c) cells.push_back(CZebGridModel::CellOf(row, c));
        texts.push_back(std::move(cells));
    }
    return texts;
}

bool ExportTableToChosenFile(QWidget* parent, TableSheetKind kind, const TextRows& table,
                             std::optional<int32_t> lengthUnit) {
    IZebUiService* service = GetZebUiService();
    if (!service) return false;
    ZebOpenFileRequest request;
    request.filter = L"XLSX Files (*.xlsx)|*.xlsx|";
    request.defaultExtension = L"xlsx";
    request.fileMustExist = false;
    request.forSaving = true;
    std::vector<std::wstring> paths;
    if (!service->OpenFiles(parent, request, paths) || paths.empty() || paths.front().empty())
        return false;
    std::wstring path = paths.front();
    // The import hands exactly ".xlsx" to the reader library; any other name is read by content.
    if (!HasWorkbookExtension(path)) path += kWorkbookExtension;

    const TableSheet sheet = TableToSheet(kind, table, lengthUnit);
    std::wstring error;
    if (!WriteSheetFile(path, sheet, error)) {
        ZebUiMessage(parent,
                     ZebFormatText(LoadLocalizedString(IDS_TABLE_NOT_EXPORTED), {path, error}),
                     ZebMsgIcon::Warning, ZebMsgButtons::Ok);
        return false;
    }
    if (sheet.leftOut > 0)
        ZebUiMessage(parent,
                     ZebFormatText(LoadLocalizedString(IDS_EXPORT_ROWS_LEFT_OUT),
                                   {std::to_wstring(sheet.leftOut)}),
                     ZebMsgIcon::Warning, ZebMsgButtons::Ok);
    return true;
}
