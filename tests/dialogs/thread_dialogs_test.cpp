// The recommended thread types dialog and the thread size editor, driven through their controls'
// ids and keys, message boxes answered by the recording UI service.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <set>

#include "app/assembly_rules_app.h"
#include "app/settings_document.h"
#include "controls/zeb_asm_recomm_thread_conn_list_ctrl.h"
#include "dialogs/database/thread_size_dlg.h"
#include "dialogs/fastener/recomm_thread_types_dlg.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/zeb_xml.h"
#include "rules/recomm_thread_connection_rule.h"
#include "rules/rule_record.h"
#include "tests/support/exported_rule.h"
#include "tests/ui/qt_test_app.h"

namespace {
using ThreadTypes = CZEBAssemblyRecommThreadTypesInConnectionDlg;
using Rows = std::vector<ZebRow>;

Rows Stored(CZebRule& rule, long id) {
    const auto& values = FindTyped<ZebRow>(rule, id)->values;
    return Rows(values.begin(), values.end());
}

void Store(CZebRule& rule, long id, const Rows& rows) {
    auto* table = FindTyped<ZebRow>(rule, id);
    table->values.RemoveAll();
    for (const ZebRow& row : rows) table->values.Add(row);
}

// The filled pairs of a table, in order.
Rows Pairs(const CZEBAsmRecommThreadConnListCtrl& grid) {
    Rows pairs;
    int half = -1;
    EXPECT_TRUE(grid.ReadPairs(pairs, half));
    return pairs;
}

class ThreadDialogsTest : public ::testing::Test {
protected:
    void SetUp() override { EnsureQtTestApp(); }
    CZebRecordingUiService ui;
};
}  // namespace

// Pairs open upper-cased, sorted and once, above 50 empty rows; typing, Delete and OK work the
// table; the thread sizes switch enables its button at once but is stored only on OK.
TEST_F(ThreadDialogsTest, ThreadTypesTableAndSwitch) {
    CZEBAssemblyRecommThreadConnectionRule rule;
    Store(rule, 7072, {{L"m6", L"coarse"}, {L"M6", L"COARSE"}, {L"M5", L"FINE"}, {L"single"}});
    ThreadTypes dialog(&rule);
    ShowActive(&dialog);
    EXPECT_EQ(dialog.windowTitle().toStdWString(), rule.DisplayName);
    CZEBAsmRecommThreadConnListCtrl* grid = dialog.GetGrid();
    ASSERT_EQ(grid->GetRowCount(), 2 + 50);
    EXPECT_EQ(Pairs(*grid), (Rows{{L"M5", L"FINE"}, {L"M6", L"COARSE"}}));
    EXPECT_EQ(grid->columnWidth(0), 16);

    auto* sizesSwitch = dialog.ControlById<QCheckBox>(ThreadTypes::kThreadSizesSwitchId);
    QWidget* sizesButton = dialog.GetDlgItem(ThreadTypes::kThreadSizesId);
    EXPECT_TRUE(sizesSwitch->isEnabled());
    EXPECT_FALSE(sizesSwitch->isChecked());
    EXPECT_FALSE(sizesButton->isEnabled());
    sizesSwitch->click();
    EXPECT_TRUE(sizesButton->isEnabled());
    EXPECT_FALSE(FindTyped<ZebRow>(rule, 9148)->criteriaStatus);

    // A click opens the editor of a pair cell; Tab moves on to the second type.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->GetCellRect(2, 1).center());
    ASSERT_TRUE(grid->IsCellEditOpen());
    QTest::keyClicks(QApplication::focusWidget(), "UNC");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(grid->GetEditColumn(), 2);
    QTest::keyClicks(QApplication::focusWidget(), "UNF");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(grid->GetCellText(2, 2), L"UNF");
    // Enter went on down the column; Escape leaves the next cell as it was.
    EXPECT_EQ(grid->GetEditRow(), 3);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);

    grid->selectRow(0);
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_TRUE(grid->GetCellText(0, 1).empty());
    EXPECT_EQ(grid->GetRowCount(), 52);

    grid->SetCellText(5, 1, L"M8");
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              ZebFormatText(LoadLocalizedString(IDS_ROW_INCOMPLETE_AT), {L"6"}));
    EXPECT_TRUE(grid->selectionModel()->isRowSelected(5, {}));
    EXPECT_EQ(Stored(rule, 7072).size(), 4u);  // nothing stored
    EXPECT_TRUE(dialog.isVisible());

    grid->SetCellText(5, 2, L"fine");
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(Stored(rule, 7072), (Rows{{L"M6", L"COARSE"}, {L"UNC", L"UNF"}, {L"M8", L"fine"}}));
    EXPECT_TRUE(FindTyped<ZebRow>(rule, 9148)->criteriaStatus);
}

