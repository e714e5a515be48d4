// The fastener name database dialog and the fastener error dialog, driven as a user drives them,
// over a real database in a folder of the test's own.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <xlsxwriter.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <list>
#include <set>

#include "app/assembly_rules_app.h"
#include "controls/hyper_link.h"
#include "controls/zeb_button.h"
#include "dialogs/database/fastener_error_dlg.h"
#include "dialogs/database/fastener_name_database_dlg.h"
#include "dialogs/database/fastener_name_database_list_ctrl.h"
#include "framework/resource_library.h"
#include "framework/ui/recording_ui_service.h"
#include "tests/database/db_test_support.h"
#include "tests/database/failing_database.h"
#include "tests/support/module_environment.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Names = std::vector<std::wstring>;
using Dlg = ZEBEditFastenerNameDatabaseDlg;
constexpr const char* kDatabaseModule = VANTOR_BUILD_DIR "/tests/ZEBDatabaseu.so";

// The names as `vantor-rules db fasteners list` shows them: the service's list, in order.
Names StoredNames() {
    std::list<std::wstring> names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db) {
        EXPECT_EQ(db->GetFastenerNames(names), ZebDbOk);
    }
    return Names(names.begin(), names.end());
}
bool Stored(const std::wstring& name) {
    const Names names = StoredNames();
    return std::find(names.begin(), names.end(), name) != names.end();
}
std::wstring Text(ZebStringId id) { return LoadLocalizedString(id); }

// Column "A" of a new workbook (null: an empty cell), with column "B" filled beside it.
std::wstring WriteColumnA(const QTemporaryDir& dir, const char* file,
                          std::vector<const char*> cells) {
    const std::string path = dir.filePath(file).toStdString();
    lxw_workbook* workbook = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    for (lxw_row_t row = 0; row < cells.size(); ++row) {
        if (cells[row]) worksheet_write_string(sheet, row, 0, cells[row], nullptr);
        worksheet_write_string(sheet, row, 1, "x", nullptr);
    }
    workbook_close(workbook);
    return QString::fromStdString(path).toStdWString();
}

struct NameDialog {
    NameDialog() { ShowActive(&dlg); }
    CZEBFastenerNameDatabaseListCtrl& table() { return *dlg.GetListCtrl(); }
    QPushButton* button(int id) { return qobject_cast<QPushButton*>(dlg.GetDlgItem(id)); }
    Names column() {
        Names texts;
        for (const auto& row : table().GetRows()) texts.push_back(row.empty() ? L"" : row[0]);
        return texts;
    }
    int row(const std::wstring& name) {
        const Names texts = column();
        const auto found = std::find(texts.begin(), texts.end(), name);
        return found == texts.end() ? -1 : static_cast<int>(found - texts.begin());
    }
    QPoint cell(int row) { return table().visualRect(table().model()->index(row, 0)).center(); }
    void select(std::initializer_list<int> rows) {
        table().clearSelection();
        for (int r : rows)
            table().selectionModel()->select(
                table().model()->index(r, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : &dlg, Qt::Key(key), modifiers);
        QCoreApplication::processEvents();
    }
    // Replaces the open editor's text and presses `finish`.
    void type(const QString& text, int finish = Qt::Key_Return) {
        auto* editor = FindZebControlAs<QLineEdit>(&table(), CZEBListCtrl::kTextEditorId);
        ASSERT_TRUE(editor && table().IsCellEditOpen());
        editor->selectAll();
        QTest::keyClicks(editor, text);
        key(finish);
    }
    // As the window system delivers it: a click, then the double click and its release.
    void doubleClick(int row) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cell(row));
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, cell(row));
        QTest::mouseRelease(table().viewport(), Qt::LeftButton, {}, cell(row));
        QCoreApplication::processEvents();
    }
    Dlg dlg;
};

