#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include "app/assembly_rules_app.h"
#include "controls/cell_text_edit.h"
#include "controls/custom_combo_box.h"
#include "controls/zeb_list_ctrl.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "tests/ui/grid_dialog.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Rows = std::vector<CZebGridModel::Row>;

class ListCtrlTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        grid().SetColumns({L"Name", L"Size", L"Note"});
        grid().SetRows(Rows{{L"a0", L"a1", L"a2"},
                            {L"b0", L"b1", L"b2"},
                            {L"c0", L"c1", L"c2"},
                            {L"d0", L"d1", L"d2"},
                            {L"e0", L"e1", L"e2"}});
    }
    CZEBListCtrl& grid() { return *dlg.table; }
    QLineEdit* editor() {
        return FindZebControlAs<QLineEdit>(&grid(), CZEBListCtrl::kTextEditorId);
    }
    void Select(std::initializer_list<int> rows) {
        for (int row : rows)
            grid().selectionModel()->setCurrentIndex(
                grid().model()->index(row, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void Key(int key) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : &grid(), Qt::Key(key));
    }

    GridDialog<CZEBListCtrl> dlg;
    CZebRecordingUiService ui;
};
}  // namespace

TEST_F(ListCtrlTest, TextEditorOpensOnRowsOnlyIsReusedAndRemembersTheCell) {
    grid().BeginCellEdit(-1, 1, 260);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(grid().GetEditRow(), -1);
    std::wstring text = L"untouched";
    EXPECT_EQ(grid().EndCellEdit(text), 0);
    EXPECT_EQ(grid().CancelCellEdit(), 0);
    EXPECT_EQ(text, L"untouched");

    ShowActive(&dlg);
    grid().BeginCellEdit(1, 1, 260);
    QLineEdit* first = editor();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(grid().IsCellEditOpen());
    EXPECT_EQ(first->text(), "b1");
    EXPECT_EQ(first->selectedText(), "b1");
    auto* cellEdit = qobject_cast<CZebCellTextEdit*>(first);
    ASSERT_NE(cellEdit, nullptr);
    EXPECT_EQ(cellEdit->GetTypingLimit(), 260);
    EXPECT_EQ(first->height(), grid().visualRect(grid().model()->index(1, 1)).height() + 4);
    first->setText("changed");
    EXPECT_EQ(grid().EndCellEdit(text), 1);
    EXPECT_EQ(text, L"changed");
    EXPECT_EQ(grid().GetCellText(1, 1), L"changed");
    EXPECT_FALSE(grid().IsCellEditOpen());
    EXPECT_EQ(grid().EndCellEdit(text), 0);
    // The remembered cell outlives the editor.
    EXPECT_EQ(grid().GetEditRow(), 1);
    EXPECT_EQ(grid().GetEditColumn(), 1);
    EXPECT_EQ(grid().GetOriginalText(), L"b1");

    grid().BeginCellEdit(2, 0, 10);
    EXPECT_EQ(editor(), first);
    EXPECT_EQ(cellEdit->GetTypingLimit(), 260);  // the first limit stays
    first->setText("dropped");
    EXPECT_EQ(grid().CancelCellEdit(), 1);
    EXPECT_EQ(grid().GetCellText(2, 0), L"c0");
    EXPECT_EQ(grid().GetOriginalText(), L"c0");
}

// The limit holds back typing only: what a cell holds opens and goes back whole, however long,
// and whatever limit the editor was first opened with.
TEST_F(ListCtrlTest, TheTextLimitNeverCutsWhatACellHolds) {
    ShowActive(&dlg);
    grid().BeginCellEdit(1, 1, 10);
    std::wstring text;
    grid().EndCellEdit(text);

    const std::wstring longText(300, L'x');
    grid().SetCellText(0, 2, longText);
    grid().BeginCellEdit(0, 2, 260);
    EXPECT_EQ(editor()->text().size(), 300);
    EXPECT_EQ(grid().EndCellEdit(text), 1);
    EXPECT_EQ(grid().GetCellText(0, 2), longText);

    const std::wstring hundred(100, L'y');
    grid().SetCellText(2, 2, hundred);
    grid().BeginCellEdit(2, 2, 260);
    QTest::keyClick(editor(), Qt::Key_End);
    QTest::keyClicks(editor(), "z");  // past the limit of 10 and the text's own length
    EXPECT_EQ(editor()->text().size(), 100);
    QTest::keyClick(editor(), Qt::Key_Backspace);
    EXPECT_EQ(editor()->text().size(), 99);
    EXPECT_EQ(grid().EndCellEdit(text), 1);
    EXPECT_EQ(grid().GetCellText(2, 2), hundred.substr(0, 99));

    grid().BeginCellEdit(3, 2, 260);
    QTest::keyClicks(editor(), "0123456789abc");
    EXPECT_EQ(editor()->text(), "0123456789");
}

