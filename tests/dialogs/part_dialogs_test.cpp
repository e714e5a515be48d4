// The interference detection and minimum clearance dialogs driven as a user drives them: controls
// found by their ids, message boxes and file choosers answered by the recording UI service, the
// ignore list in a real database in a temporary folder.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <filesystem>

#include "app/assembly_rules_app.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/parts/component_table_import.h"
#include "dialogs/parts/interf_det_check_comp_dlg.h"
#include "dialogs/parts/interf_det_ignore_comp_dlg.h"
#include "dialogs/parts/interf_det_main_dlg.h"
#include "dialogs/parts/interf_main_tab_ctrl.h"
#include "dialogs/parts/min_clearance_dlg.h"
#include "dialogs/parts/pref_comp_dlg.h"
#include "dialogs/parts/zeb_asm_interf_ignore_comp_list_ctrl.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/interference_detection_rule.h"
#include "rules/min_clearance_rule.h"
#include "rules/pref_comp_rule.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/support/exported_rule.h"
#include "tests/support/scoped_env.h"
#include "tests/support/scoped_temp_dir.h"
#include "tests/support/sheet_writer.h"
#include "tests/ui/qt_test_app.h"
#include "util/string_table.h"

namespace fs = std::filesystem;

namespace {
using Interference = ZEBASMInterfDetMainDlg;
using CheckPage = ZEBASMInterfDetCheckCompDlg;
using IgnorePage = ZEBASMInterfDetIgnoreCompDlg;
using MinClearance = CZEBAssemblyMinClearanceBetPartsDlg;
using Preferred = CZEBAssemblyCheckPrefCompDlg;
using Names = std::list<std::wstring>;
using Rows = std::vector<CZebGridModel::Row>;

std::wstring Text(ZebStringId id) { return LoadLocalizedString(id); }

void AddPairs(CZebRule& rule, long id, const std::vector<ZebRow>& rows) {
    for (const ZebRow& row : rows) FindTyped<ZebRow>(rule, id)->values.Add(row);
}

std::vector<ZebRow> StoredRows(CZebRule& rule, long id) {
    std::vector<ZebRow> rows;
    const auto* param = FindTyped<ZebRow>(rule, id);
    for (int i = 0; i < param->values.GetSize(); ++i) rows.push_back(param->values[i]);
    return rows;
}

Names IgnoreList() {
    Names names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    EXPECT_NE(db, nullptr);
    if (db) {
        EXPECT_EQ(db->GetInterferenceIgnoreList(names), ZebDbOk);
    }
    return names;
}

class PartDialogsTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        tmp.Set(temp.Path().c_str());
    }

    CZEBAsmRuleListCtrl* CheckTable(const Interference& d) {
        return d.ControlById<CZEBAsmRuleListCtrl>(CheckPage::kTableId);
    }
    ZEBASMInterfIgnoreCompListCtrl* IgnoreTable(const Interference& d) {
        return d.ControlById<ZEBASMInterfIgnoreCompListCtrl>(IgnorePage::kTableId);
    }
    QAbstractButton* Button(const QWidget& d, int id) {
        return FindZebControlAs<QAbstractButton>(&d, id);
    }
    // Ctrl+I on the open dialog with `sheet` chosen.
    void Import(QWidget* dialog, const fs::path& sheet) {
        ui.ChooseFiles({sheet.wstring()});
        ShowActive(dialog);
        QTest::keyClick(dialog, Qt::Key_I, Qt::ControlModifier);
    }
    std::wstring ImportedMessage(int count) {
        return ZebFormatText(Text(IDS_ROWS_IMPORTED), {std::to_wstring(count)});
    }

    ScopedDatabaseFolder folder;
    ScopedTempDir temp{"vantor-parts-"};
    ScopedEnv tmp{"TMPDIR", nullptr};
    CZebResourceScope scope;
    CZebRecordingUiService ui;
};
}  // namespace