// A database of the test's own, the database module loaded beside the code as the host loads
// it, and a UI service that answers for the user.
class FastenerNameDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        module = dlopen(kDatabaseModule, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
    }
    void TearDown() override {
        if (module) dlclose(module);
    }
    ScopedDatabaseFolder folder;
    CZebRecordingUiService ui;
    QTemporaryDir sheets;
    void* module = nullptr;
};
}  // namespace

TEST(FastenerNameDialogWithoutModule, TableStaysEmptyButAddStillStores) {
    EnsureQtTestApp();
    ScopedDatabaseFolder folder;
    CZebRecordingUiService ui;
    ASSERT_EQ(dlopen(kDatabaseModule, RTLD_NOW | RTLD_NOLOAD), nullptr);
    ASSERT_TRUE(Stored(L"ISO 4017 M8"));
    NameDialog d;
    EXPECT_EQ(d.table().GetRowCount(), 0);
    d.dlg.OnAdd();
    d.type("Clamp pin");
    EXPECT_EQ(d.column(), (Names{L"Clamp pin", L""}));
    EXPECT_TRUE(Stored(L"Clamp pin"));
}

TEST_F(FastenerNameDialogTest, OpensWithStoredNamesAndClosesWithOneOrTwo) {
    NameDialog d;
    Names expected = StoredNames();
    expected.push_back(L"");
    EXPECT_EQ(d.column(), expected);
    EXPECT_EQ(d.table().model()->headerData(0, Qt::Horizontal).toString().toStdWString(),
              Text(IDS_FASTENER_NAME_LIST_HEADING));
    for (int id : {Dlg::kAddId, Dlg::kDeleteId, Dlg::kRenameId})
        EXPECT_TRUE(qobject_cast<CZEBButton*>(d.dlg.GetDlgItem(id))->HasBitmap()) << id;
    // Delete follows the selection; Rename needs exactly one row.
    QPushButton* remove = d.button(Dlg::kDeleteId);
    QPushButton* rename = d.button(Dlg::kRenameId);
    EXPECT_FALSE(remove->isEnabled());
    d.select({2, 3});
    EXPECT_TRUE(remove->isEnabled());
    EXPECT_FALSE(rename->isEnabled());
    d.select({2});
    EXPECT_TRUE(rename->isEnabled());

    EXPECT_TRUE(d.dlg.IsImportHotKeyRegistered());
    d.button(Dlg::kIdHelp)->click();
    ASSERT_EQ(ui.opened.size(), 1u);
    EXPECT_NE(ui.opened[0].find(L"vantor.html#fastener-name-database-dialog"), std::wstring::npos);
    d.button(Dlg::kIdOk)->click();
    EXPECT_EQ(d.dlg.result(), 1);
    EXPECT_FALSE(d.dlg.IsImportHotKeyRegistered());

    QTimer::singleShot(0, &d.dlg, [&] { d.dlg.close(); });
    EXPECT_EQ(d.dlg.DoModal(), 2);
}

// The dialog opens with the size it was closed with, the name column taking the room; Tab walks
// the bitmap buttons, the table and the dialog's buttons as they stand.
TEST_F(FastenerNameDialogTest, KeepsItsSizeAndTabFollowsTheLayout) {
    QSize chosen;
    {
        NameDialog d;
        const int column = d.table().columnWidth(0);
        chosen = d.dlg.size() + QSize(211, 53);
        d.dlg.resize(chosen);
        QApplication::processEvents();
        EXPECT_GT(d.table().columnWidth(0), column + 150);
        d.dlg.reject();
    }
    NameDialog again;
    EXPECT_EQ(again.dlg.size(), chosen);
    again.select({0});
    const std::vector<QWidget*> walked = WalkWithTab(again.button(Dlg::kAddId));
    const std::vector<int> ids = ControlIdsOf(walked);
    ASSERT_EQ(ids.size(), 7u);
    EXPECT_EQ(std::vector<int>(ids.begin(), ids.begin() + 4),
              (std::vector<int>{Dlg::kAddId, Dlg::kDeleteId, Dlg::kRenameId, Dlg::kTableId}));
    EXPECT_EQ((std::set<int>(ids.begin() + 4, ids.end())),
              (std::set<int>{Dlg::kIdOk, Dlg::kIdCancel, Dlg::kIdHelp}));
    ExpectReadingOrder(&again.dlg, walked);
}

