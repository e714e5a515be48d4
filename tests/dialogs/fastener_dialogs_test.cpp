// The fastener clearance and engagement length dialogs driven as a user drives them: controls
// found by their ids, message boxes and choosers answered by the recording UI service, the error
// dialog answered when it opens, a real database in a temporary folder.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <deque>
#include <filesystem>
#include <fstream>
#include <list>
#include <map>
#include <set>
#include <sstream>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/custom_combo_box.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/database/fastener_error_dlg.h"
#include "dialogs/fastener/fastener_clearance_dlg.h"
#include "dialogs/fastener/fastener_engagement_len_dlg.h"
#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"
#include "dialogs/fastener/zeb_asm_fastener_engagement_len_rule_list_ctrl.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/fastener_clearance_rule.h"
#include "rules/fastener_engagement_len_rule.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/support/database_module.h"
#include "tests/support/module_environment.h"
#include "tests/support/scoped_temp_dir.h"
#include "tests/support/sheet_writer.h"
#include "tests/ui/qt_test_app.h"
#include "util/table_export.h"
#include "util/texts.h"

namespace fs = std::filesystem;

namespace {
using Rows = std::vector<ZebRow>;

std::string Utf8(ZebStringId id) {
    return QString::fromStdWString(LoadLocalizedString(id)).toStdString();
}

// Answers the error dialogs an import opens, in order, and keeps what each showed.
class ErrorDialogAnswers : public QObject {
public:
    struct Seen {
        std::wstring message;
        bool cancelShown;
        std::wstring logPath;
    };

    explicit ErrorDialogAnswers(std::deque<int> answers) : m_answers(std::move(answers)) {
        connect(&m_timer, &QTimer::timeout, this, [this] { Answer(); });
        m_timer.start(5);
    }
    std::vector<Seen> seen;

private:
    void Answer() {
        auto* dialog = qobject_cast<CZEBFastenerErrorDlg*>(QApplication::activeModalWidget());
        if (!dialog || m_answers.empty()) return;
        auto* message = qobject_cast<QLabel*>(dialog->GetDlgItem(CZEBFastenerErrorDlg::kMessageId));
        auto* cancel = dialog->GetDlgItem(CZEBFastenerErrorDlg::kIdCancel);
        seen.push_back({message ? message->text().toStdWString() : L"",
                        cancel && cancel->isVisible(), dialog->GetLogPath()});
        const int answer = m_answers.front();
        m_answers.pop_front();
        qobject_cast<QPushButton*>(dialog->GetDlgItem(answer))->click();
    }

    QTimer m_timer;
    std::deque<int> m_answers;
};

class FastenerDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        ASSERT_TRUE(databaseModule.Loaded()) << databaseModule.Error();
        tmp.Set(dir.c_str());
    }

    std::list<std::wstring> DatabaseNames() {
        std::list<std::wstring> names;
        IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
        if (db) {
            EXPECT_EQ(db->GetFastenerNames(names), ZebDbOk);
        }
        return names;
    }

    // Imports `sheet` through Ctrl+I, answering the error dialogs with `answers`.
    std::vector<ErrorDialogAnswers::Seen> Import(QWidget* dialog, const fs::path& sheet,
                                                 std::deque<int> answers = {}) {
        ui.ChooseFiles({sheet.wstring()});
        ErrorDialogAnswers answering(std::move(answers));
        ShowActive(dialog);  // as the window manager does once an error dialog has closed
        QTest::keyClick(dialog, Qt::Key_I, Qt::ControlModifier);
        return answering.seen;
    }

    fs::path LogOf(const std::string& sheetBase, const std::string& suffix) const {
        return dir / "VantorTemp" / (sheetBase + suffix);
    }

    ScopedDatabaseFolder folder;
    ScopedEnv tmp{"TMPDIR", nullptr};
    CZebRecordingUiService ui;
    ScopedDatabaseModule databaseModule;
    ScopedTempDir temp{"vantor-fastener-"};
    const fs::path dir = temp.Path();
};

Rows Stored(CZebRule& rule, long id) {
    const auto& values = FindTyped<ZebRow>(rule, id)->values;
    return Rows(values.begin(), values.end());
}

void Store(CZebRule& rule, long id, int op, const Rows& rows) {
    auto* table = FindTyped<ZebRow>(rule, id);
    table->op = op;
    table->values.RemoveAll();
    for (const ZebRow& row : rows) table->values.Add(row);
}

const std::wstring& Cell(const CZEBListCtrl& grid, int row, int column) {
    return grid.GetCellText(row, column);
}