// Each table's row arithmetic: the check page empties one row more than it reads (at least 120)
// and keeps what lies below; the ignore list keeps 120 spare rows and also empties the list it
// replaces; the pair table empties every row. An empty name ends an interference import at once.
TEST(ComponentImport, EachTableEmptiesAndGrowsAsItsLayoutSays) {
    const ComponentImportLayout check{
        .columns = {{L"A"}, {L"B"}}, .leastRows = 120, .rowsBelow = 1, .stopAtEmptyName = true};
    Rows old(131, CZebGridModel::Row{L"", L"old 1", L"old 2"});
    int count = -1;
    Rows rows = PlaceImportedColumns(old, {{L"a1", L"a2"}, {L"b1", L"b2"}}, check, 0, count);
    EXPECT_EQ(count, 2);
    ASSERT_EQ(rows.size(), 131u);
    EXPECT_EQ(rows[0], (CZebGridModel::Row{L"", L"a1", L"b1"}));
    EXPECT_EQ(rows[1], (CZebGridModel::Row{L"", L"a2", L"b2"}));
    EXPECT_TRUE(rows[120].empty());
    EXPECT_EQ(rows[121][1], L"old 1");  // below the emptied span

    rows = PlaceImportedColumns(old, {{L"a1", L"a2", L"a3"}, {L"b1", L"", L"b3"}}, check, 0, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(CZebGridModel::CellOf(rows[0], 2), L"b1");
    EXPECT_EQ(CZebGridModel::CellOf(rows[2], 1), L"a3");
    EXPECT_EQ(CZebGridModel::CellOf(rows[2], 2), L"");  // not read past the empty name

    const ComponentImportLayout ignore{
        .columns = {{L"A"}}, .leastRows = 120, .rowsBelow = 120, .stopAtEmptyName = true};
    rows = PlaceImportedColumns(Rows(400, CZebGridModel::Row{L"", L"kept"}), {{L"n1"}}, ignore, 301,
                                count);
    EXPECT_EQ(count, 1);
    ASSERT_EQ(rows.size(), 400u);
    EXPECT_EQ(rows[0][1], L"n1");
    EXPECT_TRUE(rows[300].empty());  // the replaced list's 300 names and its spare row
    EXPECT_EQ(rows[301][1], L"kept");
    rows = PlaceImportedColumns(Rows(120), {std::list<std::wstring>(200, L"n")}, ignore, 1, count);
    EXPECT_EQ(rows.size(), 320u);

    const ComponentImportLayout pairs{
        .columns = {{L"A"}, {L"B"}, {L"C", 4}}, .rowsBelow = 120, .emptyEveryRow = true};
    rows = PlaceImportedColumns(Rows(300, CZebGridModel::Row{L"", L"x", L"y", L"1"}),
                                {{L"p", L"q"}, {L"r", L""}, {L"1.0", L"2.0"}}, pairs, 0, count);
    EXPECT_EQ(count, 2);
    ASSERT_EQ(rows.size(), 300u);
    EXPECT_EQ(rows[1], (CZebGridModel::Row{L"", L"q", L"", L"2.0"}));  // empty cells are placed too
    EXPECT_TRUE(rows[299].empty());

    // A table's cells are the columns read from "A" on; a length is read as a number.
    const std::vector<SpreadsheetColumn> read =
        SheetColumnsOf({ParamCell::Text, ParamCell::Text, ParamCell::Length});
    ASSERT_EQ(read.size(), 3u);
    EXPECT_EQ(read[0].letter + read[1].letter + read[2].letter, L"ABC");
    EXPECT_EQ(read[1].kind, 0);
    EXPECT_EQ(read[2].kind, kSpreadsheetDecimalColumn);
}

// Checking all components locks the list; a rule that lists nobody opens on all components with
// the list open for typing; pair mode hides half rows; 130 rows give 131; the rule's options,
// volume limit and severity are shown.
TEST_F(PartDialogsTest, InterferenceOpensAsItsRuleSays) {
    {
        CZEBAssemblyInterferenceDetectionRule rule;
        Interference d(&rule, L"mm");
        ShowActive(&d);
        EXPECT_TRUE(Button(d, CheckPage::kAllComponentsId)->isChecked());
        EXPECT_FALSE(CheckTable(d)->isEnabled());
        EXPECT_FALSE(Button(d, CheckPage::kGroupsId)->isEnabled());
        EXPECT_EQ(CheckTable(d)->GetRowCount(), CheckPage::kSpareRows);
        EXPECT_TRUE(Button(d, Interference::kFirstOptionId)->isChecked());
        EXPECT_FALSE(Button(d, Interference::kSecondOptionId)->isChecked());
        EXPECT_FALSE(Button(d, Interference::kVolumeSwitchId)->isChecked());
        auto* op = d.ControlById<CWrapperComboCtrl>(Interference::kVolumeOperatorId);
        ASSERT_EQ(op->count(), 2);
        EXPECT_EQ(op->itemText(0), "<");
        EXPECT_EQ(op->currentText(), "<=");
        EXPECT_FALSE(op->isEnabled());
        EXPECT_FALSE(d.ControlById<CDoubleEditEx>(Interference::kVolumeValueId)->isEnabled());
        EXPECT_EQ(d.ControlById<QLabel>(Interference::kVolumeUnitId)->text(),
                  QString::fromUtf8("mm\u00b3"));
        EXPECT_EQ(d.ControlById<CWrapperComboCtrl>(Interference::kSeverityId)->currentIndex(), 0);
        EXPECT_EQ(d.GetTabs()->count(), 2);
        EXPECT_EQ(d.GetTabs()->tabText(1).toStdWString(), Text(IDS_TAB_COMPONENTS_TO_IGNORE));
        EXPECT_EQ(d.GetTabs()->GetCurrentPage(), Interference::kCheckPage);

        // Clicking the list radio opens the list; back to all components commits and locks it.
        Button(d, CheckPage::kListedComponentsId)->click();
        EXPECT_TRUE(CheckTable(d)->isEnabled());
        EXPECT_TRUE(Button(d, CheckPage::kGroupsId)->isEnabled());
        Button(d, CheckPage::kAllComponentsId)->click();
        EXPECT_FALSE(CheckTable(d)->isEnabled());
    }
    {
        CZEBAssemblyInterferenceDetectionRule rule;
        FindTyped<bool>(rule, 6067)->values[0] = false;
        Interference d(&rule, L"mm");
        ShowActive(&d);
        EXPECT_TRUE(Button(d, CheckPage::kAllComponentsId)->isChecked());
        EXPECT_TRUE(CheckTable(d)->isEnabled());
        EXPECT_TRUE(Button(d, CheckPage::kGroupsId)->isEnabled());
    }
    CZEBAssemblyInterferenceDetectionRule rule;
    FindTyped<bool>(rule, 6067)->values[0] = false;
    std::vector<ZebRow> stored;
    for (int i = 0; i < 130; ++i)
        stored.push_back({L"a" + std::to_wstring(i), i == 5 ? L"" : L"b" + std::to_wstring(i)});
    AddPairs(rule, 6068, stored);
    auto* volume = FindTyped<double>(rule, 8978);
    volume->status = true;
    volume->op = ZebOp_Less;
    volume->values.Add(0.25);
    Interference d(&rule, L"in");
    ShowActive(&d);
    EXPECT_TRUE(Button(d, CheckPage::kListedComponentsId)->isChecked());
    CZEBAsmRuleListCtrl* table = CheckTable(d);
    ASSERT_EQ(table->GetRowCount(), 131);
    EXPECT_EQ(table->GetCellText(4, 1), L"a4");
    EXPECT_EQ(table->GetCellText(5, 1), L"");  // half a pair is not shown
    EXPECT_EQ(table->GetCellText(129, 2), L"b129");
    EXPECT_EQ(d.ControlById<CDoubleEditEx>(Interference::kVolumeValueId)->text(), "0.25");
    EXPECT_EQ(d.ControlById<CWrapperComboCtrl>(Interference::kVolumeOperatorId)->currentText(),
              "<");
    EXPECT_TRUE(d.ControlById<CDoubleEditEx>(Interference::kVolumeValueId)->isEnabled());
    EXPECT_EQ(d.ControlById<QLabel>(Interference::kVolumeUnitId)->text(),
              QString::fromUtf8("in\u00b3"));
}

// OK refuses, in this order and without storing anything: a volume limit of 0 while switched on,
// a group list without a second component, a pair list with half a pair, an empty pair list. Then
// everything is stored: the list in its order, the options, the limit and the severity.
TEST_F(PartDialogsTest, InterferenceOkRefusesIncompleteListsAndThenStoresEverything) {
    CZEBAssemblyInterferenceDetectionRule rule;
    const std::string before = ExportedText(rule);
    Interference d(&rule, L"mm");
    ShowActive(&d);
    auto* volumeValue = d.ControlById<CDoubleEditEx>(Interference::kVolumeValueId);
    Button(d, Interference::kVolumeSwitchId)->click();
    EXPECT_TRUE(volumeValue->isEnabled());
    Type(volumeValue, "0.0000005");
    Button(d, CheckPage::kListedComponentsId)->click();
    Button(d, CheckPage::kGroupsId)->click();
    CZEBAsmRuleListCtrl* table = CheckTable(d);
    table->SetCellText(3, 1, L"housing.prt");

    const auto refusals = [&] {
        d.OnOK();
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(ExportedText(rule), before);
        return ui.messages.back();
    };
    EXPECT_EQ(refusals().text, Text(IDS_VOLUME_LIMIT_REQUIRED));
    Type(volumeValue, "2.5");
    const auto empty = refusals();
    EXPECT_EQ(empty.text, Text(IDS_COMPONENT_LIST_EMPTY));
    EXPECT_EQ(empty.caption, L"Vantor");
    EXPECT_EQ(empty.icon, ZebMsgIcon::Information);
    Button(d, CheckPage::kGroupsId)->click();  // pairs
    EXPECT_EQ(refusals().text, Text(IDS_COMPONENT_PAIR_INCOMPLETE));
    table->SetCellText(3, 1, L"");
    EXPECT_EQ(refusals().text, Text(IDS_COMPONENT_LIST_EMPTY));
    EXPECT_EQ(ui.messages.size(), 4u);

    table->SetCellText(3, 1, L"housing.prt");
    table->SetCellText(3, 2, L"cover.prt");
    table->SetCellText(0, 1, L"shaft.prt");
    table->SetCellText(0, 2, L"bearing.prt");
    d.ControlById<CWrapperComboCtrl>(Interference::kVolumeOperatorId)->setCurrentIndex(0);
    d.ControlById<CWrapperComboCtrl>(Interference::kSeverityId)->setCurrentIndex(2);
    Button(d, Interference::kSecondOptionId)->click();
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(ui.messages.size(), 4u);
    EXPECT_FALSE(FindTyped<bool>(rule, 6067)->values[0]);
    EXPECT_FALSE(FindTyped<bool>(rule, 8073)->values[0]);
    EXPECT_EQ(StoredRows(rule, 6068), (std::vector<ZebRow>{{L"shaft.prt", L"bearing.prt"},
                                                           {L"housing.prt", L"cover.prt"}}));
    EXPECT_TRUE(FindTyped<bool>(rule, 6070)->values[0]);
    const auto* volume = FindTyped<double>(rule, 8978);
    EXPECT_TRUE(volume->status);
    EXPECT_EQ(volume->op, ZebOp_Less);
    ASSERT_EQ(volume->values.GetSize(), 1);
    EXPECT_DOUBLE_EQ(volume->values[0], 2.5);
    EXPECT_EQ(rule.Severity, 3);

    // Groups keep a row with one side empty; all components leave the list as it was.
    Interference groups(&rule, L"mm");
    ShowActive(&groups);
    Button(groups, CheckPage::kGroupsId)->click();
    CheckTable(groups)->SetCellText(5, 1, L"frame.prt");
    groups.OnOK();
    EXPECT_FALSE(groups.isVisible());
    EXPECT_TRUE(FindTyped<bool>(rule, 8073)->values[0]);
    EXPECT_EQ(StoredRows(rule, 6068).back(), (ZebRow{L"frame.prt", L""}));
    Interference all(&rule, L"mm");
    ShowActive(&all);
    Button(all, CheckPage::kAllComponentsId)->click();
    all.OnOK();
    EXPECT_TRUE(FindTyped<bool>(rule, 6067)->values[0]);
    EXPECT_EQ(StoredRows(rule, 6068).size(), 3u);
}

// The ignore list shows in lower case and is written back only when it changed other than in
// letter case; Cancel writes nothing.
TEST_F(PartDialogsTest, IgnoreListIsWrittenOnlyWhenItChanged) {
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->SaveInterferenceIgnoreList({L"Housing.PRT", L"Cover.prt"}), ZebDbOk);
    const std::string stored = FileBytes(folder.File());
    CZEBAssemblyInterferenceDetectionRule rule;
    {
        Interference d(&rule, L"mm");
        ShowActive(&d);
        ZEBASMInterfIgnoreCompListCtrl* table = IgnoreTable(d);
        EXPECT_TRUE(table->isEnabled());
        ASSERT_EQ(table->GetRowCount(), 2 + 1 + IgnorePage::kSpareRows);
        EXPECT_EQ(table->GetCellText(0, 1), L"housing.prt");
        EXPECT_EQ(table->GetCellText(1, 1), L"cover.prt");
        d.OnOK();
        EXPECT_FALSE(d.isVisible());
    }
    EXPECT_EQ(IgnoreList(), (Names{L"Housing.PRT", L"Cover.prt"}));
    EXPECT_TRUE(FileBytes(folder.File()) == stored);
    {
        Interference d(&rule, L"mm");
        ShowActive(&d);
        IgnoreTable(d)->SetCellText(2, 1, L"  Bolt M8.prt ");
        d.reject();
    }
    EXPECT_TRUE(FileBytes(folder.File()) == stored);
    Interference d(&rule, L"mm");
    ShowActive(&d);
    IgnoreTable(d)->SetCellText(1, 1, L"");
    IgnoreTable(d)->SetCellText(2, 1, L"  Bolt M8.prt ");
    d.OnOK();
    EXPECT_EQ(IgnoreList(), (Names{L"housing.prt", L"bolt m8.prt"}));
    EXPECT_TRUE(ui.messages.empty());
}

