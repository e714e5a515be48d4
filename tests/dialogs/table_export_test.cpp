// Rule tables exported to a workbook and imported again: each dialog's "Export..." (on its column
// headings) and `vantor-rules export` write what the dialog's own Ctrl+I reads back into the same
// table. Choosers and messages are answered by the recording UI service; the fastener dialogs
// work over a real database in a temporary folder.
#include "util/table_export.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <QAction>
#include <QHeaderView>
#include <QTest>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/assembly_rules_app.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/fastener/fastener_clearance_dlg.h"
#include "dialogs/fastener/fastener_engagement_len_dlg.h"
#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"
#include "dialogs/fastener/zeb_asm_fastener_engagement_len_rule_list_ctrl.h"
#include "dialogs/parts/interf_det_check_comp_dlg.h"
#include "dialogs/parts/interf_det_main_dlg.h"
#include "dialogs/parts/min_clearance_dlg.h"
#include "dialogs/parts/pref_comp_dlg.h"
#include "framework/case_fold.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/fastener_clearance_rule.h"
#include "rules/fastener_engagement_len_rule.h"
#include "rules/interference_detection_rule.h"
#include "rules/min_clearance_rule.h"
#include "rules/pref_comp_rule.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/support/database_module.h"
#include "tests/support/exported_rule.h"
#include "tests/support/scoped_env.h"
#include "tests/support/scoped_temp_dir.h"
#include "tests/ui/qt_test_app.h"
#include "util/number_text.h"
#include "util/string_table.h"
#include "util/texts.h"

namespace fs = std::filesystem;

namespace {
using Rows = std::vector<CZebGridModel::Row>;

const std::wstring kNut = L"Mutter DIN 934 \u2013 Stahl";

void AddRows(CZebRule& rule, long id, const std::vector<ZebRow>& rows) {
    for (const ZebRow& row : rows) FindTyped<ZebRow>(rule, id)->values.Add(row);
}

// The rows of a table that hold anything, in order, without the component tables' marker column.
Rows Filled(const CZEBListCtrl& table, int first, int count) {
    Rows filled;
    for (const CZebGridModel::Row& row : table.GetRows()) {
        CZebGridModel::Row cells;
        bool any = false;
        for (int c = first; c < first + count; ++c) {
            cells.push_back(CZebGridModel::CellOf(row, c));
            any = any || !cells.back().empty();
        }
        if (any) filled.push_back(std::move(cells));
    }
    return filled;
}

// What the fastener import makes of a row: the name in upper case (the database's key) and each
// value in the table's number text.
CZebGridModel::Row AsFastenerImport(const CZebGridModel::Row& row) {
    CZebGridModel::Row imported{ZebUpperCase(row[0])};
    for (size_t i = 1; i < row.size(); ++i)
        imported.push_back(row[i].empty()
                               ? L""
                               : FormatTrimmedNumber(ParseNumber(row[i]), UserDecimalSeparator()));
    return imported;
}

QAction* ExportAction(const CZEBListCtrl& table) {
    for (QAction* action : table.horizontalHeader()->actions())
        if (action->text().toStdWString() == LoadLocalizedString(IDS_EXPORT_TABLE)) return action;
    return nullptr;
}

class TableExportTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        ASSERT_TRUE(databaseModule.Loaded()) << databaseModule.Error();
        tmp.Set(dir.c_str());
    }

    // "Export..." from the table's headings with `sheet` chosen in the save chooser.
    void Export(const CZEBListCtrl& table, const fs::path& sheet) {
        QAction* action = ExportAction(table);
        ASSERT_NE(action, nullptr);
        ui.ChooseFiles({sheet.wstring()});
        action->trigger();
    }
    // Ctrl+I on the open dialog with `sheet` chosen.
    void Import(QWidget* dialog, const fs::path& sheet) {
        ui.ChooseFiles({sheet.wstring()});
        ShowActive(dialog);
        QTest::keyClick(dialog, Qt::Key_I, Qt::ControlModifier);
    }
    std::wstring LeftOutMessage(int count) {
        return ZebFormatText(LoadLocalizedString(IDS_EXPORT_ROWS_LEFT_OUT),
                             {std::to_wstring(count)});
    }

    ScopedDatabaseFolder folder;
    ScopedTempDir temp{"vantor-export-"};
    const fs::path dir = temp.Path();
    ScopedEnv tmp{"TMPDIR", nullptr};
    CZebResourceScope scope;
    CZebRecordingUiService ui;
    ScopedDatabaseModule databaseModule;
};