// Typed names are stored as typed; Escape in a fresh row removes it; a name stored in another
// case is refused by name; OK keeps a name still being typed.
TEST_F(FastenerNameDialogTest, AddingTypedNames) {
    NameDialog d;
    const int rows = d.table().GetRowCount();
    d.dlg.OnAdd();
    EXPECT_EQ(d.table().GetEditRow(), rows);
    d.type("Acme m5 Stud");
    EXPECT_TRUE(d.dlg.isVisible()) << "Enter in the editor must not close the dialog";
    EXPECT_EQ(d.table().GetCellText(rows, 0), L"Acme m5 Stud");
    EXPECT_EQ(d.table().GetRowCount(), rows + 2);
    EXPECT_EQ(StoredNames().back(), L"Acme m5 Stud");

    const Names before = StoredNames();
    d.dlg.OnAdd();
    d.type("never stored", Qt::Key_Escape);
    EXPECT_TRUE(d.dlg.isVisible());
    EXPECT_EQ(d.table().GetRowCount(), rows + 2);
    EXPECT_EQ(StoredNames(), before);

    d.dlg.OnAdd();
    d.type("iso 4017 m8");
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              ZebFormatText(Text(IDS_DATABASE_ENTRY_EXISTS), {L"iso 4017 m8"}));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
    EXPECT_EQ(d.table().GetRowCount(), rows + 2);
    EXPECT_EQ(StoredNames(), before);

    d.dlg.OnAdd();
    QTest::keyClicks(d.dlg.GetDlgItem(CZEBListCtrl::kTextEditorId), "Closing pin");
    d.button(Dlg::kIdOk)->click();
    EXPECT_TRUE(Stored(L"Closing pin"));
}

// A message box over the dialog is a window of its own: Enter there closes the box and does
// not commit the editor again (which would open the next box).
TEST_F(FastenerNameDialogTest, KeysOfAMessageBoxStayWithTheBox) {
    CZebQtUiService qt;
    IZebUiService* recording = SetZebUiService(&qt);
    NameDialog d;
    int boxes = 0;
    std::function<void()> answer = [&] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        // Armed before the key: a box the key opens runs its own loop until answered. Tied to
        // the dialog, so that a timer still pending when the test ends goes with it.
        if (box || boxes == 0) QTimer::singleShot(10, &d.dlg, answer);
        if (!box || box == &d.dlg) return;
        // Past the third box the fault is shown; the rest close without keys.
        if (++boxes > 3)
            box->done(0);
        else
            QTest::keyClick(box, Qt::Key_Return);
    };
    QTimer::singleShot(0, &d.dlg, answer);
    d.dlg.OnAdd();
    d.type("iso 4017 m8");
    SetZebUiService(recording);
    EXPECT_EQ(boxes, 1);
    EXPECT_FALSE(d.table().IsCellEditOpen());
}