// Tab on the last editable column is left to the dialog, which moves on to the next control.
TEST_F(ListCtrlTest, TabMovesThroughTheCellsAndLeavesTheTableAtItsEnds) {
    auto* before = new QLineEdit(dlg.Body());
    auto* next = new QLineEdit(dlg.Body());
    dlg.Body()->layout()->addWidget(next);
    QWidget::setTabOrder(before, &grid());
    QWidget::setTabOrder(&grid(), next);
    ShowActive(&dlg);
    // The last column of a row with rows of text below goes on to the next row.
    grid().BeginCellEdit(3, 2, 260);
    Key(Qt::Key_Tab);
    EXPECT_EQ(grid().GetEditRow(), 4);
    EXPECT_EQ(grid().GetEditColumn(), 0);
    // Shift+Tab goes back, across the row's start too.
    QTest::keyClick(editor(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(grid().GetEditRow(), 3);
    EXPECT_EQ(grid().GetEditColumn(), 2);
    // The table's last cell hands the focus on; its first hands it back.
    grid().setCurrentIndex(grid().model()->index(3, 1));
    grid().BeginCellEdit(4, 2, 260);
    QTest::keyClicks(editor(), "last");
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next);
    EXPECT_EQ(grid().GetCellText(4, 2), L"last");
    EXPECT_EQ(grid().currentIndex(), grid().model()->index(3, 1));
    grid().BeginCellEdit(0, 0, 260);
    QTest::keyClick(editor(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), before);
    EXPECT_FALSE(grid().IsCellEditOpen());
    // The table itself hands Tab on as well.
    grid().setFocus();
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next);
    EXPECT_EQ(grid().currentIndex(), grid().model()->index(3, 1));
}

TEST_F(ListCtrlTest, KeysCommitAndMoveTheEditorAsTheKeyTableSays) {
    ShowActive(&dlg);
    grid().BeginCellEdit(0, 0, 260);
    QTest::keyClicks(editor(), "x");
    Key(Qt::Key_Tab);
    EXPECT_EQ(grid().GetCellText(0, 0), L"x");
    EXPECT_EQ(grid().GetEditColumn(), 1);
    EXPECT_TRUE(grid().IsCellEditOpen());
    Key(Qt::Key_Right);
    EXPECT_EQ(grid().GetEditColumn(), 2);
    Key(Qt::Key_Right);  // last column: commits and stays closed
    EXPECT_FALSE(grid().IsCellEditOpen());
    EXPECT_EQ(grid().GetEditColumn(), 2);
    grid().BeginCellEdit(0, 2, 260);
    Key(Qt::Key_Down);
    EXPECT_EQ(grid().GetEditRow(), 1);
    Key(Qt::Key_Left);
    EXPECT_EQ(grid().GetEditColumn(), 1);
    Key(Qt::Key_Up);
    EXPECT_EQ(grid().GetEditRow(), 0);
    Key(Qt::Key_Up);  // first row: commits only
    EXPECT_FALSE(grid().IsCellEditOpen());

    grid().BeginCellEdit(3, 1, 260);
    QTest::keyClicks(editor(), "typed");
    Key(Qt::Key_Escape);
    EXPECT_EQ(grid().GetCellText(3, 1), L"d1");
    EXPECT_FALSE(grid().IsCellEditOpen());
    EXPECT_TRUE(dlg.isVisible());  // Escape went to the editor, not to the dialog
    grid().BeginCellEdit(3, 1, 260);
    QTest::keyClicks(editor(), "typed");
    Key(Qt::Key_Return);
    EXPECT_EQ(grid().GetCellText(3, 1), L"typed");
    EXPECT_TRUE(dlg.isVisible());
    // Enter goes on down the column.
    EXPECT_EQ(grid().GetEditRow(), 4);
    EXPECT_EQ(grid().GetEditColumn(), 1);

    // Delete clears the selected rows only while no text edit is open.
    Select({4});
    grid().BeginCellEdit(2, 1, 260);
    Key(Qt::Key_Delete);
    EXPECT_EQ(grid().GetCellText(4, 0), L"e0");
    Key(Qt::Key_Escape);
    Key(Qt::Key_Delete);
    EXPECT_EQ(grid().GetCellText(4, 0), L"");
    EXPECT_EQ(grid().GetRowCount(), 5);
}