void ClickCell(CZEBListCtrl& grid, int row, int column) {
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.GetCellRect(row, column).center());
}

void TypeInto(CZEBListCtrl& grid, int row, int column, const char* text) {
    ClickCell(grid, row, column);
    ASSERT_TRUE(grid.IsCellEditOpen()) << "no editor at " << row << ", " << column;
    QTest::keyClicks(QApplication::focusWidget(), text);
}
}  // namespace

// Opening loads the stored rows above the spare rows, the operators and the database's names;
// without the database module loaded beside the module, the rows stay out.
TEST_F(FastenerDialogTest, ClearanceOpensWithTheStoredTableAndTheDatabase) {
    CZEBAssemblyFastenerClearanceRule rule;
    rule.Severity = 4;
    Store(rule, 2052, ZebOp_Range,
          {{L"ISO 4017 M8", L"1", L"2"}, {L"", L"9", L"9"}, {L"ISO 4017 M6", L"0.5", L""}});
    Store(rule, 9450, ZebOp_GreaterEqual,
          {{L"ISO 4017 M8", L"3", L""}, {L"", L"9", L""}, {L"ISO 4017 M6", L"0.7", L""}});
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
    ShowActive(&dialog);

    auto* grid = dialog.GetGrid();
    ASSERT_EQ(grid->GetRowCount(), 3 + 260 + 2);
    EXPECT_EQ(grid->GetRows()[0], (CZebGridModel::Row{L"ISO 4017 M8", L"1", L"2", L"3", L""}));
    EXPECT_TRUE(grid->GetRows()[1].empty());  // a stored row without a name leaves its place empty
    EXPECT_EQ(Cell(*grid, 2, 0), L"ISO 4017 M6");
    EXPECT_TRUE(grid->GetRows()[3].empty());
    EXPECT_EQ(dialog.GetOperatorList(0)->currentText().toStdWString(),
              LoadLocalizedString(IDS_OPERATOR_BETWEEN));
    EXPECT_EQ(dialog.GetOperatorList(1)->currentText(), ">=");
    EXPECT_FALSE(grid->IsDisabledColumn(CZEBAsmFastenerClearanceRuleListCtrl::kMaxA));
    EXPECT_TRUE(grid->IsDisabledColumn(CZEBAsmFastenerClearanceRuleListCtrl::kMaxB));
    // The drop-downs stand over the operator row.
    CZEBListCtrl* operators = dialog.GetOperatorGrid();
    EXPECT_EQ(dialog.GetOperatorList(0)->geometry(),
              operators->visualRect(operators->model()->index(0, 1)));
    EXPECT_TRUE(dialog.GetOperatorList(1)->isVisible());

    const std::vector<std::wstring>& choices = grid->ChoiceList();
    EXPECT_TRUE(std::is_sorted(choices.begin(), choices.end()));
    EXPECT_NE(std::find(choices.begin(), choices.end(), L"ISO 4762 M12"), choices.end());
    auto* database = dialog.ControlById<CWrapperComboCtrl>(CZEBFastenerTableDlg::kDatabaseListId);
    ASSERT_EQ(database->count(), 1);
    EXPECT_EQ(database->currentText(), "Vantor Database");
    EXPECT_EQ(dialog.ControlById<CWrapperComboCtrl>(6022)->currentIndex(), 3);
    EXPECT_EQ(dialog.ControlById<QLabel>(6019)->text().toStdWString(),
              ZebFormatText(LoadLocalizedString(IDS_CLEARANCE_UNIT_LABEL), {L"mm"}));
    EXPECT_FALSE(dialog.GetDlgItem(CZEBFastenerTableDlg::kFirstListId)->isVisible());
    EXPECT_FALSE(dialog.GetDlgItem(CZEBFastenerTableDlg::kHardwareButtonId)->isVisible());
    EXPECT_TRUE(dialog.GetDlgItem(CZEBFastenerTableDlg::kHardwareDatabaseId)->isVisible());
    EXPECT_EQ(dialog.GetHelpTopic(), kHelpTopicFastenerClearance);

    // Column widths follow the operator row.
    operators->setColumnWidth(1, 200);
    EXPECT_EQ(grid->columnWidth(1), 100);
    EXPECT_EQ(grid->columnWidth(2), 100);
    EXPECT_EQ(grid->columnWidth(3), operators->columnWidth(2) / 2);

    databaseModule.Unload();
    CZEBAssemblyFastenerClearanceDlg withoutModule(&rule, L"mm");
    ShowActive(&withoutModule);
    EXPECT_EQ(withoutModule.GetGrid()->GetRowCount(), 3 + 260);
    EXPECT_TRUE(withoutModule.GetGrid()->GetRows()[0].empty());
    EXPECT_EQ(withoutModule.ControlById<CWrapperComboCtrl>(CZEBFastenerTableDlg::kDatabaseListId)
                  ->count(),
              0);
}