TEST_F(FastenerNameDialogTest, RenamingFollowsWhatTheDatabaseAnswers) {
    NameDialog d;
    d.select({d.row(L"ISO 4762 M5")});
    d.button(Dlg::kRenameId)->click();
    d.type("Socket screw M5");
    EXPECT_NE(d.row(L"Socket screw M5"), -1);
    EXPECT_TRUE(Stored(L"Socket screw M5"));
    EXPECT_FALSE(Stored(L"ISO 4762 M5"));

    // A change of letter case alone is a rename. Delete waits while the editor is open.
    const int row = d.row(L"ISO 4032 M6");
    d.doubleClick(row);
    EXPECT_EQ(d.table().GetSelectedRows(), std::vector<int>{row});
    EXPECT_FALSE(d.button(Dlg::kDeleteId)->isEnabled());
    d.type("iso 4032 m6");
    EXPECT_TRUE(d.button(Dlg::kDeleteId)->isEnabled());
    EXPECT_EQ(d.table().GetCellText(row, 0), L"iso 4032 m6");
    EXPECT_TRUE(Stored(L"iso 4032 m6"));
    EXPECT_FALSE(Stored(L"ISO 4032 M6"));

    // Another stored name in another case: refused, the row leaves the table, the database
    // keeps both names.
    const Names stored = StoredNames();
    const int rows = d.table().GetRowCount();
    d.doubleClick(d.row(L"ISO 4017 M10"));
    d.type("iso 4017 m12");
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_RENAME_FAILED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
    EXPECT_EQ(d.row(L"ISO 4017 M10"), -1);
    EXPECT_EQ(d.table().GetRowCount(), rows - 1);
    EXPECT_EQ(StoredNames(), stored);
}

// Deleting removes the selected names from the table and the database; a name the database no
// longer holds is reported on the key path.
TEST_F(FastenerNameDialogTest, DeletingPassesUpperCaseNames) {
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_EQ(db->AddFastenerName(L"acme washer"), ZebDbOk);
    ASSERT_EQ(db->AddFastenerName(L"Maß 8"), ZebDbOk);
    NameDialog d;
    const int rows = d.table().GetRowCount();
    d.select({d.row(L"acme washer"), d.row(L"ISO 4017 M3")});
    d.table().setFocus();
    d.key(Qt::Key_Delete);
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_EQ(d.table().GetRowCount(), rows - 2);
    EXPECT_FALSE(Stored(L"acme washer"));
    EXPECT_FALSE(Stored(L"ISO 4017 M3"));

    d.select({d.row(L"Maß 8")});
    ASSERT_EQ(db->DeleteFastenerName(L"MAß 8"), ZebDbOk);  // another engineer was quicker
    d.key(Qt::Key_Delete);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_DATABASE_DELETE_FAILED));
    EXPECT_EQ(d.row(L"Maß 8"), -1);

    // The button says so too when the database refuses; the spare row comes back.
    d.select({d.row(L"ISO 4032 M20"), d.table().GetRowCount() - 1});
    ASSERT_EQ(db->DeleteFastenerName(L"ISO 4032 M20"), ZebDbOk);
    d.button(Dlg::kDeleteId)->click();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, Text(IDS_DATABASE_DELETE_FAILED));
    EXPECT_EQ(d.row(L"ISO 4032 M20"), -1);
    EXPECT_EQ(d.column().back(), L"");
}

TEST_F(FastenerNameDialogTest, RightClickAddsTheBaseNamesOfPartFiles) {
    NameDialog d;
    const int spare = d.table().GetRowCount() - 1;
    ui.ChooseFiles({L"/parts/bracket.prt.3", L"/parts/v2/Bracket.prt", L"/parts/hinge.prt",
                    L"/parts/ISO 4017 M8.prt"});
    QTest::mouseClick(d.table().viewport(), Qt::RightButton, {}, d.cell(0));
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_TRUE(ui.choosers[0].multiSelect);
    ASSERT_EQ(ui.messages.size(), 1u);  // "Bracket" repeats "bracket"; "ISO 4017 M8" is stored
    EXPECT_EQ(ui.messages[0].text,
              ZebFormatText(Text(IDS_DATABASE_ENTRY_EXISTS), {L"ISO 4017 M8"}));
    const Names column = d.column();
    EXPECT_EQ(Names(column.begin() + spare, column.end()), (Names{L"bracket", L"hinge", L""}));
    EXPECT_TRUE(Stored(L"bracket"));
    EXPECT_TRUE(Stored(L"hinge"));
}