TEST_F(ListCtrlTest, DropDownCommitChecksDuplicatesOnlyForANewText) {
    ShowActive(&dlg);
    grid().ChoiceList() = {L"A0", L"b0", L"Z9"};
    std::wstring text;
    EXPECT_EQ(grid().HideCellChoice(), 0);
    EXPECT_EQ(grid().EndCellChoice(text, L"exists"), 0);

    grid().BeginCellChoice(0, 0, 260);
    auto* combo = FindZebControlAs<CCustomComboBox>(&grid(), CZEBListCtrl::kChoiceEditorId);
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->currentText(), "A0");  // matched ignoring case
    EXPECT_EQ(grid().EndCellChoice(text, L"exists"), 1);
    EXPECT_EQ(grid().GetCellText(0, 0), L"A0");
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(combo->isHidden());

    grid().BeginCellChoice(0, 0, 260);
    combo->setCurrentIndex(1);
    text = L"before";
    EXPECT_EQ(grid().EndCellChoice(text, L"exists already."), 0);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, L"b0 exists already.");
    EXPECT_EQ(ui.messages[0].buttons, ZebMsgButtons::Ok);
    EXPECT_EQ(grid().GetCellText(0, 0), L"A0");
    EXPECT_EQ(text, L"before");

    grid().BeginCellChoice(2, 1, 260);
    EXPECT_EQ(combo->currentIndex(), 0);  // no entry matches "c1"
    combo->setCurrentIndex(2);
    EXPECT_EQ(grid().EndCellChoice(text, L"exists"), 1);
    EXPECT_EQ(grid().GetCellText(2, 1), L"Z9");
}

TEST_F(ListCtrlTest, RowOperations) {
    Select({1, 3});
    EXPECT_EQ(grid().GetSelectedRowCount(), 2);
    std::vector<std::wstring> texts;
    grid().GetSelectedFirstColumnTexts(texts);
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"b0", L"d0"}));
    EXPECT_EQ(grid().ClearSelectedRows(), 1);
    EXPECT_EQ(grid().GetRowCount(), 5);
    EXPECT_EQ(grid().GetSelectedRowCount(), 0);
    EXPECT_EQ(grid().GetRows()[1], CZebGridModel::Row{});
    EXPECT_EQ(grid().GetCellText(1, 2), L"");
    EXPECT_EQ(grid().GetCellText(2, 0), L"c0");
    EXPECT_EQ(grid().GetCellText(3, 1), L"");
    EXPECT_EQ(grid().ClearSelectedRows(), 0);

    EXPECT_TRUE(grid().FindInFirstColumn(L"C0"));
    EXPECT_FALSE(grid().FindInFirstColumn(L"c1"));

    grid().SetColumns({L"Other"});
    EXPECT_EQ(grid().GetColumnCount(), 3);
    EXPECT_EQ(grid().columnWidth(2), 300);
    EXPECT_EQ(grid().GetLastEditableColumn(), 2);

    grid().AppendEmptyRowIfLastFilled();
    EXPECT_EQ(grid().GetRowCount(), 6);
    grid().AppendEmptyRowIfLastFilled();
    EXPECT_EQ(grid().GetRowCount(), 6);

    Select({0, 2, 5});
    EXPECT_EQ(grid().DeleteSelectedRows(), 1);
    // The spare row at the end comes back.
    EXPECT_EQ(grid().GetRowCount(), 4);
    EXPECT_EQ(grid().GetCellText(2, 0), L"e0");
    EXPECT_EQ(grid().GetRows()[3], CZebGridModel::Row{});

    grid().DeleteAllRows();
    grid().AppendEmptyRowIfLastFilled();
    EXPECT_EQ(grid().GetRowCount(), 0);
    grid().AppendEmptyRows(260);
    EXPECT_EQ(grid().GetRowCount(), 260);
    EXPECT_EQ(grid().InsertRow(1, L"new"), 1);
    EXPECT_EQ(grid().GetCellText(1, 0), L"new");
    // An index past the end appends.
    EXPECT_EQ(grid().InsertRow(500, L"last"), 261);
    EXPECT_EQ(grid().GetCellText(261, 0), L"last");
    EXPECT_EQ(grid().InsertRow(-1, L"none"), -1);
    EXPECT_EQ(grid().GetRowCount(), 262);
}