// Tab past the name column goes on to the next row; Return commits without any number check and
// goes on down.
TEST_F(PartDialogsTest, IgnoreTableTabsOnToTheNextRow) {
    CZEBAssemblyInterferenceDetectionRule rule;
    Interference d(&rule, L"mm");
    d.GetTabs()->setCurrentIndex(Interference::kIgnorePage);
    ShowActive(&d);
    ZEBASMInterfIgnoreCompListCtrl* table = IgnoreTable(d);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->GetCellRect(0, 1).center());
    auto* editor = FindZebControlAs<QLineEdit>(table, CZEBListCtrl::kTextEditorId);
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "guard.prt");
    QTest::keyClick(editor, Qt::Key_Tab);
    EXPECT_EQ(table->GetCellText(0, 1), L"guard.prt");
    EXPECT_TRUE(table->IsCellEditOpen());
    EXPECT_EQ(table->GetEditRow(), 1);
    EXPECT_EQ(table->GetEditColumn(), 1);
    QTest::keyClicks(editor, "2");
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(table->GetCellText(1, 1), L"2");
    EXPECT_EQ(table->GetEditRow(), 2);  // Enter goes on down
}

// A database that refuses the list is reported (warning), and the rule's settings still count.
TEST_F(PartDialogsTest, RefusedIgnoreListIsReportedAndTheDialogStillCloses) {
    CZEBAssemblyInterferenceDetectionRule rule;
    Interference d(&rule, L"mm");
    ShowActive(&d);
    IgnoreTable(d)->SetCellText(0, 1, L"guard.prt");
    // A journal that is not a plain file makes the database refuse every change.
    fs::create_symlink(folder.Folder() / "elsewhere",
                       fs::path(folder.File().string() + "-journal"));
    d.ControlById<CWrapperComboCtrl>(Interference::kSeverityId)->setCurrentIndex(4);
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_IGNORE_LIST_NOT_SAVED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(rule.Severity, 5);
    fs::remove(fs::path(folder.File().string() + "-journal"));
    EXPECT_TRUE(IgnoreList().empty());
}

