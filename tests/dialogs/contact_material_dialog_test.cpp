// The contact material dialog: its table of material pairs filled through the material pair
// editor, over a real database in a temporary folder.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTreeWidgetItem>

#include "app/assembly_rules_app.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/database/material_db_dlg.h"
#include "dialogs/database/material_pair_dlg.h"
#include "dialogs/parts/contact_material_dlg.h"
#include "dialogs/parts/zeb_asm_contact_material_list_ctrl.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/contact_material_rule.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/support/answer_dialog.h"
#include "tests/support/exported_rule.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Contact = CZEBAssemblyCheckContactMaterialDlg;
using Table = CZEBAsmContactMaterialListCtrl;

class ContactMaterialDialogTest : public ::testing::Test {
protected:
    void SetUp() override { EnsureQtTestApp(); }
    Table* PairTable(const Contact& d) { return d.ControlById<Table>(Contact::kTableId); }
    void DoubleClick(Table* table, int row, int column) {
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {},
                           table->GetCellRect(row, column).center());
    }

    ScopedDatabaseFolder folder;
    CZebResourceScope scope;
    CZebRecordingUiService ui;
};
}  // namespace

// A cell's names end with ";": text after the last one is no name. A choice writes a group's
// materials, or the group itself when none of them is named, groups in order.
TEST(ContactMaterialCells, NamesEndWithSemicolons) {
    EXPECT_EQ(Table::CellNames(L"A;B;C;"), (std::vector<std::wstring>{L"A", L"B", L"C"}));
    EXPECT_EQ(Table::CellNames(L"A;B"), (std::vector<std::wstring>{L"A"}));
    EXPECT_TRUE(Table::CellNames(L"").empty());
    EXPECT_EQ(Table::CellText({{L"Steels", {L"C45", L"S235JR"}}, {L"Brass", {}}}),
              L"Brass;C45;S235JR;");
    EXPECT_EQ(Table::CellText({}), L"");
}

// Stored pairs stand first above 260 spare rows, a half pair included; OK refuses it until it is
// completed; the distance switch unlocks its value; Cancel keeps the rule.
TEST_F(ContactMaterialDialogTest, PairsOpenFirstAndHalfPairsAreRefused) {
    CZEBAssemblyCheckContactMaterialRule rule;
    auto* pairs = FindTyped<ZebRow>(rule, 7065);
    pairs->values.Add({L"C45;", L"CuZn37;"});
    pairs->values.Add({L"Plastics;", L""});
    pairs->values.Add({L"EN AW-6061;", L"S235JR;S355J2;"});
    const std::string before = ExportedText(rule);
    {
        Contact d(&rule, L"mm");
        ShowActive(&d);
        PairTable(d)->SetCellText(0, 1, L"ABS;");
        d.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);

    Contact d(&rule, L"in");
    ShowActive(&d);
    Table* table = PairTable(d);
    ASSERT_EQ(table->GetRowCount(), 263);
    EXPECT_EQ(table->GetCellText(1, 1), L"Plastics;");
    EXPECT_EQ(table->GetCellText(2, 2), L"S235JR;S355J2;");
    auto* distance = d.ControlById<CDoubleEditEx>(Contact::kDistanceId);
    EXPECT_EQ(distance->text(), "0.1");
    EXPECT_TRUE(distance->isEnabled());
    EXPECT_EQ(d.ControlById<QLabel>(Contact::kUnitLabelId)->text(), "in");
    EXPECT_EQ(d.ControlById<CWrapperComboCtrl>(Contact::kSeverityId)->currentIndex(), 1);

    d.OnOK();
    EXPECT_TRUE(d.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              ZebFormatText(LoadLocalizedString(IDS_ROW_INCOMPLETE_AT), {L"2"}));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_EQ(ExportedText(rule), before);

    table->SetCellText(1, 2, L"PEEK;");
    distance->setText("0.25");
    d.ControlById<QAbstractButton>(Contact::kDistanceSwitchId)->click();
    EXPECT_FALSE(distance->isEnabled());
    // Delete empties the selected rows.
    table->selectRow(0);
    QTest::keyClick(table, Qt::Key_Delete);
    EXPECT_EQ(table->GetCellText(0, 1), L"");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    ASSERT_EQ(pairs->values.GetSize(), 2);
    EXPECT_EQ(pairs->values[0], (ZebRow{L"Plastics;", L"PEEK;"}));
    const auto* limit = FindTyped<double>(rule, 7051);
    EXPECT_FALSE(limit->status);
    EXPECT_DOUBLE_EQ(limit->values[0], 0.25);  // kept for when it is switched on again
}