TEST_F(ListCtrlTest, HitTestAndScrolling) {
    ShowActive(&dlg);
    int row = 0, column = 0;
    grid().HitTest(grid().GetCellRect(3, 2).center(), row, column);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(column, 2);
    const QRect last = grid().visualRect(grid().model()->index(4, 0));
    grid().HitTest(QPoint(last.center().x(), last.bottom() + 10), row, column);
    EXPECT_EQ(row, -1);

    // Scrolling leaves an open editor where it was opened.
    grid().AppendEmptyRows(200);
    grid().BeginCellEdit(1, 1, 260);
    const QRect opened = editor()->geometry();
    grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->value() + 5);
    EXPECT_NE(grid().GetCellRect(1, 1), opened.translated(-grid().viewport()->pos()));
    EXPECT_EQ(editor()->geometry(), opened);
    EXPECT_TRUE(grid().IsCellEditOpen());
}

TEST_F(ListCtrlTest, BrowsingWritesTheChosenNamesAndKeepsTheCellOnCancel) {
    ui.ChooseFiles({L"/parts/bolt.prt.3"});
    grid().BrowseFileIntoCell(0, 1, L"(*.prt)|*.prt||", PartFileNaming::FileName);
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_EQ(ui.choosers[0].filter, L"(*.prt)|*.prt||");
    EXPECT_TRUE(ui.choosers[0].fileMustExist);
    EXPECT_TRUE(ui.choosers[0].hideReadOnly);
    EXPECT_FALSE(ui.choosers[0].multiSelect);
    EXPECT_EQ(grid().GetCellText(0, 1), L"bolt.prt.3");

    // Display names shorten names of parts; a file without a part type keeps its name.
    ui.ChooseFiles({L"/nonexistent/nut.prt"});
    grid().BrowseFileIntoCell(1, 1, L"(*.prt)|*.prt||", PartFileNaming::DisplayName);
    EXPECT_EQ(grid().GetCellText(1, 1), L"nut.prt");

    ui.CancelChooser();
    grid().BrowseFileIntoCell(0, 1, L"(*.prt)|*.prt||", PartFileNaming::FileName);
    EXPECT_EQ(grid().GetCellText(0, 1), L"bolt.prt.3");

    std::vector<std::wstring> names{L"Bolt"};
    ui.ChooseFiles({L"/p/bolt.prt.1", L"/p/washer.prt", L"/p/Washer.prt.2", L"/p/nut.prt"});
    grid().BrowsePartFiles(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Bolt", L"washer", L"nut"}));
    EXPECT_TRUE(ui.choosers.back().multiSelect);
    EXPECT_EQ(ui.choosers.back().filter, L"(*.prt.*;*.prt)|*.prt.*;*.prt");
    ui.CancelChooser();
    grid().BrowsePartFiles(names);
    EXPECT_EQ(names.size(), 3u);
}

namespace {
// A table whose column 1 holds values, as the clearance and length tables do.
class NumberTable : public CZEBListCtrl {
public:
    using CZEBListCtrl::CZEBListCtrl;

protected:
    bool IsNumberCell(int, int column) const override { return column == 1; }
};

class NumberTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        grid().SetColumns({L"Name", L"Size"});
        grid().SetRows(Rows{{L"a", L"1.0"}, {L"b", L"2.0"}, {}, {}});
        ShowActive(&dlg);
    }
    NumberTable& grid() { return *dlg.table; }
    QLineEdit* editor() {
        return FindZebControlAs<QLineEdit>(&grid(), CZEBListCtrl::kTextEditorId);
    }
    void TypeAndPress(int row, const char* text, int key) {
        grid().BeginCellEdit(row, 1, 260);
        editor()->setText(QString::fromUtf8(text));
        QTest::keyClick(editor(), Qt::Key(key));
    }

    GridDialog<NumberTable> dlg;
    CZebRecordingUiService ui;
};
}  // namespace