// The hardware database opens over the dialog with the import key off; names added meanwhile are
// offered by the table once it closes, and Ctrl+I imports again.
TEST_F(FastenerDialogTest, HardwareDatabaseRefreshesTheNames) {
    CZEBAssemblyFastenerEngagementLenRule rule;
    CZEBAssemblyFastenerEngagementLenDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();
    const std::vector<std::wstring>& choices = grid->ChoiceList();
    ASSERT_EQ(std::find(choices.begin(), choices.end(), L"ISO 7380 M5"), choices.end());

    bool seen = false;
    QTimer::singleShot(0, [&] {
        QWidget* bridge = QApplication::activeModalWidget();
        ASSERT_NE(bridge, nullptr);
        EXPECT_NE(bridge, &dialog);
        seen = true;
        QShortcut* importKey = dialog.findChild<QShortcut*>();
        ASSERT_NE(importKey, nullptr);
        EXPECT_FALSE(importKey->isEnabled());
        EXPECT_EQ(zeb_db::ZEBDataHelper::getInstance()->AddFastenerName(L"ISO 7380 M5"), ZebDbOk);
        bridge->close();
    });
    qobject_cast<QPushButton*>(dialog.GetDlgItem(CZEBFastenerTableDlg::kHardwareDatabaseId))
        ->click();
    ASSERT_TRUE(seen);
    EXPECT_NE(std::find(choices.begin(), choices.end(), L"ISO 7380 M5"), choices.end());
    EXPECT_TRUE(std::is_sorted(choices.begin(), choices.end()));

    ui.ChooseFiles({});
    ShowActive(&dialog);
    QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(ui.choosers.size(), 1u);
}