TEST_F(FastenerNameDialogTest, UnusableDatabaseFolderRefusesEveryAddition) {
    NameDialog d;
    const Names stored = StoredNames();
    const int rows = d.table().GetRowCount();
    {
        // A folder whose parent does not exist cannot be made.
        ScopedEnv unusable("VANTOR_DATABASE_DIR", (folder.Folder() / "missing" / "db").c_str());
        d.dlg.OnAdd();
        d.type("Typed pin");
        ui.ChooseFiles({L"/parts/browsed.prt"});
        QTest::mouseClick(d.table().viewport(), Qt::RightButton, {}, d.cell(0));
    }
    {
        // Without the variable nothing is stored in a folder the user never named, although the
        // service itself would fall back to the user's data folder.
        ScopedEnv unset("VANTOR_DATABASE_DIR", nullptr);
        ScopedEnv data("XDG_DATA_HOME", (folder.Folder() / "data").c_str());
        d.dlg.OnAdd();
        d.type("Typed pin");
        ui.ChooseFiles({L"/parts/browsed.prt"});
        QTest::mouseClick(d.table().viewport(), Qt::RightButton, {}, d.cell(0));
    }
    ASSERT_EQ(ui.messages.size(), 4u);
    for (const auto& message : ui.messages) {
        EXPECT_EQ(message.text, Text(IDS_DATABASE_FOLDER_UNUSABLE));
        EXPECT_EQ(message.icon, ZebMsgIcon::Error);
    }
    EXPECT_EQ(d.table().GetRowCount(), rows);
    EXPECT_EQ(StoredNames(), stored);
}

TEST_F(FastenerNameDialogTest, ImportAddsNewNamesInUpperCaseAtTheirRows) {
    NameDialog d;
    Names expected = d.column();
    // bolt and BOLT are one name; the empty cell ends the column before nut.
    const std::wstring bolts = WriteColumnA(sheets, "bolts.xlsx", {"bolt", "BOLT", nullptr, "nut"});
    ui.ChooseFiles({bolts});
    d.key(Qt::Key_I, Qt::ControlModifier);
    ASSERT_EQ(ui.choosers.size(), 1u) << "Ctrl+I starts the import";
    EXPECT_EQ(d.dlg.GetImportedPath(), bolts);
    EXPECT_TRUE(ui.messages.empty());
    expected.insert(expected.begin(), L"BOLT");
    EXPECT_EQ(d.column(), expected);
    EXPECT_EQ(StoredNames().back(), L"BOLT");
    EXPECT_FALSE(Stored(L"NUT"));

    // Names stored in another case are listed, one a line, after the message.
    ui.ChooseFiles({WriteColumnA(sheets, "mixed.xlsx", {"iso 4017 m8", "Washer ä", "Bolt"})});
    d.dlg.OnImport();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_FASTENER_NAMES_NOT_IMPORTED) + L"ISO 4017 M8\r\nBOLT");
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(d.table().GetCellText(1, 0), L"WASHER Ä");
    EXPECT_TRUE(Stored(L"WASHER Ä"));

    const Names stored = StoredNames();
    ui.ChooseFiles({WriteColumnA(sheets, "empty.xlsx", {nullptr, "n/a"})});
    d.dlg.OnImport();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, Text(IDS_SHEET_NO_FASTENER_NAMES));
    EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(StoredNames(), stored);
}

// A list that cannot be read is said to be so, and an import that cannot check for repeats, or
// whose names are not stored, puts nothing into the table that the database does not hold.
TEST_F(FastenerNameDialogTest, DatabaseFailuresAreToldAndTheTableHoldsOnlyStoredNames) {
    FailingDatabase db;
    db.failing = {"GetFastenerNames"};
    {
        NameDialog d;
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0].text, Text(IDS_DATABASE_READ_FAILED));
        EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
        EXPECT_EQ(d.table().GetRowCount(), 0);

        ui.ChooseFiles({WriteColumnA(sheets, "new.xlsx", {"pin", "rivet"})});
        d.dlg.OnImport();
        ASSERT_EQ(ui.messages.size(), 2u);
        EXPECT_EQ(ui.messages[1].text, Text(IDS_DATABASE_READ_FAILED));
        EXPECT_EQ(std::count(db.calls.begin(), db.calls.end(), "AddFastenerName"), 0);
    }
    ui.messages.clear();
    db.failing = {"AddFastenerName"};
    NameDialog d;
    const Names shown = d.column();
    ui.ChooseFiles({WriteColumnA(sheets, "more.xlsx", {"pin", "rivet"})});
    d.dlg.OnImport();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_DATABASE_SAVE_FAILED));
    EXPECT_EQ(d.column(), shown);
    db.failing.clear();
    EXPECT_FALSE(Stored(L"PIN"));
    EXPECT_FALSE(Stored(L"RIVET"));
}