TEST_F(NumberTableTest, AValueIsStoredInTheRulesFormOrRefusedWhereItWasTyped) {
    TypeAndPress(0, "0,125", Qt::Key_Return);
    EXPECT_EQ(grid().GetCellText(0, 1), L"0.125");
    EXPECT_EQ(grid().GetEditRow(), 1);  // Enter went on down
    EXPECT_TRUE(ui.messages.empty());

    for (const char* refused : {"abc", "-1", "1,500"}) {
        SCOPED_TRACE(refused);
        ui.messages.clear();
        TypeAndPress(1, refused, Qt::Key_Return);
        // The cell keeps its value, the editor its text, and the message says where and what.
        EXPECT_TRUE(grid().IsCellEditOpen());
        EXPECT_TRUE(grid().HoldsRefusedText());
        EXPECT_EQ(editor()->text().toStdString(), refused);
        EXPECT_EQ(grid().GetCellText(1, 1), L"2.0");
        ASSERT_EQ(ui.messages.size(), 1u);
        const std::wstring& text = ui.messages[0].text;
        EXPECT_NE(text.find(L"2"), std::wstring::npos);
        EXPECT_NE(text.find(L"Size"), std::wstring::npos);
        EXPECT_NE(text.find(QString::fromUtf8(refused).toStdWString()), std::wstring::npos);
        EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
        // Moving away does not take the text elsewhere; Escape gives the old value back.
        QTest::keyClick(editor(), Qt::Key_Down);
        EXPECT_EQ(grid().GetEditRow(), 1);
        EXPECT_EQ(editor()->text().toStdString(), refused);
        QTest::keyClick(editor(), Qt::Key_Escape);
        EXPECT_FALSE(grid().IsCellEditOpen());
        EXPECT_FALSE(grid().HoldsRefusedText());
        EXPECT_EQ(grid().GetCellText(1, 1), L"2.0");
    }
    // An emptied value is no refusal, and names are never read as numbers.
    ui.messages.clear();
    TypeAndPress(1, "", Qt::Key_Return);
    EXPECT_EQ(grid().GetCellText(1, 1), L"");
    grid().BeginCellEdit(0, 0, 260);
    editor()->setText("M8,5");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(grid().GetCellText(0, 0), L"M8,5");
    EXPECT_TRUE(ui.messages.empty());
}

TEST_F(NumberTableTest, DeletingEveryRowKeepsTheSpareRows) {
    grid().selectAll();
    EXPECT_EQ(grid().DeleteSelectedRows(), 1);
    EXPECT_EQ(grid().GetRows(), (Rows{{}, {}}));
    // Deleting filled rows above the spare ones adds none.
    grid().SetRows(Rows{{L"a", L"1"}, {L"b", L"2"}, {}});
    grid().selectionModel()->select(grid().model()->index(0, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
    EXPECT_EQ(grid().DeleteSelectedRows(), 1);
    EXPECT_EQ(grid().GetRows(), (Rows{{L"b", L"2"}, {}}));
}

TEST_F(NumberTableTest, AScrolledTableThatShrinksRepaintsWithoutRecursion) {
    static std::vector<std::string> warnings;
    warnings.clear();
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            warnings.push_back(text.toStdString());
        });
    grid().AppendEmptyRows(300);
    QApplication::processEvents();
    grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->maximum());
    QApplication::processEvents();
    // Rows go while the view is scrolled to its end: its next paint lays it out and moves the
    // scroll bar back.
    grid().SetRows(Rows{{L"a", L"1"}, {}});
    grid().viewport()->repaint();
    QApplication::processEvents();
    qInstallMessageHandler(previous);
    for (const std::string& warning : warnings)
        EXPECT_EQ(warning.find("Recursive repaint"), std::string::npos) << warning;
    EXPECT_EQ(grid().verticalScrollBar()->value(), 0);
}

namespace {
// A name chosen from a list, a size and a note: the cells of the fastener tables.
class KeyTable : public CZEBListCtrl {
public:
    using CZEBListCtrl::CZEBListCtrl;
    CellEditor EditorOf(int, int column) const override {
        return column == 0 ? CellEditor::Choice : CellEditor::Text;
    }

protected:
    bool IsNumberCell(int, int column) const override { return column == 1; }
};
}  // namespace