// ">=" greys Max: clicks there open nothing, the keys move past it; values are edited only in
// named rows, and a value that is not a number is cleared.
TEST_F(FastenerDialogTest, ClearanceCellsFollowTheOperators) {
    CZEBAssemblyFastenerClearanceRule rule;
    Store(rule, 2052, ZebOp_GreaterEqual, {{L"ISO 4017 M8", L"1", L""}});
    Store(rule, 9450, ZebOp_Range, {{L"ISO 4017 M8", L"3", L"4"}});
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();

    ClickCell(*grid, 0, 2);
    EXPECT_FALSE(grid->IsCellEditOpen());
    ClickCell(*grid, 1, 1);  // no fastener name in this row
    EXPECT_FALSE(grid->IsCellEditOpen());
    TypeInto(*grid, 0, 1, "12a");
    // A value that cannot be read is refused where it was typed; the cell keeps its value.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(Cell(*grid, 0, 1), L"1");
    EXPECT_EQ(grid->GetEditColumn(), 1);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(
        ui.messages[0].text,
        ZebFormatText(LoadLocalizedString(IDS_CELL_VALUE_REFUSED),
                      {L"1", grid->model()->headerData(1, Qt::Horizontal).toString().toStdWString(),
                       L"12a", LoadLocalizedString(IDS_VALUE_NOT_A_NUMBER)}));
    ui.messages.clear();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    TypeInto(*grid, 0, 1, "0,5");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);  // past the greyed Max A
    EXPECT_EQ(Cell(*grid, 0, 1), L"0.5");
    EXPECT_EQ(grid->GetEditColumn(), 3);
    QTest::keyClicks(QApplication::focusWidget(), "2.5");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);  // past the greyed Max A again
    EXPECT_EQ(Cell(*grid, 0, 3), L"2.5");  // typing replaced the selected text
    EXPECT_EQ(grid->GetEditColumn(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(grid->IsCellEditOpen());

    dialog.GetOperatorList(0)->setCurrentIndex(1);  // Between
    EXPECT_FALSE(grid->IsDisabledColumn(CZEBAsmFastenerClearanceRuleListCtrl::kMaxA));
    TypeInto(*grid, 0, 2, "7");
    // Changing an operator commits an open value.
    dialog.GetOperatorList(1)->setCurrentIndex(0);
    EXPECT_FALSE(grid->IsCellEditOpen());
    EXPECT_EQ(Cell(*grid, 0, 2), L"7");

    // A name another row holds is refused with its message; the cell keeps its name.
    grid->ChoiceList() = {L"ISO 4017 M6", L"ISO 4017 M8"};
    grid->BeginCellChoice(1, 0, 260);
    dialog.findChild<CCustomComboBox*>()->setCurrentIndex(1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              L"ISO 4017 M8 " + LoadLocalizedString(IDS_FASTENER_NAME_ALREADY_LISTED));
    EXPECT_EQ(Cell(*grid, 1, 0), L"");
}

// OK checks every named row before the rule is written; a refused OK leaves the rule as it was.
TEST_F(FastenerDialogTest, ClearanceOkChecksTheConditionsThenStores) {
    CZEBAssemblyFastenerClearanceRule rule;
    Store(rule, 2052, ZebOp_Range, {{L"ISO 4017 M8", L"1", L"2"}});
    Store(rule, 9450, ZebOp_GreaterEqual, {{L"ISO 4017 M8", L"3", L""}});
    const Rows before = Stored(rule, 2052);
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();

    // The message names the row and what is wrong with it.
    struct Refused {
        const wchar_t* min;
        const wchar_t* max;
        ZebStringId message;
    };
    for (const auto& [min, max, message] : {Refused{L"2", L"2", IDS_ROW_LIMITS_REVERSED_AT},
                                            Refused{L"1.9999995", L"2", IDS_ROW_LIMITS_REVERSED_AT},
                                            Refused{L"", L"2", IDS_ROW_INCOMPLETE_AT}}) {
        grid->SetCellText(0, 1, min);
        grid->SetCellText(0, 2, max);
        grid->clearSelection();
        ui.messages.clear();
        dialog.OnOK();
        ASSERT_EQ(ui.messages.size(), 1u) << QString::fromStdWString(min).toStdString();
        EXPECT_EQ(ui.messages[0].text, ZebFormatText(LoadLocalizedString(message), {L"1"}));
        EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
        EXPECT_TRUE(grid->selectionModel()->isRowSelected(0, {}));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(Stored(rule, 2052), before);
    }
    grid->SetCellText(0, 1, L"1");
    grid->SetCellText(0, 2, L"1.5");
    // A row without a name is dropped; a value typed as 12a is refused when OK commits it, and
    // the dialog stays open with the editor on it.
    grid->SetRows(
        {grid->GetRows()[0], {L"", L"5", L"6"}, {L"ISO 4762 M6", L"0.25", L"0.5", L"", L""}});
    TypeInto(*grid, 2, 3, "12a");
    ui.messages.clear();
    dialog.OnOK();
    EXPECT_EQ(ui.messages.size(), 1u);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(grid->HoldsRefusedText());
    EXPECT_EQ(Stored(rule, 2052), before);
    grid->CancelCellEdit();
    ui.messages.clear();
    dialog.OnOK();
    EXPECT_EQ(ui.messages.size(), 1u);  // M6 has no Min of condition B
    grid->SetCellText(2, 3, L"0.75");
    dialog.GetOperatorList(1)->setCurrentIndex(1);
    grid->SetCellText(2, 4, L"0.9");
    grid->SetCellText(0, 4, L"4");
    ui.messages.clear();
    dialog.OnOK();
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(Stored(rule, 2052),
              (Rows{{L"ISO 4017 M8", L"1", L"1.5"}, {L"ISO 4762 M6", L"0.25", L"0.5"}}));
    EXPECT_EQ(Stored(rule, 9450),
              (Rows{{L"ISO 4017 M8", L"3", L"4"}, {L"ISO 4762 M6", L"0.75", L"0.9"}}));
    EXPECT_EQ(FindTyped<ZebRow>(rule, 2052)->op, ZebOp_Range);
    EXPECT_EQ(FindTyped<ZebRow>(rule, 9450)->op, ZebOp_Range);

    // An odd count that is no multiple of three gets one empty row, so that a range keeps it.
    CZEBAssemblyFastenerClearanceDlg again(&rule, L"mm");
    ShowActive(&again);
    again.GetGrid()->SetCellText(1, 0, L"");
    again.OnOK();
    EXPECT_EQ(Stored(rule, 2052), (Rows{{L"ISO 4017 M8", L"1", L"1.5"}, {L"", L"", L""}}));
    std::vector<ZebRow> five(5, ZebRow{L"X", L"1", L"2"});
    for (int i = 0; i < 5; ++i) five[i][0] = L"NAME " + std::to_wstring(i);
    Store(rule, 2052, ZebOp_Range, five);
    Store(rule, 9450, ZebOp_Range, five);
    CZEBAssemblyFastenerClearanceDlg odd(&rule, L"mm");
    ShowActive(&odd);
    odd.OnOK();
    EXPECT_EQ(Stored(rule, 2052).size(), 6u);
    EXPECT_EQ(Stored(rule, 2052).back(), (ZebRow{L"", L"", L""}));
}

// Both layouts, from both file formats; blocking rows and repeated names in the log; one
// confirmation; the table refilled in name order with the rows it came from emptied below.
TEST_F(FastenerDialogTest, ClearanceImportsSheetsIntoTheTable) {
    CZEBAssemblyFastenerClearanceRule rule;
    Store(rule, 2052, ZebOp_Range, {{L"ISO 4017 M8", L"5", L"6"}, {L"zz last", L"1", L"2"}});
    Store(rule, 9450, ZebOp_Range, {{L"ISO 4017 M8", L"7", L"8"}, {L"zz last", L"3", L"4"}});
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();
    const int rowsBefore = grid->GetRowCount();

    // The committed ".xls" in the extended layout: M8 is in the table already, so the import asks.
    const fs::path xls = dir / "clearances.xls";
    fs::copy_file(fs::path(VANTOR_SOURCE_DIR) / "tests/data/fastener_clearance.xls", xls);
    auto seen = Import(&dialog, xls, {CZEBFastenerErrorDlg::kIdOk});
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].message, LoadLocalizedString(IDS_SHEET_NAMES_REPEATED));
    EXPECT_TRUE(seen[0].cancelShown);
    EXPECT_EQ(grid->GetRowCount(), rowsBefore + 4);
    const std::vector<CZebGridModel::Row> merged(grid->GetRows().begin(),
                                                 grid->GetRows().begin() + 5);
    EXPECT_EQ(merged,
              (std::vector<CZebGridModel::Row>{{L"ACME 10", L"2.0", L"", L"1.0", L""},
                                               {L"ISO 4017 M8", L"1.0", L"2.0", L"3.0", L"4.0"},
                                               {L"ISO 4762 M6", L"0.5", L"1.5", L"0.7", L"1.25"},
                                               {L"ZZ LAST", L"1.0", L"2.0", L"3.0", L"4.0"},
                                               {}}));
    EXPECT_EQ(FileBytes(LogOf("clearances", "FastnerClearance_log.txt")),
              Utf8(IDS_LOG_INVALID_VALUES) + Utf8(IDS_LOG_REPEATED_NAMES) + "ISO 4017 M8\n");

    // The simple layout from an ".xlsx": a repeated name warns once; declining leaves the table.
    const fs::path simple = dir / "simple.xlsx";
    WriteSheet(simple, {{"f", "a", "b"}, {"new one", 1.0, 2.0}, {"new one", 3.0, 4.0}});
    const std::vector<CZebGridModel::Row> unchanged = grid->GetRows();
    seen = Import(&dialog, simple, {CZEBFastenerErrorDlg::kIdCancel});
    EXPECT_EQ(seen.size(), 1u);
    EXPECT_EQ(grid->GetRows(), unchanged);
    seen = Import(&dialog, simple, {CZEBFastenerErrorDlg::kIdOk});
    EXPECT_EQ(seen.size(), 1u);  // the repeat's confirmation stands for the merge too
    EXPECT_EQ(grid->GetRows()[3], (CZebGridModel::Row{L"NEW ONE", L"3.0", L"", L"4.0", L""}));

    // A row with neither A nor B blocks the import: the error dialog has one button.
    const fs::path blocked = dir / "blocked.xlsx";
    WriteSheet(blocked, {{"F", "A", "B"}, {"half", 1.0}, {"empty"}, {"empty"}});
    const std::vector<CZebGridModel::Row> kept = grid->GetRows();
    seen = Import(&dialog, blocked, {CZEBFastenerErrorDlg::kIdOk});
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].message, LoadLocalizedString(IDS_SHEET_ROWS_INVALID));
    EXPECT_FALSE(seen[0].cancelShown);
    EXPECT_EQ(grid->GetRows(), kept);
    EXPECT_EQ(
        FileBytes(LogOf("blocked", "FastnerClearance_log.txt")),
        Utf8(IDS_LOG_INVALID_VALUES) + "empty\nempty\n" + Utf8(IDS_LOG_REPEATED_NAMES) + "empty\n");

    // Only a heading, or headings of another layout: refused with 8160.
    const fs::path headingOnly = dir / "heading.xlsx";
    WriteSheet(headingOnly, {{"F", "A", "B"}});
    ui.messages.clear();
    Import(&dialog, headingOnly);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_SHEET_LAYOUT_UNEXPECTED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(grid->GetRows(), kept);

    // The OK that follows adds the imported names the database lacks. ACME 10 has no Max, so
    // both conditions become lower bounds first.
    const size_t namesBefore = DatabaseNames().size();
    dialog.OnOK();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(DatabaseNames().size(), namesBefore);
    dialog.GetOperatorList(0)->setCurrentIndex(0);
    dialog.GetOperatorList(1)->setCurrentIndex(0);
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    const std::list<std::wstring> names = DatabaseNames();
    EXPECT_EQ(names.size(), namesBefore + 2);  // the ISO names were there already
    for (const wchar_t* name : {L"ACME 10", L"NEW ONE", L"ISO 4762 M6"})
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 1)
            << QString::fromWCharArray(name).toStdString();
}