// A blocking error has one button, Close; a warning offers OK to go on and Cancel to stop. The
// link opens the log through the UI service.
TEST(FastenerErrorDialog, ButtonsFollowTheOutcomeAndTheLinkOpensTheLog) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    const std::wstring log = L"/tmp/VantorTemp/BoltsFastnerClearance_log.txt";
    for (const bool error : {true, false}) {
        CZEBFastenerErrorDlg dlg(log, error ? 0 : 1, error ? 1 : 0);
        ShowActive(&dlg);
        auto* message = FindZebControlAs<QLabel>(&dlg, CZEBFastenerErrorDlg::kMessageId);
        auto* link = FindZebControlAs<CHyperLink>(&dlg, CZEBFastenerErrorDlg::kLinkId);
        auto* ok = FindZebControlAs<QPushButton>(&dlg, CZEBFastenerErrorDlg::kIdOk);
        auto* cancel = FindZebControlAs<QPushButton>(&dlg, CZEBFastenerErrorDlg::kIdCancel);
        ASSERT_TRUE(message && link && ok && cancel);
        EXPECT_EQ(message->text().toStdWString(),
                  Text(error ? IDS_SHEET_ROWS_INVALID : IDS_SHEET_NAMES_REPEATED));
        EXPECT_EQ(cancel->isVisible(), !error);
        EXPECT_EQ(ok->text().toStdWString() == Text(IDS_CLOSE), error);
        EXPECT_EQ(link->text().toStdWString(), Text(IDS_OPEN_LOG_LINK));
        EXPECT_EQ(link->CurrentColour(), QColor(0, 0, 255));
        QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
        EXPECT_EQ(ui.opened.back(), log);

        const auto run = [&](std::function<void()> close) {
            QTimer::singleShot(0, &dlg, close);
            return dlg.DoModal();
        };
        EXPECT_EQ(run([&] { ok->click(); }), 1);
        EXPECT_EQ(run([&] { dlg.close(); }), 2);
        if (!error) {
            EXPECT_EQ(run([&] { cancel->click(); }), 2);
        }
    }
    EXPECT_EQ(ui.opened.size(), 2u);

    // Tab goes from the link to the buttons as they stand; Space on the link opens the log, Enter
    // still answers OK.
    CZEBFastenerErrorDlg warning(log, 1, 0);
    ShowActive(&warning);
    QWidget* link = FindZebControl(&warning, CZEBFastenerErrorDlg::kLinkId);
    const std::vector<QWidget*> walked = WalkWithTab(link);
    const std::vector<int> ids = ControlIdsOf(walked);
    EXPECT_EQ(ids.size(), 3u);
    EXPECT_EQ(std::set<int>(ids.begin(), ids.end()),
              (std::set<int>{CZEBFastenerErrorDlg::kLinkId, CZEBFastenerErrorDlg::kIdOk,
                             CZEBFastenerErrorDlg::kIdCancel}));
    ExpectReadingOrder(&warning, walked);
    link->setFocus();
    QTest::keyClick(link, Qt::Key_Space);
    EXPECT_EQ(ui.opened.size(), 3u);
    QTimer::singleShot(0, &warning,
                       [&] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); });
    EXPECT_EQ(warning.DoModal(), 1);
}