// Without a database the ignore page says so, its list is locked, Ctrl+I there does nothing and
// OK writes nothing; the check page still imports.
TEST_F(PartDialogsTest, WithoutDatabaseTheIgnorePageSaysSoAndImportsNothing) {
    CZEBAssemblyInterferenceDetectionRule rule;
    ScopedEnv unusable("VANTOR_DATABASE_DIR", (folder.Folder() / "missing" / "db").c_str());
    Interference d(&rule, L"mm");
    ShowActive(&d);
    EXPECT_FALSE(IgnoreTable(d)->isEnabled());
    EXPECT_FALSE(d.GetIgnorePage()->IsDatabaseAvailable());
    auto* unavailable = FindZebControlAs<QLabel>(d.GetIgnorePage(), IgnorePage::kUnavailableId);
    ASSERT_NE(unavailable, nullptr);
    EXPECT_EQ(unavailable->text().toStdWString(), Text(IDS_IGNORE_LIST_UNAVAILABLE));
    d.GetTabs()->SelectPage(Interference::kIgnorePage);
    ShowActive(&d);
    QTest::keyClick(&d, Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(ui.choosers.empty());
    EXPECT_TRUE(ui.messages.empty());
    d.GetTabs()->setCurrentIndex(Interference::kCheckPage);  // as a click on the tab
    ui.CancelChooser();
    QTest::keyClick(&d, Qt::Key_I, Qt::ControlModifier);
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_EQ(ui.choosers[0].filter, L"XLS Files (*.xls;*.xlsx)|*.xls; *.xlsx|");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    EXPECT_FALSE(fs::exists(folder.Folder() / "missing"));
}

// Ctrl+I goes to the page shown: 200 pairs into the check page, 200 names into the ignore page,
// each with its count; an empty second component ends the import with a count of 0, and rows
// below those a smaller sheet empties stay as they were.
TEST_F(PartDialogsTest, ImportFillsThePageShown) {
    std::vector<std::vector<SheetCell>> pairs, names;
    for (int i = 0; i < 200; ++i) {
        pairs.push_back(
            {"part" + std::to_string(i) + ".prt", "other" + std::to_string(i) + ".prt"});
        names.push_back({"Ignored " + std::to_string(i) + ".prt"});
    }
    const fs::path pairSheet = temp.Path() / "pairs.xlsx", nameSheet = temp.Path() / "names.xlsx",
                   gapSheet = temp.Path() / "gap.xlsx";
    WriteSheet(pairSheet, pairs);
    WriteSheet(nameSheet, names);
    WriteSheet(gapSheet, {{"a.prt", "b.prt"}, {"c.prt"}, {"e.prt", "f.prt"}});

    CZEBAssemblyInterferenceDetectionRule rule;
    FindTyped<bool>(rule, 6067)->values[0] = false;
    Interference d(&rule, L"mm");
    Import(&d, pairSheet);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, ImportedMessage(200));
    CZEBAsmRuleListCtrl* check = CheckTable(d);
    EXPECT_EQ(check->GetRowCount(), 201);
    EXPECT_EQ(check->GetCellText(199, 1), L"part199.prt");
    EXPECT_EQ(check->GetCellText(199, 2), L"other199.prt");

    d.GetTabs()->setCurrentIndex(Interference::kIgnorePage);
    Import(&d, nameSheet);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, ImportedMessage(200));
    EXPECT_EQ(IgnoreTable(d)->GetRowCount(), 200 + IgnorePage::kSpareRows);
    EXPECT_EQ(IgnoreTable(d)->GetCellText(0, 1), L"Ignored 0.prt");
    EXPECT_EQ(check->GetCellText(0, 1), L"part0.prt");  // the other page is left alone

    d.GetTabs()->setCurrentIndex(Interference::kCheckPage);
    Import(&d, gapSheet);
    EXPECT_EQ(ui.messages.back().text, ImportedMessage(0));
    EXPECT_EQ(check->GetCellText(1, 1), L"c.prt");
    EXPECT_EQ(check->GetCellText(2, 2), L"");
    EXPECT_EQ(check->GetCellText(120, 1), L"");
    EXPECT_EQ(check->GetCellText(150, 1), L"part150.prt");  // below the emptied rows

    Button(d, CheckPage::kListedComponentsId)->click();
    check->SetCellText(1, 1, L"");
    check->SetCellText(2, 1, L"");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    const Names stored = IgnoreList();
    ASSERT_EQ(stored.size(), 200u);
    EXPECT_EQ(stored.front(), L"ignored 0.prt");
}

