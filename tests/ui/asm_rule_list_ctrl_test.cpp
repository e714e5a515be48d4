#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include "app/assembly_rules_app.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "framework/ui/recording_ui_service.h"
#include "tests/ui/grid_dialog.h"
#include "tests/ui/qt_test_app.h"

namespace {
class ComponentTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        table().SetNumberedColumns({L"#", L"First part", L"Second part", L"Clearance", L"Note"},
                                   820);
        table().AppendEmptyRows(5);
        ShowActive(&dlg);
    }
    CZEBAsmRuleListCtrl& table() { return *dlg.table; }
    QLineEdit* editor() {
        return FindZebControlAs<QLineEdit>(&table(), CZEBListCtrl::kTextEditorId);
    }
    void Click(int row, int column, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(table().viewport(), button, {},
                          table().GetCellRect(row, column).center());
    }
    // Types into a cell opened by a click and ends with `key`.
    void Type(int row, int column, const char* text, Qt::Key key) {
        Click(row, column);
        ASSERT_NE(editor(), nullptr);
        ASSERT_TRUE(table().IsCellEditOpen());
        QTest::keyClicks(editor(), text);
        QTest::keyClick(editor(), key);
    }

    CZebResourceScope scope;
    GridDialog<CZEBAsmRuleListCtrl> dlg;
    CZebRecordingUiService ui;
};
}  // namespace

TEST(ComponentTableColumns, NumberedColumnsShareTheWidthAfterAnIndexColumn) {
    EnsureQtTestApp();
    CZEBAsmRuleListCtrl table;
    table.SetNumberedColumns({L"#", L"A", L"B", L"C"}, 620);
    ASSERT_EQ(table.GetColumnCount(), 4);
    EXPECT_EQ(table.columnWidth(0), 20);
    EXPECT_EQ(table.columnWidth(1), 200);
    EXPECT_EQ(table.columnWidth(3), 200);
    EXPECT_EQ(table.GetFirstEditableColumn(), 1);
    EXPECT_EQ(table.GetLastEditableColumn(), 3);
    table.SetNumberedColumns({L"#", L"A"}, 100);
    EXPECT_EQ(table.GetColumnCount(), 4);
}

TEST_F(ComponentTableTest, PairModeRefusesAClearanceItCannotRead) {
    EXPECT_FALSE(table().IsPreferredComponentsMode());
    Type(0, 3, "abc", Qt::Key_Return);
    // Refused where it was typed: the editor stays on the cell with the text, the cell as it was.
    EXPECT_TRUE(table().HoldsRefusedText());
    EXPECT_EQ(table().GetEditRow(), 0);
    EXPECT_EQ(editor()->text(), "abc");
    EXPECT_EQ(table().GetCellText(0, 3), L"");
    ASSERT_EQ(ui.messages.size(), 1u);
    QTest::keyClick(editor(), Qt::Key_Escape);
    Type(1, 3, "2,5", Qt::Key_Return);
    EXPECT_EQ(table().GetCellText(1, 3), L"2.5");
    // A click elsewhere commits with the same check, and the refused text stays put.
    QTest::keyClick(editor(), Qt::Key_Escape);
    Click(2, 3);
    QTest::keyClicks(editor(), "x1");
    Click(2, 1);
    EXPECT_EQ(table().GetEditColumn(), 3);
    EXPECT_EQ(editor()->text(), "x1");
    EXPECT_EQ(ui.messages.size(), 2u);
    QTest::keyClick(editor(), Qt::Key_Escape);
    Click(2, 1);
    EXPECT_EQ(table().GetEditColumn(), 1);
    EXPECT_TRUE(table().IsCellEditOpen());
    // Other columns are not checked.
    QTest::keyClicks(editor(), "abc");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(table().GetCellText(2, 1), L"abc");
    EXPECT_EQ(ui.messages.size(), 2u);
    // Column 0 selects instead of editing.
    QTest::keyClick(editor(), Qt::Key_Escape);
    Click(3, 0);
    EXPECT_FALSE(table().IsCellEditOpen());
    EXPECT_EQ(table().GetSelectedRowCount(), 1);
}

TEST_F(ComponentTableTest, PreferredComponentsModeKeepsAnyText) {
    table().SetMode(CZEBAsmRuleListCtrl::Mode::PreferredComponents);
    EXPECT_TRUE(table().IsPreferredComponentsMode());
    Type(0, 3, "abc", Qt::Key_Return);
    EXPECT_EQ(table().GetCellText(0, 3), L"abc");
    // The mode is the table's own: it holds whichever resource library is current.
    const ZebResourceHandle libraries[] = {GetAssemblyRulesApp()->m_defaultLibrary.get(), nullptr};
    for (ZebResourceHandle library : libraries) {
        ZebSetResourceHandle(library);
        EXPECT_TRUE(table().IsPreferredComponentsMode());
        Type(1, 3, "xyz", Qt::Key_Return);
        EXPECT_EQ(table().GetCellText(1, 3), L"xyz");
    }
    ZebSetResourceHandle(GetAssemblyRulesApp()->m_localizedLibrary.get());
}

TEST_F(ComponentTableTest, RightClickBrowsesOnlyTheModesNameColumns) {
    ui.ChooseFiles({L"/parts/bracket.prt.2"});
    Click(0, 1, Qt::RightButton);
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_EQ(ui.choosers[0].filter, L"(*.prt)|*.prt||");
    EXPECT_EQ(table().GetCellText(0, 1), L"bracket.prt.2");
    Click(0, 3, Qt::RightButton);
    EXPECT_EQ(ui.choosers.size(), 1u);

    table().SetMode(CZEBAsmRuleListCtrl::Mode::PreferredComponents);
    Click(1, 1, Qt::RightButton);
    EXPECT_EQ(ui.choosers.size(), 1u);
    ui.ChooseFiles({L"/parts/pin.prt"});
    Click(1, 4, Qt::RightButton);
    EXPECT_EQ(ui.choosers.size(), 2u);
    EXPECT_EQ(table().GetCellText(1, 4), L"pin.prt");
    // Below the last row nothing is browsed.
    const QRect last = table().visualRect(table().model()->index(4, 2));
    QTest::mouseClick(table().viewport(), Qt::RightButton, {},
                      QPoint(last.center().x(), last.bottom() + 8));
    EXPECT_EQ(ui.choosers.size(), 2u);
}

TEST_F(ComponentTableTest, TooltipsOnlyOnBrowseColumns) {
    const QString tip = QString::fromStdWString(LoadLocalizedString(IDS_TIP_CHOOSE_PART_FILE));
    ASSERT_FALSE(tip.isEmpty());
    auto tooltipAt = [this](int row, int column) {
        QToolTip::hideText();
        (void)QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 2000);
        const QPoint at = table().GetCellRect(row, column).center();
        QHelpEvent help(QEvent::ToolTip, at, table().viewport()->mapToGlobal(at));
        QApplication::sendEvent(table().viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    EXPECT_EQ(tooltipAt(0, 1), tip);
    EXPECT_EQ(tooltipAt(4, 2), tip);
    EXPECT_EQ(tooltipAt(0, 3), "");
    EXPECT_EQ(tooltipAt(0, 0), "");
    table().SetMode(CZEBAsmRuleListCtrl::Mode::PreferredComponents);
    EXPECT_EQ(tooltipAt(0, 1), "");
    EXPECT_EQ(tooltipAt(0, 4), tip);
}