// Two pairs that differ in letter case are stored once; 60 pairs give 110 rows; Cancel changes
// nothing.
TEST_F(ThreadDialogsTest, ThreadTypesStoreEachPairOnceAndCancelKeepsTheRule) {
    CZEBAssemblyRecommThreadConnectionRule rule;
    Store(rule, 7072, {{L"Metric", L"Metric Fine"}, {L"METRIC", L"metric fine"}});
    {
        ThreadTypes dialog(&rule);
        ShowActive(&dialog);
        dialog.OnOK();
    }
    EXPECT_EQ(Stored(rule, 7072), (Rows{{L"METRIC", L"METRIC FINE"}}));

    Rows sixty;
    for (int i = 0; i < 60; ++i) sixty.push_back({L"T" + std::to_wstring(100 + i), L"S"});
    Store(rule, 7072, sixty);
    const std::string before = ExportedText(rule);
    ThreadTypes dialog(&rule);
    ShowActive(&dialog);
    EXPECT_EQ(dialog.GetGrid()->GetRowCount(), 110);
    dialog.GetGrid()->SetCellText(0, 1, L"CHANGED");
    dialog.ControlById<QCheckBox>(ThreadTypes::kThreadSizesSwitchId)->click();
    dialog.reject();
    EXPECT_EQ(ExportedText(rule), before);
}

// The editor opens from the thread types dialog over it and edits parameter 9148 in memory:
// pairs once and sorted, a one-text row left out, a half-filled row refused, empty rows dropped.
TEST_F(ThreadDialogsTest, ThreadSizeEditorEditsTheSecondTable) {
    CZEBAssemblyRecommThreadConnectionRule rule;
    Store(rule, 9148, {{L"m6", L"coarse"}, {L"M6", L"COARSE"}, {L"M5", L"FINE"}, {L"M4"}});
    FindTyped<ZebRow>(rule, 9148)->criteriaStatus = true;
    ThreadTypes dialog(&rule);
    ShowActive(&dialog);

    bool opened = false;
    QTimer::singleShot(0, [&] {
        auto* editor = qobject_cast<CZEBEditThreadSizeDlg*>(QApplication::activeModalWidget());
        ASSERT_NE(editor, nullptr);
        opened = true;
        EXPECT_EQ(editor->parentWidget(), &dialog);
        CZEBAsmRecommThreadConnListCtrl* table = editor->GetTable();
        EXPECT_EQ(table->GetRowCount(), 2 + 50);
        EXPECT_EQ(Pairs(*table), (Rows{{L"M5", L"FINE"}, {L"M6", L"COARSE"}}));
        table->SetCellText(3, 2, L"0.5");
        editor->OnOK();
        EXPECT_EQ(ui.messages.size(), 1u);
        EXPECT_TRUE(editor->isVisible());
        table->SetCellText(3, 1, L"M3");
        table->SetCellText(0, 1, L"");
        table->SetCellText(0, 2, L"");
        editor->OnOK();
    });
    qobject_cast<QPushButton*>(dialog.GetDlgItem(ThreadTypes::kThreadSizesId))->click();
    ASSERT_TRUE(opened);
    EXPECT_EQ(Stored(rule, 9148), (Rows{{L"M6", L"COARSE"}, {L"M3", L"0.5"}}));

    CZEBEditThreadSizeDlg empty(nullptr, &rule);
    ShowActive(&empty);
    for (int row = 0; row < 2; ++row) {
        empty.GetTable()->SetCellText(row, 1, L"");
        empty.GetTable()->SetCellText(row, 2, L"");
    }
    empty.OnOK();
    EXPECT_TRUE(Stored(rule, 9148).empty());
}

// The editor opens with the size it was closed with, its last column taking the room; Tab walks
// the table and then the buttons.
TEST_F(ThreadDialogsTest, ThreadSizeEditorKeepsItsSizeAndTabFollowsTheLayout) {
    CZEBAssemblyRecommThreadConnectionRule rule;
    QSize chosen;
    {
        CZEBEditThreadSizeDlg editor(nullptr, &rule);
        ShowActive(&editor);
        const int last = editor.GetTable()->columnWidth(2);
        chosen = editor.size() + QSize(240, 30);
        editor.resize(chosen);
        QApplication::processEvents();
        EXPECT_GT(editor.GetTable()->columnWidth(2), last + 200);
        editor.reject();
    }
    CZEBEditThreadSizeDlg again(nullptr, &rule);
    ShowActive(&again);
    EXPECT_EQ(again.size(), chosen);
    const std::vector<QWidget*> walked = WalkWithTab(again.GetTable());
    const std::vector<int> ids = ControlIdsOf(walked);
    ASSERT_EQ(ids.size(), 4u);
    EXPECT_EQ(ids[0], CZEBEditThreadSizeDlg::kTableId);
    EXPECT_EQ(std::set<int>(ids.begin() + 1, ids.end()),
              (std::set<int>{CZEBRuleDlgBase::kIdOk, CZEBRuleDlgBase::kIdCancel,
                             CZEBRuleDlgBase::kIdHelp}));
    ExpectReadingOrder(&again, walked);
}