// The pair table opens with 120 spare rows below the stored pairs and without those that lack a
// part; a general clearance above one million is taken back at once, one million stays; a row
// holding only a clearance is left out on OK and so is the half pair.
TEST_F(PartDialogsTest, MinClearanceOpensStoresAndTakesBackHugeValues) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    AddPairs(rule, 2048,
             {{L"housing", L"rotor", L"2.5"},
              {L"duct", L"", L"1"},
              {L"a", L"b", L"1"},
              {L"c", L"d", L"2"},
              {L"e", L"f", L"3"}});
    MinClearance d(&rule, L"mm");
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(MinClearance::kTableId);
    ASSERT_EQ(table->GetRowCount(), 125);
    EXPECT_EQ(table->GetCellText(0, 3), L"2.5");
    EXPECT_EQ(table->GetCellText(1, 1), L"");
    EXPECT_EQ(table->GetCellText(4, 2), L"f");
    auto* clearance = d.ControlById<CDoubleEditEx>(MinClearance::kClearanceId);
    EXPECT_EQ(clearance->text(), "0.1");
    EXPECT_TRUE(Button(d, MinClearance::kClearanceSwitchId)->isChecked());
    EXPECT_FALSE(Button(d, MinClearance::kPairsSwitchId)->isChecked());
    EXPECT_TRUE(Button(d, MinClearance::kSameSubassemblyId)->isChecked());
    EXPECT_FALSE(Button(d, MinClearance::kOtherSubassembliesId)->isChecked());
    EXPECT_EQ(d.ControlById<QLabel>(MinClearance::kUnitLabelId)->text(), "mm");
    EXPECT_EQ(d.ControlById<QLabel>(MinClearance::kHintId)->text().toStdWString(),
              Text(IDS_PART_TABLE_HINT));

    Type(clearance, "1000001");
    EXPECT_EQ(clearance->text(), "0.1");
    Type(clearance, "1000000");
    EXPECT_EQ(clearance->text(), "1000000");
    table->SetCellText(7, 3, L"4");
    Button(d, MinClearance::kPairsSwitchId)->click();
    Button(d, MinClearance::kOtherSubassembliesId)->click();
    Button(d, MinClearance::kTouchingId)->click();
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_EQ(StoredRows(rule, 2048), (std::vector<ZebRow>{{L"housing", L"rotor", L"2.5"},
                                                           {L"a", L"b", L"1"},
                                                           {L"c", L"d", L"2"},
                                                           {L"e", L"f", L"3"}}));
    const auto* general = FindTyped<double>(rule, 2062);
    ASSERT_EQ(general->values.GetSize(), 2);
    EXPECT_DOUBLE_EQ(general->values[0], 1.0);
    EXPECT_DOUBLE_EQ(general->values[1], 1000000.0);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 2049)->values[0], 1.0);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 2063)->values[0], 0.0);
    EXPECT_TRUE(FindTyped<bool>(rule, 6072)->values[0]);
}