// Runs the built host; its exit status.
int RunHost(const std::string& args) {
    const std::string command =
        "LC_ALL=C.UTF-8 " VANTOR_BUILD_DIR "/bin/vantor-rules " + args + " >/dev/null 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Quoted(const fs::path& path) { return "'" + path.string() + "'"; }
}  // namespace

// Which rows each layout writes: heading rows where the fastener import matches one, rows the
// import would end at (an empty first cell, a component pair with one part, a fastener without
// the values it needs) left out and counted, empty rows and nameless fastener rows dropped.
TEST(TableSheet, WritesTheImportLayoutAndCountsWhatCannotComeBack) {
    TableSheet sheet = TableToSheet(TableSheetKind::PartPairs, {{L"a.prt", L"b.prt", L"1"},
                                                                {},
                                                                {L"", L"d.prt", L"2"},
                                                                {L"e.prt", L"", L""},
                                                                {L"  ", L"", L""}});
    EXPECT_EQ(sheet.rows, (TextRows{{L"a.prt", L"b.prt", L"1"}}));
    EXPECT_EQ(sheet.leftOut, 2u);

    sheet = TableToSheet(TableSheetKind::ComponentsToCheck, {{L"g1", L""}, {L"g2", L"h2"}});
    EXPECT_EQ(sheet.rows, (TextRows{{L"g2", L"h2"}}));
    EXPECT_EQ(sheet.leftOut, 1u);

    sheet = TableToSheet(TableSheetKind::PreferredComponents,
                         {{L"d", L"", L"", L"r.prt"}, {L"", L"p.prt", L"", L""}});
    EXPECT_EQ(sheet.rows, (TextRows{{L"d", L"", L"", L"r.prt"}}));
    EXPECT_EQ(sheet.leftOut, 1u);

    sheet = TableToSheet(TableSheetKind::FastenerClearance, {{L"M8", L"1", L"", L"", L""},
                                                             {L"M10", L"", L"2", L"", L"3"},
                                                             {L"", L"1", L"2", L"3", L"4"}});
    EXPECT_EQ(sheet.rows,
              (TextRows{{L"F", L"A", L"A1", L"B", L"B1"}, {L"M8", L"1", L"", L"", L""}}));
    EXPECT_EQ(sheet.leftOut, 1u);

    sheet = TableToSheet(TableSheetKind::FastenerEngagement,
                         {{L"M8", L"12"}, {L"M6", L""}, {L"M5", L"x"}});
    EXPECT_EQ(sheet.rows, (TextRows{{L"F", L"A"}, {L"M8", L"12"}}));
    EXPECT_EQ(sheet.leftOut, 2u);
}

// The pair table: exported from one dialog and imported into a fresh one, the same pairs and
// clearances (texts as they were, a missing clearance included); OK stores the same rows. The
// export sits on the headings, so the cells keep their own right-click.
TEST_F(TableExportTest, MinClearancePairsComeBackThroughTheImport) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    AddRows(rule, 2048,
            {{kNut + L".prt", L"Welle \u00d8 20.prt", L"2.5"},
             {L"a.prt", L"b.prt", L"3"},
             {L"c.asm", L"d.prt", L"0.125"}});
    CZEBAssemblyMinClearanceBetPartsDlg d(&rule, L"mm");
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(CZEBAssemblyMinClearanceBetPartsDlg::kTableId);
    EXPECT_EQ(table->horizontalHeader()->contextMenuPolicy(), Qt::ActionsContextMenu);
    // The cells' own right click browses; their row menu comes from the keyboard.
    EXPECT_EQ(table->contextMenuPolicy(), Qt::DefaultContextMenu);
    const Rows original = Filled(*table, 1, 3);
    ASSERT_EQ(original.size(), 3u);

    const fs::path sheet = dir / "pairs.xlsx";
    Export(*table, sheet);
    ASSERT_FALSE(ui.choosers.empty());
    EXPECT_TRUE(ui.choosers.back().forSaving);
    EXPECT_FALSE(ui.choosers.back().fileMustExist);
    EXPECT_TRUE(ui.messages.empty());
    ASSERT_TRUE(fs::exists(sheet));

    CZEBAssemblyMinClearanceBetPartsRule fresh;
    AddRows(fresh, 2048, {{L"old.prt", L"older.prt", L"9"}});
    CZEBAssemblyMinClearanceBetPartsDlg again(&fresh, L"mm");
    Import(&again, sheet);
    auto* imported =
        again.ControlById<CZEBAsmRuleListCtrl>(CZEBAssemblyMinClearanceBetPartsDlg::kTableId);
    EXPECT_EQ(Filled(*imported, 1, 3), original);
    again.OnOK();
    EXPECT_FALSE(again.isVisible());
    const auto& stored = FindTyped<ZebRow>(fresh, 2048)->values;
    EXPECT_EQ(std::vector<ZebRow>(stored.begin(), stored.end()),
              std::vector<ZebRow>(original.begin(), original.end()));
}

