#include "dialogs/database/fastener_name_database_list_ctrl.h"

#include <QKeyEvent>
#include <cstdlib>

#include "app/assembly_rules_app.h"
#include "controls/grid_model.h"
#include "database/service/data_helper.h"
#include "framework/case_fold.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"

namespace {
void ShowError(QWidget* parent, const std::wstring& text) {
    ZebUiMessage(parent, text, ZebMsgIcon::Error, ZebMsgButtons::Ok);
}
}  // namespace

bool AddFastenerNameGuarded(QWidget* parent, const std::wstring& name) {
    // The folder must be named by VANTOR_DATABASE_DIR and usable: without it the name would go
    // to a folder the user never chose. The host names its default folder when the user has not.
    const char* named = std::getenv("VANTOR_DATABASE_DIR");
    std::wstring folder = named ? FromUtf8(named) : std::wstring();
    while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
    if (!IsFolderUsable(folder)) {
        ShowError(parent, LoadLocalizedString(IDS_DATABASE_FOLDER_UNUSABLE));
        return false;
    }
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    // No service counts as a failed write: the user still learns that nothing was stored.
    const ZebDbResult result = db ? db->AddFastenerName(name) : ZebDbFailed;
    if (result == ZebDbOk) return true;
    if (result == ZebDbExists)
        ShowError(parent, ZebFormatText(LoadLocalizedString(IDS_DATABASE_ENTRY_EXISTS), {name}));
    else
        ShowError(parent, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED));
    return false;
}

CZEBFastenerNameDatabaseListCtrl::CZEBFastenerNameDatabaseListCtrl(QWidget* parent)
    : CZEBListCtrl(parent) {}

bool CZEBFastenerNameDatabaseListCtrl::RemoveRow(int row) {
    auto* grid = qobject_cast<CZebGridModel*>(model());
    return grid && grid->RemoveRowAt(row);
}

void CZEBFastenerNameDatabaseListCtrl::EditName(int row) {
    if (row < 0 || row >= GetRowCount()) return;
    // The editor is placed over the cell as it is shown; a row scrolled away would put it
    // outside the table. A row just inserted needs the scroll range brought up to date first.
    updateGeometries();
    scrollTo(model()->index(row, 0));
    BeginCellEdit(row, 0, kEditLimit);
}

void CZEBFastenerNameDatabaseListCtrl::CommitEdit() {
    if (!IsCellEditOpen()) return;
    std::wstring text;
    GetCellEditText(text);
    if (text.empty()) return;
    const int row = GetEditRow();
    const std::wstring original = GetOriginalText();
    if (original.empty()) {
        if (AddFastenerNameGuarded(window(), text)) {
            EndCellEdit(text);
        } else {
            CancelCellEdit();
            RemoveRow(row);
        }
        return;
    }
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db && db->RenameFastenerName(original, text) == ZebDbOk) {
        EndCellEdit(text);
        return;
    }
    ShowError(window(), LoadLocalizedString(IDS_RENAME_FAILED));
    CancelCellEdit();
    RemoveRow(row);
}

bool CZEBFastenerNameDatabaseListCtrl::DeleteSelectedNames(bool reportFailure) {
    std::vector<std::wstring> names;
    GetSelectedFirstColumnTexts(names);
    if (names.empty() || !DeleteSelectedRows()) return false;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    bool failed = false;
    for (const std::wstring& name : names) {
        // The spare empty row names nothing the database could hold.
        if (name.empty()) continue;
        if (!db || db->DeleteFastenerName(ZebUpperCase(name)) != ZebDbOk) failed = true;
    }
    // The spare empty row may have been among the selected ones.
    AppendEmptyRowIfLastFilled();
    // One message for the whole selection, not one per name.
    if (failed && reportFailure)
        ShowError(window(), LoadLocalizedString(IDS_DATABASE_DELETE_FAILED));
    return true;
}

void CZEBFastenerNameDatabaseListCtrl::AddPartFileNames() {
    // A row still being typed into would otherwise receive a browsed name.
    CommitEdit();
    std::vector<std::wstring> names;
    BrowsePartFiles(names);
    for (const std::wstring& name : names) {
        if (!AddFastenerNameGuarded(window(), name)) continue;
        const int count = GetRowCount();
        if (count > 0 && GetCellText(count - 1, 0).empty())
            SetCellText(count - 1, 0, name);
        else
            InsertRow(count, name);
    }
    AppendEmptyRowIfLastFilled();
}

long CZEBFastenerNameDatabaseListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            // Without an editor, Enter goes on to the dialog's default button.
            const bool editing = IsCellEditOpen();
            CommitEdit();
            AppendEmptyRowIfLastFilled();
            return editing ? 1 : 0;
        }
        case Qt::Key_Escape: {
            // Without an editor, Escape goes on and cancels the dialog.
            if (!IsCellEditOpen()) return 0;
            const bool freshRow = GetOriginalText().empty();
            const int row = GetEditRow();
            CancelCellEdit();
            if (freshRow) RemoveRow(row);
            return 1;
        }
        case Qt::Key_Delete:
            if (IsCellEditOpen()) return 0;
            return DeleteSelectedNames(true) ? 1 : 0;
        default:
            return 0;
    }
}

long CZEBFastenerNameDatabaseListCtrl::CommitOpenEditor() {
    const bool open = IsCellEditOpen();
    CommitEdit();
    AppendEmptyRowIfLastFilled();
    return open ? 1 : 0;
}

bool CZEBFastenerNameDatabaseListCtrl::OnCellActivated(int row, int column) {
    if (column != 0) return false;
    EditName(row);
    return true;
}

bool CZEBFastenerNameDatabaseListCtrl::OnCellRightClick(const QPoint&) {
    AddPartFileNames();
    return true;
}