// A clearance typed as text is emptied when the cell is committed, and the row then lacks its
// clearance; a row with one part is refused too. Nothing is stored; Cancel keeps the rule.
TEST_F(PartDialogsTest, MinClearanceRefusesIncompletePairs) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    const std::string before = ExportedText(rule);
    MinClearance d(&rule, L"mm");
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(MinClearance::kTableId);
    table->SetCellText(0, 1, L"housing");
    table->SetCellText(0, 2, L"rotor");
    table->BeginCellEdit(0, 3, CZEBListCtrl::kEditLimit);
    auto* editor = FindZebControlAs<QLineEdit>(table, CZEBListCtrl::kTextEditorId);
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "abc");
    // A clearance that cannot be read is refused in its cell, which keeps the editor.
    d.OnOK();
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(table->GetCellText(0, 3), L"");
    EXPECT_TRUE(table->HoldsRefusedText());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    table->CancelCellEdit();
    d.OnOK();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, ZebFormatText(Text(IDS_ROW_INCOMPLETE_AT), {L"1"}));
    EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Information);
    ui.messages.erase(ui.messages.begin());
    table->SetCellText(0, 3, L"2.5");
    table->SetCellText(3, 2, L"cover");
    d.OnOK();
    EXPECT_EQ(ui.messages.size(), 2u);
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(ExportedText(rule), before);
    d.reject();
    EXPECT_EQ(ExportedText(rule), before);
}