// The components to check, as pairs: the same pairs come back. As groups, a row with one side
// empty would end the import, so it is left out and the user is told.
TEST_F(TableExportTest, ComponentsToCheckComeBackAndHalfRowsAreReported) {
    CZEBAssemblyInterferenceDetectionRule rule;
    FindTyped<bool>(rule, 6067)->values[0] = false;
    AddRows(rule, 6068, {{kNut + L".prt", L"Geh\u00e4use.asm"}, {L"x.prt", L"y.prt"}});
    ZEBASMInterfDetMainDlg d(&rule, L"mm");
    ShowActive(&d);
    auto* table = d.ControlById<CZEBAsmRuleListCtrl>(ZEBASMInterfDetCheckCompDlg::kTableId);
    const Rows original = Filled(*table, 1, 2);
    ASSERT_EQ(original.size(), 2u);
    const fs::path sheet = dir / "check.xlsx";
    Export(*table, sheet);
    EXPECT_TRUE(ui.messages.empty());

    CZEBAssemblyInterferenceDetectionRule fresh;
    FindTyped<bool>(fresh, 6067)->values[0] = false;
    ZEBASMInterfDetMainDlg again(&fresh, L"mm");
    Import(&again, sheet);
    EXPECT_EQ(Filled(*again.ControlById<CZEBAsmRuleListCtrl>(ZEBASMInterfDetCheckCompDlg::kTableId),
                     1, 2),
              original);

    ui.messages.clear();
    table->SetCellText(2, 1, L"group only.prt");
    const fs::path halves = dir / "groups.xlsx";
    Export(*table, halves);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LeftOutMessage(1));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    ui.messages.clear();
    Import(&again, halves);
    EXPECT_EQ(Filled(*again.ControlById<CZEBAsmRuleListCtrl>(ZEBASMInterfDetCheckCompDlg::kTableId),
                     1, 2),
              original);
}

// Preferred components: every record with a description comes back, its empty cells in place;
// a record without a description (its import would end there) is left out and reported, and
// the rule's text after OK is the original's without it.
TEST_F(TableExportTest, PreferredComponentsComeBackWithoutRecordsLackingADescription) {
    CZEBAssemblyCheckPrefCompRule rule;
    const std::vector<StringTableRow> kept{{kNut, L"nut_din934.prt", L"", L"nut_old.prt"},
                                           {L"Bracket; steel", L"", L"bracket|v2.prt", L""}};
    std::vector<StringTableRow> all = kept;
    all.insert(all.begin() + 1, StringTableRow{L"", L"lonely.prt", L"", L""});
    FindTyped<std::wstring>(rule, 7002)->values[0] = CZEBStringTableParser::Compose(all);
    CZEBAssemblyCheckPrefCompDlg d(&rule);
    ShowActive(&d);
    const fs::path sheet = dir / "preferred";  // the extension is added
    Export(*d.ControlById<CZEBAsmRuleListCtrl>(CZEBAssemblyCheckPrefCompDlg::kTableId), sheet);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LeftOutMessage(1));
    EXPECT_FALSE(fs::exists(sheet));
    ASSERT_TRUE(fs::exists(dir / "preferred.xlsx"));

    CZEBAssemblyCheckPrefCompRule fresh;
    CZEBAssemblyCheckPrefCompDlg again(&fresh);
    Import(&again, dir / "preferred.xlsx");
    again.OnOK();
    EXPECT_FALSE(again.isVisible());
    std::vector<StringTableRow> stored;
    CZEBStringTableParser::Parse(FindTyped<std::wstring>(fresh, 7002)->values[0], stored);
    EXPECT_EQ(stored, kept);
}