// Values the import cannot read are listed and logged, and nothing of the sheet is taken; a
// workbook that records another unit is converted, and the user told so.
TEST_F(FastenerDialogTest, ClearanceImportRefusesUnreadableValuesAndConvertsUnits) {
    CZEBAssemblyFastenerClearanceRule rule;
    rule.CurrentUnits.LengthUnit = 3;  // inch
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"in");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();
    const std::vector<CZebGridModel::Row> before = grid->GetRows();

    const fs::path odd = dir / "odd.xlsx";
    WriteSheet(odd, {{"F", "A", "B"}, {"X1", "abc", 1.0}, {"X2", "1,5", 2.0}, {"X3", -1.0, 1.0}});
    ui.messages.clear();
    EXPECT_TRUE(Import(&dialog, odd).empty());
    ASSERT_EQ(ui.messages.size(), 1u);
    const std::wstring& listed = ui.messages[0].text;
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_NE(listed.find(L"\"abc\""), std::wstring::npos) << ToUtf8(listed);
    EXPECT_NE(listed.find(L"\"-1"), std::wstring::npos) << ToUtf8(listed);
    EXPECT_EQ(listed.find(L"1,5"), std::wstring::npos) << ToUtf8(listed);
    EXPECT_EQ(grid->GetRows(), before);
    const std::string log = FileBytes(LogOf("odd", "FastnerClearance_log.txt"));
    EXPECT_NE(log.find(Utf8(IDS_LOG_REFUSED_VALUES)), std::string::npos);
    EXPECT_NE(log.find("abc"), std::string::npos);

    // Written by the table export of a millimetre rule set.
    const fs::path metric = dir / "metric.xlsx";
    std::wstring error;
    ASSERT_TRUE(WriteSheetFile(
        metric.wstring(),
        {{L"F", L"A", L"A1", L"B", L"B1"}, {L"M10", L"25.4", L"50.8", L"1,27", L""}}, error, 0))
        << ToUtf8(error);
    ui.messages.clear();
    EXPECT_TRUE(Import(&dialog, metric).empty());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, ZebFormatText(LoadLocalizedString(IDS_IMPORT_UNIT_CONVERTED),
                                                 {GetUnitText(0), GetUnitText(3)}));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_EQ(grid->GetRows()[0], (CZebGridModel::Row{L"M10", L"1.0", L"2.0", L"0.05", L""}));
}