// A whole table filled from the keyboard alone, with the keys a spreadsheet user expects.
TEST(KeyboardTable, FilledWithKeysAlone) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    GridDialog<KeyTable> dlg;
    KeyTable& grid = *dlg.table;
    grid.SetColumns({L"Name", L"Size", L"Note"});
    grid.ChoiceList() = {L"Bolt", L"Nut", L"Pin"};
    grid.AppendEmptyRows(3);
    ShowActive(&dlg);
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(0, 0));
    const auto key = [](int k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(k), modifiers);
    };
    // Key by key, each to whichever widget has the focus then.
    const auto type = [](const char* text) {
        for (const char* c = text; *c; ++c)
            QTest::keyClicks(QApplication::focusWidget(), QString(QChar(*c)));
    };

    // F2 opens the drop-down of a name cell; its arrows stay its own, Enter takes the entry.
    key(Qt::Key_F2);
    ASSERT_TRUE(grid.IsCellChoiceOpen());
    key(Qt::Key_Down);
    EXPECT_TRUE(grid.IsCellChoiceOpen());
    key(Qt::Key_Return);
    EXPECT_EQ(grid.GetCellText(0, 0), L"Nut");
    EXPECT_FALSE(grid.IsCellChoiceOpen());
    EXPECT_TRUE(dlg.isVisible());  // Enter never reached the dialog's OK

    // Tab runs on through the cells; typing replaces, Enter commits and goes down.
    grid.setCurrentIndex(grid.model()->index(0, 1));
    type("0,5");
    ASSERT_TRUE(grid.IsCellEditOpen());
    key(Qt::Key_Tab);
    EXPECT_EQ(grid.GetCellText(0, 1), L"0.5");
    EXPECT_EQ(grid.GetEditColumn(), 2);
    type("coarse");
    key(Qt::Key_Return);
    EXPECT_EQ(grid.GetCellText(0, 2), L"coarse");
    EXPECT_EQ(grid.GetEditRow(), 1);
    EXPECT_EQ(grid.GetEditColumn(), 2);
    key(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(grid.GetEditColumn(), 1);
    type("12");
    key(Qt::Key_Escape);
    EXPECT_EQ(grid.GetCellText(1, 1), L"");
    EXPECT_TRUE(dlg.isVisible());

    // Alt+Down opens a name cell with its list shown.
    grid.setCurrentIndex(grid.model()->index(1, 0));
    key(Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(grid.IsCellChoiceOpen());
    auto* combo = FindZebControlAs<CCustomComboBox>(&grid, CZEBListCtrl::kChoiceEditorId);
    ASSERT_NE(combo, nullptr);
    EXPECT_TRUE(combo->view()->isVisible());
    combo->hidePopup();
    key(Qt::Key_Escape);
    EXPECT_FALSE(grid.IsCellChoiceOpen());

    // Rows go to the clipboard as tab-separated text and come back below; Insert adds a row,
    // Shift+Delete removes the selected ones.
    grid.setCurrentIndex(grid.model()->index(0, 0));
    grid.selectRow(0);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Nut\t0.5\tcoarse\n");
    // A name is pasted as the drop-down takes it: one the list offers, in its spelling, and only
    // once in the table; a refused name keeps its row out, a refused size only itself.
    grid.setCurrentIndex(grid.model()->index(2, 0));
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find(L"\"Nut\" cannot be taken. It is already in the table"),
              std::wstring::npos)
        << ToUtf8(ui.messages[0].text);
    EXPECT_EQ(grid.GetRows()[2], CZebGridModel::Row{});
    QGuiApplication::clipboard()->setText("pin\tabc\tx\nWasher\t1\ty\n");
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(ui.messages.size(), 2u);  // both refusals in one message
    EXPECT_NE(ui.messages[1].text.find(L"Row 3, column \"Size\": \"abc\""), std::wstring::npos);
    EXPECT_NE(ui.messages[1].text.find(L"\"Washer\" cannot be taken. It is not one of the names"),
              std::wstring::npos)
        << ToUtf8(ui.messages[1].text);
    EXPECT_EQ(grid.GetRows()[2], (CZebGridModel::Row{L"Pin", L"", L"x"}));
    EXPECT_EQ(grid.GetRows()[3], CZebGridModel::Row{});
    const int rows = grid.GetRowCount();
    key(Qt::Key_Insert);
    EXPECT_EQ(grid.GetRowCount(), rows + 1);
    EXPECT_EQ(grid.GetRows()[2], CZebGridModel::Row{});
    grid.selectRow(3);
    key(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(grid.GetRowCount(), rows);
    EXPECT_EQ(grid.GetCellText(0, 0), L"Nut");
    EXPECT_EQ(grid.GetCellText(3, 0), L"");
}