// The fastener tables: both conditions with their Max under the heading row F, A, A1, B, B1, or
// the engagement lengths under F, A. The import gives the same rows in its own terms: names in
// upper case and values in the table's number text.
TEST_F(TableExportTest, FastenerTablesComeBackThroughTheImport) {
    CZEBAssemblyFastenerClearanceRule clearanceRule;
    AddRows(clearanceRule, 2052, {{kNut, L"1", L"2.5"}, {L"ISO 4017 M8", L"0.5", L""}});
    AddRows(clearanceRule, 9450, {{kNut, L"3", L"4"}, {L"ISO 4017 M8", L"1.25", L""}});
    for (long id : {2052L, 9450L}) FindTyped<ZebRow>(clearanceRule, id)->op = ZebOp_Range;
    CZEBAssemblyFastenerClearanceDlg clearance(&clearanceRule, L"mm");
    ShowActive(&clearance);
    const Rows clearanceRows = Filled(*clearance.GetGrid(), 0, 5);
    ASSERT_EQ(clearanceRows.size(), 2u);
    ASSERT_NE(ExportAction(*clearance.GetOperatorGrid()), nullptr);
    const fs::path clearanceSheet = dir / "clearance.xlsx";
    Export(*clearance.GetGrid(), clearanceSheet);
    EXPECT_TRUE(ui.messages.empty());

    CZEBAssemblyFastenerClearanceRule freshClearance;
    for (long id : {2052L, 9450L}) FindTyped<ZebRow>(freshClearance, id)->op = ZebOp_Range;
    CZEBAssemblyFastenerClearanceDlg clearanceAgain(&freshClearance, L"mm");
    Import(&clearanceAgain, clearanceSheet);
    Rows expected;
    for (const auto& row : clearanceRows) expected.push_back(AsFastenerImport(row));
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Filled(*clearanceAgain.GetGrid(), 0, 5), expected);

    CZEBAssemblyFastenerEngagementLenRule engagementRule;
    AddRows(engagementRule, 2053, {{kNut, L"12"}, {L"ISO 4762 M6", L"7.5"}});
    CZEBAssemblyFastenerEngagementLenDlg engagement(&engagementRule, L"mm");
    ShowActive(&engagement);
    const Rows engagementRows = Filled(*engagement.GetGrid(), 0, 2);
    ASSERT_EQ(engagementRows.size(), 2u);
    const fs::path engagementSheet = dir / "engagement.xlsx";
    Export(*engagement.GetGrid(), engagementSheet);

    CZEBAssemblyFastenerEngagementLenRule freshEngagement;
    CZEBAssemblyFastenerEngagementLenDlg engagementAgain(&freshEngagement, L"mm");
    Import(&engagementAgain, engagementSheet);
    expected.clear();
    for (const auto& row : engagementRows) expected.push_back(AsFastenerImport(row));
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Filled(*engagementAgain.GetGrid(), 0, 2), expected);
    EXPECT_TRUE(ui.messages.empty());
}

// A target in a missing folder: the failure is reported with the target's name and nothing is
// written, neither the target nor a temporary file beside it. A cancelled chooser writes nothing.
TEST_F(TableExportTest, FailedWriteLeavesNoFileAndIsReported) {
    CZEBAssemblyFastenerEngagementLenRule rule;
    AddRows(rule, 2053, {{kNut, L"12"}});
    CZEBAssemblyFastenerEngagementLenDlg d(&rule, L"mm");
    ShowActive(&d);
    const fs::path target = dir / "missing" / "lengths.xlsx";
    Export(*d.GetGrid(), target);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    const std::wstring expectedStart =
        ZebFormatText(LoadLocalizedString(IDS_TABLE_NOT_EXPORTED), {target.wstring(), L""});
    EXPECT_EQ(ui.messages[0].text.substr(0, expectedStart.size()), expectedStart);
    EXPECT_FALSE(fs::exists(target));

    ui.CancelChooser();
    ExportAction(*d.GetGrid())->trigger();
    EXPECT_EQ(ui.messages.size(), 1u);
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(dir))
        if (entry.path().filename().string().starts_with(".vantor-")) left.push_back(entry.path());
    EXPECT_TRUE(left.empty());

    // Writing over an existing file replaces it whole; a failing write elsewhere never touches it.
    std::wstring error;
    const fs::path existing = dir / "existing.xlsx";
    { std::ofstream(existing) << "old"; }
    EXPECT_TRUE(WriteSheetFile(existing.wstring(), {{L"F", L"A"}, {kNut, L"1"}}, error))
        << ToUtf8(error);
    EXPECT_GT(fs::file_size(existing), 3u);
    EXPECT_FALSE(WriteSheetFile((dir / "missing" / "x.xlsx").wstring(), {{L"a"}}, error));
    EXPECT_NE(error.find(L"missing"), std::wstring::npos);
}