// An import over stored rows (the sheet shorter, longer or as long, replacing rows of the table)
// stores the merged rows and no value the user did not give: a Max left empty stays empty, also
// through a unit conversion of the rule afterwards, and a row without a name is only the one
// that pads an odd row count, empty in every cell before and after the conversion.
TEST_F(FastenerDialogTest, ImportOverStoredRowsStoresNoValueNobodyGave) {
    struct Case {
        std::vector<std::string> stored, sheet;
    };
    const Case cases[] = {{{"M5", "M6", "M8"}, {"M6"}},
                          {{"M6"}, {"M5", "M6", "M8"}},
                          {{"M5", "M6"}, {"M6", "M5"}},
                          {{"M6"}, {"M6"}},
                          {{"M6", "M8"}, {"M6", "M10", "M12"}}};
    const UnitSetting mm{}, inch{.LengthUnit = 3};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.stored.size() * 10 + c.sheet.size());
        CZEBAssemblyFastenerClearanceRule rule;
        Rows stored;
        for (const std::string& name : c.stored)
            stored.push_back(ZebRow{L"ISO 4017 " + FromUtf8(name), L"25.4", L""});
        Store(rule, 2052, ZebOp_GreaterEqual, stored);
        Store(rule, 9450, ZebOp_GreaterEqual, stored);
        std::vector<std::vector<SheetCell>> sheet{{"F", "A", "B"}};
        for (const std::string& name : c.sheet) sheet.push_back({"iso 4017 " + name, 50.8, 76.2});
        const fs::path path = dir / "over.xlsx";
        fs::remove(path);
        WriteSheet(path, sheet);
        {
            CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
            ShowActive(&dialog);
            Import(&dialog, path, {CZEBFastenerErrorDlg::kIdOk});
            dialog.OnOK();
            ASSERT_FALSE(dialog.isVisible());
        }
        std::set<std::wstring> names;
        for (const std::string& name : c.stored) names.insert(L"ISO 4017 " + FromUtf8(name));
        for (const std::string& name : c.sheet) names.insert(L"ISO 4017 " + FromUtf8(name));
        const size_t padding = names.size() % 2 == 1 && names.size() % 3 != 0 ? 1 : 0;
        for (const bool converted : {false, true}) {
            if (converted) rule.ConvertUnits(&mm, &inch);
            for (const long id : {2052L, 9450L}) {
                const Rows rows = Stored(rule, id);
                ASSERT_EQ(rows.size(), names.size() + padding) << id;
                auto name = names.begin();
                for (size_t i = 0; i < names.size(); ++i, ++name) {
                    EXPECT_EQ(rows[i].Cell(0), *name);
                    EXPECT_FALSE(rows[i].Cell(1).empty());
                    EXPECT_EQ(rows[i].Cell(2), L"") << converted;
                }
                if (padding) {
                    EXPECT_EQ(rows.back(), (ZebRow{L"", L"", L""})) << converted;
                }
            }
        }
        // Values the sheet brought replace the stored ones; the others keep theirs.
        const Rows inches = Stored(rule, 9450);
        for (size_t i = 0; i < names.size(); ++i) {
            const bool fromSheet =
                std::any_of(c.sheet.begin(), c.sheet.end(), [&](const std::string& name) {
                    return L"ISO 4017 " + FromUtf8(name) == inches[i].Cell(0);
                });
            EXPECT_EQ(inches[i].Cell(1), fromSheet ? L"3.0" : L"1.0") << i;
        }
    }
}