// Ctrl+I fills parts and clearances from columns "A" to "C" over whatever the table held; a sheet
// whose columns come back empty is refused with the reader's message and leaves the table alone.
TEST_F(PartDialogsTest, MinClearanceImportsPartsAndClearances) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    AddPairs(rule, 2048, {{L"old 1", L"old 2", L"9"}});
    MinClearance d(&rule, L"mm");
    const fs::path sheet = temp.Path() / "pairs.xlsx", partsOnly = temp.Path() / "parts-only.xlsx";
    WriteSheet(sheet, {{"Gehäuse", "Läufer", 2.5}, {"duct", "guard", 3.0}});
    WriteSheet(partsOnly, {{SheetCell(), "b", 1.0}});
    Import(&d, sheet);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, ImportedMessage(2));
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(MinClearance::kTableId);
    EXPECT_EQ(table->GetRowCount(), 122);
    EXPECT_EQ(table->GetRows()[0], (CZebGridModel::Row{L"", L"Gehäuse", L"Läufer", L"2.5"}));
    EXPECT_EQ(table->GetCellText(1, 3), L"3.0");

    Import(&d, partsOnly);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(table->GetCellText(0, 1), L"Gehäuse");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(StoredRows(rule, 2048),
              (std::vector<ZebRow>{{L"Gehäuse", L"Läufer", L"2.5"}, {L"duct", L"guard", L"3.0"}}));
}

// An import over more, as many or fewer stored pairs stores the sheet's pairs alone: no row the
// import emptied, and no clearance that was not given, also through a unit conversion afterwards.
TEST_F(PartDialogsTest, MinClearanceImportOverStoredPairsStoresNoEmptyRow) {
    const std::vector<ZebRow> old{{L"a", L"b", L"1"}, {L"c", L"d", L"2"}, {L"e", L"f", L"3"}};
    const UnitSetting mm{}, inch{.LengthUnit = 3};
    for (const size_t sheetRows : {1u, 3u, 4u}) {
        SCOPED_TRACE(sheetRows);
        CZEBAssemblyMinClearanceBetPartsRule rule;
        AddPairs(rule, 2048, old);
        std::vector<std::vector<SheetCell>> cells;
        std::vector<ZebRow> expected;
        for (size_t i = 0; i < sheetRows; ++i) {
            const std::string n = std::to_string(i);
            cells.push_back({"p" + n, "q" + n, 25.4 * static_cast<double>(i + 1)});
            expected.push_back(
                ZebRow{FromUtf8("p" + n), FromUtf8("q" + n), std::to_wstring(i + 1) + L".0"});
        }
        const fs::path sheet = temp.Path() / ("over" + std::to_string(sheetRows) + ".xlsx");
        WriteSheet(sheet, cells);
        {
            MinClearance d(&rule, L"mm");
            Import(&d, sheet);
            d.OnOK();
            ASSERT_FALSE(d.isVisible());
        }
        rule.ConvertUnits(&mm, &inch);
        EXPECT_EQ(StoredRows(rule, 2048), expected);
    }
}

// The table opens with one row per record above the spare rows, names kept exactly (separators
// the codec does not use included); rows emptied between records are dropped on OK, and the text
// reads back to the same table. Cancel writes nothing.
TEST_F(PartDialogsTest, PreferredComponentsRoundTripThroughTheRuleText) {
    CZEBAssemblyCheckPrefCompRule rule;
    const std::vector<StringTableRow> records{
        {L"Bracket; steel", L"bracket|v2.prt", L"", L"bracket_old.prt"},
        {L"to clear", L"x.prt", L"", L""},
        {L"Tab\there <CZEB", L"nut_din934.prt", L"nut\u00e4.asm", L"nut_old.prt"}};
    FindTyped<std::wstring>(rule, 7002)->values[0] = CZEBStringTableParser::Compose(records);
    const std::string before = ExportedText(rule);
    {
        Preferred d(&rule);
        ShowActive(&d);
        d.ControlById<CZEBAsmRuleListCtrl>(Preferred::kTableId)->SetCellText(0, 1, L"changed");
        d.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);

    Preferred d(&rule);
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(Preferred::kTableId);
    ASSERT_EQ(table->GetRowCount(), 124);
    EXPECT_EQ(table->GetRows()[2], (CZebGridModel::Row{L"", records[2].Col1, records[2].Col2,
                                                       records[2].Col3, records[2].Col4}));
    EXPECT_EQ(table->GetColumnCount(), 5);
    EXPECT_TRUE(table->IsPreferredComponentsMode());
    for (int column = 1; column <= 4; ++column) table->SetCellText(1, column, L"");
    table->SetCellText(10, 1, L"Washer");
    table->SetCellText(10, 2, L"washer.prt");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    std::vector<StringTableRow> stored;
    CZEBStringTableParser::Parse(FindTyped<std::wstring>(rule, 7002)->values[0], stored);
    EXPECT_EQ(stored, (std::vector<StringTableRow>{
                          records[0], records[2], {L"Washer", L"washer.prt", L"", L""}}));
}