// vantor-rules export: a rule's stored table to a workbook the dialog imports into the same table
// (exit 0), a rule without a table (1), and bad input (2): an unknown rule, an unreadable file,
// no output, or an output that cannot be written.
TEST_F(TableExportTest, HostCommandWritesWhatTheDialogImports) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    AddRows(
        rule, 2048,
        {{kNut + L".prt", L"b.prt", L"1.5"}, {L"c.prt", L"", L"2"}, {L"e.prt", L"f.prt", L"4"}});
    const fs::path settings = dir / "settings.xml";
    { std::ofstream(settings) << ExportedText(rule); }
    const fs::path sheet = dir / "from host.xlsx";
    EXPECT_EQ(RunHost("export " + Quoted(settings) + " 'minimum clearance between parts' -o " +
                      Quoted(sheet)),
              0);
    ASSERT_TRUE(fs::exists(sheet));

    CZEBAssemblyMinClearanceBetPartsRule fresh;
    CZEBAssemblyMinClearanceBetPartsDlg d(&fresh, L"mm");
    Import(&d, sheet);
    EXPECT_EQ(
        Filled(*d.ControlById<CZEBAsmRuleListCtrl>(CZEBAssemblyMinClearanceBetPartsDlg::kTableId),
               1, 3),
        (Rows{{kNut + L".prt", L"b.prt", L"1.5"}, {L"e.prt", L"f.prt", L"4"}}));

    // The workbook records the unit of its values, and an inch rule set converts them, saying so.
    EXPECT_EQ(ReadSheetLengthUnit(sheet.wstring()), std::optional<int32_t>(0));
    CZEBAssemblyMinClearanceBetPartsRule inch;
    inch.CurrentUnits.LengthUnit = 3;
    CZEBAssemblyMinClearanceBetPartsDlg inInch(&inch, L"in");
    ui.messages.clear();
    Import(&inInch, sheet);
    EXPECT_EQ(Filled(*inInch.ControlById<CZEBAsmRuleListCtrl>(
                         CZEBAssemblyMinClearanceBetPartsDlg::kTableId),
                     1, 3),
              (Rows{{kNut + L".prt", L"b.prt", L"0.059055"}, {L"e.prt", L"f.prt", L"0.15748"}}));
    ASSERT_FALSE(ui.messages.empty());
    EXPECT_EQ(ui.messages[0].text, ZebFormatText(LoadLocalizedString(IDS_IMPORT_UNIT_CONVERTED),
                                                 {GetUnitText(0), GetUnitText(3)}));
    // A workbook another program wrote records nothing.
    std::wstring error;
    ASSERT_TRUE(
        WriteSheetFile((dir / "plain.xlsx").wstring(), {{L"a.prt", L"b.prt", L"1"}}, error));
    EXPECT_EQ(ReadSheetLengthUnit((dir / "plain.xlsx").wstring()), std::nullopt);

    // A rule the file does not hold.
    EXPECT_EQ(
        RunHost("export " + Quoted(settings) + " 'Hole Alignment' -o " + Quoted(dir / "none.xlsx")),
        2);
    EXPECT_FALSE(fs::exists(dir / "none.xlsx"));

    const fs::path all = dir / "all.xml";
    EXPECT_EQ(RunHost("new -o " + Quoted(all)), 0);
    EXPECT_EQ(
        RunHost("export " + Quoted(all) + " 'Hole Alignment' -o " + Quoted(dir / "hole.xlsx")), 1);
    EXPECT_FALSE(fs::exists(dir / "hole.xlsx"));
    EXPECT_EQ(RunHost("export " + Quoted(all) + " 'No Such Rule' -o " + Quoted(dir / "x.xlsx")), 2);
    EXPECT_EQ(RunHost("export " + Quoted(dir / "absent.xml") + " 'Fastener Clearance' -o " +
                      Quoted(dir / "x.xlsx")),
              2);
    EXPECT_EQ(RunHost("export " + Quoted(all) + " 'Fastener Clearance'"), 2);
    EXPECT_EQ(RunHost("export " + Quoted(all) + " 'Fastener Clearance' -o " +
                      Quoted(dir / "missing" / "x.xlsx")),
              2);
    EXPECT_FALSE(fs::exists(dir / "x.xlsx"));
    EXPECT_FALSE(fs::exists(dir / "missing"));
}