// The second list reads an "N" column that every named row must fill; its texts go into the
// database with their names on OK.
TEST_F(FastenerDialogTest, SecondListNeedsTheThreadColumn) {
    CZEBAssemblyFastenerClearanceRule rule;
    CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    dialog.ControlById<QRadioButton>(CZEBFastenerTableDlg::kSecondListId)->setChecked(true);

    const fs::path missing = dir / "missing.xlsx";
    WriteSheet(missing,
               {{"F", "A", "B", "N"}, {"ACME 8", 1.0, 2.0, "m8x1.25"}, {"ACME 9", 1.0, 2.0}});
    Import(&dialog, missing);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_SHEET_ROWS_INVALID));

    const fs::path complete = dir / "complete.xlsx";
    WriteSheet(
        complete,
        {{"F", "A", "B", "N"}, {"ACME 8", 1.0, 2.0, "m8x1.25"}, {"ACME 9", 1.0, 2.0, "M9x1.25"}});
    Import(&dialog, complete);
    EXPECT_EQ(dialog.GetGrid()->GetRows()[0],
              (CZebGridModel::Row{L"ACME 8", L"1.0", L"", L"2.0", L""}));
    dialog.OnOK();
    std::map<std::wstring, std::wstring> threads;
    ASSERT_EQ(zeb_db::ZEBDataHelper::getInstance()->GetAttributeData(kFastenerThreadAttributeSet,
                                                                     threads),
              ZebDbOk);
    EXPECT_EQ(threads[L"ACME 8"], L"M8X1.25");
    EXPECT_EQ(threads[L"ACME 9"], L"M9X1.25");
}