// A double click opens the pair editor on the cell's names; its choice comes back as names ended
// by ";" (a whole group's materials, one by one); Cancel leaves the cell, an empty choice empties
// it, and the database is only read.
TEST_F(ContactMaterialDialogTest, CellsRoundTripThroughThePairEditor) {
    CZEBAssemblyCheckContactMaterialRule rule;
    ASSERT_NE(zeb_db::ZEBDataHelper::getInstance(), nullptr);  // the database as it starts
    const std::string stored = FileBytes(folder.File());
    Contact d(&rule, L"mm");
    ShowActive(&d);
    Table* table = PairTable(d);

    WhenModalOpen<CEditMaterialPairDlg>([](CEditMaterialPairDlg& editor) {
        CZebMaterialTree& tree = editor.GetTree();
        tree.Check(tree.FindMaterial(L"Steels", L"C45"), true);
        QTreeWidgetItem* brass = tree.FindMaterial(L"Brass", L"CuZn37")->parent();
        tree.Check(brass, true);
        editor.accept();
    });
    DoubleClick(table, 0, 1);
    EXPECT_EQ(table->GetCellText(0, 1), L"CuZn37;CuZn39Pb3;C45;");

    std::vector<bool> preChecked;
    WhenModalOpen<CEditMaterialPairDlg>([&preChecked](CEditMaterialPairDlg& editor) {
        CZebMaterialTree& tree = editor.GetTree();
        for (auto [group, material] :
             {std::pair{L"Steels", L"C45"}, {L"Brass", L"CuZn39Pb3"}, {L"Steels", L"S235JR"}})
            preChecked.push_back(CZebMaterialTree::IsChecked(tree.FindMaterial(group, material)));
        tree.Check(tree.FindMaterial(L"Steels", L"S235JR"), true);
        editor.reject();
    });
    DoubleClick(table, 0, 1);
    EXPECT_EQ(preChecked, (std::vector<bool>{true, true, false}));
    EXPECT_EQ(table->GetCellText(0, 1), L"CuZn37;CuZn39Pb3;C45;");

    WhenModalOpen<CEditMaterialPairDlg>([](CEditMaterialPairDlg& editor) {
        CZebMaterialTree& tree = editor.GetTree();
        tree.Check(tree.FindMaterial(L"Steels", L"C45"), false);
        tree.Check(tree.FindMaterial(L"Brass", L"CuZn37")->parent(), false);
        editor.accept();
    });
    DoubleClick(table, 0, 1);
    EXPECT_EQ(table->GetCellText(0, 1), L"");
    EXPECT_TRUE(FileBytes(folder.File()) == stored);

    // Column 0 opens nothing.
    DoubleClick(table, 3, 0);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// "Material Database..." opens the material database editor over the rule; what it keeps on OK
// is the rule's material selection.
TEST_F(ContactMaterialDialogTest, MaterialDatabaseButtonEditsTheRulesSelection) {
    CZEBAssemblyCheckContactMaterialRule rule;
    Contact d(&rule, L"mm");
    ShowActive(&d);
    WhenModalOpen<CEditMaterialDBDlg>([](CEditMaterialDBDlg& editor) {
        editor.GetTree().Check(editor.GetTree().FindMaterial(L"Plastics", L"PEEK"), true);
        editor.OnOK();
    });
    d.ControlById<QAbstractButton>(Contact::kMaterialDatabaseId)->click();
    ASSERT_EQ(rule.MaterialSelection.size(), 1u);
    EXPECT_EQ(rule.MaterialSelection[0].first, L"Plastics");
    EXPECT_EQ(rule.MaterialSelection[0].second, (std::vector<std::wstring>{L"PEEK"}));
}