// A component to replace that is also preferred or alternative somewhere (names equal up to
// ".prt") is refused with the editor opened on the first such cell; nothing is stored.
TEST_F(PartDialogsTest, PreferredComponentsRefuseAReplacedComponentListedAsPreferred) {
    CZEBAssemblyCheckPrefCompRule rule;
    const std::string before = ExportedText(rule);
    Preferred d(&rule);
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(Preferred::kTableId);
    table->SetCellText(0, 2, L"bracket.prt");
    table->SetCellText(0, 4, L"angle.prt");
    table->SetCellText(1, 3, L"angle.prt.7");
    table->SetCellText(1, 4, L"bracket.prt.3");
    d.OnOK();
    EXPECT_TRUE(d.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, Text(IDS_REPLACED_COMPONENT_ALSO_PREFERRED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_TRUE(table->IsCellEditOpen());
    EXPECT_EQ(table->GetEditRow(), 0);
    EXPECT_EQ(table->GetEditColumn(), 2);
    EXPECT_EQ(ExportedText(rule), before);
}

// Ctrl+I reads columns "A" to "D" over the whole table; OK stores the imported rows.
TEST_F(PartDialogsTest, PreferredComponentsImportFourColumns) {
    CZEBAssemblyCheckPrefCompRule rule;
    Preferred d(&rule);
    const fs::path sheet = temp.Path() / "preferred.xlsx";
    WriteSheet(sheet, {{"Hex bolt M8", "iso4017_m8.prt", "din933_m8.prt", "acme_bolt_8.prt"},
                       {"Grommet", "grommet_20.prt", SheetCell(), "rubber_ring.prt"}});
    Import(&d, sheet);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, ImportedMessage(2));
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(Preferred::kTableId);
    EXPECT_EQ(table->GetRowCount(), 122);
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    std::vector<StringTableRow> stored;
    CZEBStringTableParser::Parse(FindTyped<std::wstring>(rule, 7002)->values[0], stored);
    EXPECT_EQ(stored, (std::vector<StringTableRow>{
                          {L"Hex bolt M8", L"iso4017_m8.prt", L"din933_m8.prt", L"acme_bolt_8.prt"},
                          {L"Grommet", L"grommet_20.prt", L"", L"rubber_ring.prt"}}));
}

// A wider dialog gives its table the room, the last column taking it; the size the user gave a
// dialog is the size it opens with next time.
TEST_F(PartDialogsTest, TablesWidenWithTheirDialogWhichKeepsItsSize) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    QSize chosen;
    {
        MinClearance d(&rule, L"mm");
        ShowActive(&d);
        auto* table = d.ControlById<CZEBAsmRuleListCtrl>(MinClearance::kTableId);
        const int tableWidth = table->width();
        const int lastColumn = table->columnWidth(table->GetColumnCount() - 1);
        chosen = d.size() + QSize(317, 41);
        d.resize(chosen);
        QApplication::processEvents();
        EXPECT_GT(table->width(), tableWidth + 250);
        EXPECT_GT(table->columnWidth(table->GetColumnCount() - 1), lastColumn + 250);
        d.reject();
    }
    MinClearance again(&rule, L"mm");
    ShowActive(&again);
    EXPECT_EQ(again.size(), chosen);
    again.reject();
}

// Tab goes through the dialog as it reads: by rows from the top, each row from the left.
TEST_F(PartDialogsTest, TabFollowsTheLayout) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    MinClearance d(&rule, L"mm");
    ShowActive(&d);
    QWidget* first = d.ControlById<QWidget>(MinClearance::kSeverityId);
    ASSERT_NE(first, nullptr);
    const std::vector<QWidget*> walked = WalkWithTab(first);
    ASSERT_GT(walked.size(), 6u);
    ExpectReadingOrder(&d, walked);
}