// A length that is not a number blocks the import and is logged; a row without a length reads
// as 0 in the merge and shows 0.0.
TEST_F(FastenerDialogTest, EngagementImportChecksTheLengths) {
    CZEBAssemblyFastenerEngagementLenRule rule;
    Store(rule, 2053, ZebOp_Equal, {{L"ISO 4017 M8", L""}, {L"ISO 4017 M6", L"4"}});
    CZEBAssemblyFastenerEngagementLenDlg dialog(&rule, L"in");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();
    EXPECT_EQ(grid->GetRowCount(), 2 + 2 + 260);
    EXPECT_EQ(dialog.ControlById<QLabel>(6032)->text().toStdWString(),
              ZebFormatText(LoadLocalizedString(IDS_ENGAGEMENT_UNIT_LABEL), {L"in"}));

    const fs::path bad = dir / "lengths.xlsx";
    WriteSheet(bad, {{"F", "A"}, {"ACME 1", "3 mm"}, {"ACME 2", 2.0}});
    auto seen = Import(&dialog, bad, {CZEBFastenerErrorDlg::kIdOk});
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_FALSE(seen[0].cancelShown);
    EXPECT_EQ(FileBytes(LogOf("lengths", "FastenerEngement_log.txt")),
              Utf8(IDS_LOG_INVALID_VALUES) + "ACME 1\n" + Utf8(IDS_LOG_REPEATED_NAMES));
    EXPECT_EQ(Cell(*grid, 0, 0), L"ISO 4017 M8");

    const fs::path good = dir / "good.xlsx";
    WriteSheet(good, {{"F", "A"}, {"ACME 2", 2.0}});
    EXPECT_TRUE(Import(&dialog, good).empty());
    EXPECT_EQ(std::vector<CZebGridModel::Row>(grid->GetRows().begin(), grid->GetRows().begin() + 4),
              (std::vector<CZebGridModel::Row>{
                  {L"ACME 2", L"2.0"}, {L"ISO 4017 M6", L"4.0"}, {L"ISO 4017 M8", L"0.0"}, {}}));
}

// OK: a length of 0 is valid and -1 is not; 2.5.1 passes as typed; names go into the database
// once, a refused addition is reported once, and without a database OK still stores the rule.
TEST_F(FastenerDialogTest, EngagementOkChecksLengthsAndAddsTheImportedNames) {
    CZEBAssemblyFastenerEngagementLenRule rule;
    Store(rule, 2053, ZebOp_Equal, {{L"ISO 4017 M8", L"-1"}});
    CZEBAssemblyFastenerEngagementLenDlg dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* grid = dialog.GetGrid();
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, ZebFormatText(LoadLocalizedString(IDS_ROW_NEGATIVE_AT), {L"1"}));
    EXPECT_EQ(Stored(rule, 2053), (Rows{{L"ISO 4017 M8", L"-1"}}));
    grid->SetCellText(0, 1, L"0");
    TypeInto(*grid, 1, 1, "2.5.1");  // no name: the row is dropped
    const fs::path sheet = dir / "names.xlsx";
    WriteSheet(sheet, {{"F", "A"}, {"iso 4017 m6", 5.0}, {"ACME 12", 2.0}, {"ACME 13", 3.0}});
    Import(&dialog, sheet);
    ASSERT_EQ(Cell(*grid, 3, 0), L"ISO 4017 M8");
    grid->SetCellText(3, 1, L"2.5.1");
    // The database refuses a new name from here on: the first failure is reported, the rest
    // are not tried.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(fs::path(zeb_db::ZEBDataHelper::GetDatabaseFile()).c_str(), &db),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(
                  db,
                  "CREATE TRIGGER refuse BEFORE INSERT ON fastener_name WHEN new.name = 'ACME 13'"
                  " BEGIN SELECT RAISE(ABORT, 'refused'); END",
                  nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    ui.messages.clear();
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
    EXPECT_EQ(Stored(rule, 2053), (Rows{{L"ACME 12", L"2.0"},
                                        {L"ACME 13", L"3.0"},
                                        {L"ISO 4017 M6", L"5.0"},
                                        {L"ISO 4017 M8", L"2.5.1"}}));
    const std::list<std::wstring> names = DatabaseNames();
    EXPECT_EQ(std::count(names.begin(), names.end(), L"ACME 12"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"ACME 13"), 0);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"ISO 4017 M6"),
              1);  // held already, not again

    // No usable database: the dialog opens without stored rows and OK stores what it shows.
    ScopedDatabaseFolder::Point(dir / "not-a-folder");
    std::ofstream(dir / "not-a-folder") << "a file";
    CZEBAssemblyFastenerEngagementLenDlg noDatabase(&rule, L"mm");
    ShowActive(&noDatabase);
    noDatabase.GetGrid()->SetCellText(0, 0, L"TYPED");
    noDatabase.GetGrid()->SetCellText(0, 1, L"1");
    ui.messages.clear();
    noDatabase.OnOK();
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_EQ(Stored(rule, 2053), (Rows{{L"TYPED", L"1"}}));
}
