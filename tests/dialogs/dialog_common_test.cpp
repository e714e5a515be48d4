// What the rule dialogs share, driven as a user drives a dialog: the base's step list, the
// severity list, the spreadsheet import and the fastener additions to the database.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <list>
#include <map>

#include "app/assembly_rules_app.h"
#include "controls/database_module.h"
#include "controls/sheet_import.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/common/fastener_additions.h"
#include "dialogs/common/rule_dialog.h"
#include "dialogs/common/severity_list.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/fastener_accessibility_rule.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/ui/qt_test_app.h"
#include "util/number_text.h"

namespace {
constexpr long kToolClearance = 6080;

double Clearance(CZebRule& rule) { return FindTyped<double>(rule, kToolClearance)->values[0]; }

// A dialog over the accessibility rule's tool clearance, built from the shared steps.
class ClearanceDialog : public CZEBRuleDialog {
public:
    ClearanceDialog(CZebRule* rule, const std::wstring& unitText)
        : CZEBRuleDialog(rule, unitText, 0, 13060) {
        auto* layout = new QVBoxLayout(Body());
        severity = new CWrapperComboCtrl(Body());
        value = new QLineEdit(Body());
        layout->addWidget(severity);
        layout->addWidget(value);
    }

    void LoadFromRule(CZebRule& rule) override {
        LoadSeverityList(*severity, rule.Severity);
        value->setText(QString::fromStdWString(FormatNumber(Clearance(rule))));
    }
    std::optional<ZebRefusal> Validate(CZebRule&) override {
        if (ParseNumber(value->text().toStdWString()) <= 0.000001)
            return ZebRefusal{LoadLocalizedString(IDS_TOOL_CLEARANCE_REQUIRED), value};
        return std::nullopt;
    }
    void StoreIntoRule(CZebRule& rule) override {
        StoreSeverityList(*severity, rule.Severity);
        FindTyped<double>(rule, kToolClearance)->values[0] =
            ParseNumber(value->text().toStdWString());
    }

    CWrapperComboCtrl* severity;
    QLineEdit* value;
};

class DialogCommonTest : public ::testing::Test {
protected:
    void SetUp() override { EnsureQtTestApp(); }
    CZebRecordingUiService ui;
};
}  // namespace

// The dialog loads when it opens, refuses with the first failed check and keeps the rule as it
// was, and writes the rule only on an OK it accepts.
TEST_F(DialogCommonTest, OkChecksEverythingBeforeTheRuleIsWritten) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    rule.Severity = 3;
    ClearanceDialog dialog(&rule, L"mm");
    ShowActive(&dialog);
    EXPECT_EQ(dialog.severity->count(), 5);
    EXPECT_EQ(dialog.severity->currentIndex(), 2);
    EXPECT_EQ(dialog.value->text(), "1.2");
    EXPECT_EQ(dialog.GetUnitText(), L"mm");

    dialog.severity->setCurrentIndex(0);
    dialog.value->setText("0");
    dialog.findChild<QPushButton*>()->setFocus();
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_TOOL_CLEARANCE_REQUIRED));
    EXPECT_EQ(ui.messages[0].caption, L"Vantor");
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), dialog.value);
    EXPECT_EQ(rule.Severity, 3);
    EXPECT_EQ(Clearance(rule), 1.2);

    dialog.value->setText("2.5");
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), CZEBRuleDlgBase::kIdOk);
    EXPECT_EQ(rule.Severity, 1);
    EXPECT_EQ(Clearance(rule), 2.5);

    ClearanceDialog cancelled(&rule, L"mm");
    ShowActive(&cancelled);
    cancelled.value->setText("9");
    cancelled.OnCancel();
    EXPECT_EQ(cancelled.result(), CZEBRuleDlgBase::kIdCancel);
    EXPECT_EQ(Clearance(rule), 2.5);
}

TEST_F(DialogCommonTest, SeverityListShowsTheRulesSeverityAndKeepsItWithoutAChoice) {
    CWrapperComboCtrl list;
    LoadSeverityList(list, 6);
    EXPECT_EQ(list.count(), 5);
    EXPECT_EQ(list.currentIndex(), -1);
    int32_t severity = 6;
    StoreSeverityList(list, severity);
    EXPECT_EQ(severity, 6);

    LoadSeverityList(list, 2);
    EXPECT_EQ(list.currentText().toStdWString(), LoadLocalizedString(IDS_SEVERITY_MAJOR));
    list.setCurrentIndex(-1);
    severity = 2;
    StoreSeverityList(list, severity);
    EXPECT_EQ(severity, 2);
    EXPECT_EQ(list.currentIndex(), 1);
    list.setCurrentIndex(4);
    StoreSeverityList(list, severity);
    EXPECT_EQ(severity, 5);
}

namespace {
std::wstring g_unitSeen;
bool g_scopeSeen = false;
void RecordingRunner(CZebRule&, const std::wstring& unitText) {
    g_unitSeen = unitText;
    g_scopeSeen = ZebGetResourceHandle() == GetAssemblyRulesApp()->m_localizedLibrary.get();
}
}  // namespace

// Configure reaches a dialog only through the runner registered for its rule, in a resource
// scope and with the text of the rule's unit.
TEST_F(DialogCommonTest, RulesReachTheirDialogThroughTheRegistry) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    rule.CurrentUnits.LengthUnit = 3;
    EXPECT_FALSE(RunRuleDialog(rule, IDS_RULE_FASTENER_ACCESSIBILITY));
    RegisterRuleDialog(IDS_RULE_FASTENER_ACCESSIBILITY, &RecordingRunner);
    const ZebResourceHandle before = ZebGetResourceHandle();
    ZebSetResourceHandle(GetAssemblyRulesApp()->m_defaultLibrary.get());
    EXPECT_TRUE(RunRuleDialog(rule, IDS_RULE_FASTENER_ACCESSIBILITY));
    EXPECT_EQ(ZebGetResourceHandle(), GetAssemblyRulesApp()->m_defaultLibrary.get());
    ZebSetResourceHandle(before);
    EXPECT_EQ(g_unitSeen, LoadLocalizedString(IDS_UNIT_INCH));
    EXPECT_TRUE(g_scopeSeen);
    RegisterRuleDialog(IDS_RULE_FASTENER_ACCESSIBILITY, nullptr);
    EXPECT_FALSE(RunRuleDialog(rule, IDS_RULE_FASTENER_ACCESSIBILITY));
}

TEST_F(DialogCommonTest, SpreadsheetImportAsksReadsAndSaysWhatWentWrong) {
    std::wstring path = L"unchanged";
    EXPECT_FALSE(ChooseSpreadsheet(nullptr, path));
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_EQ(ui.choosers[0].filter, L"XLS Files (*.xls;*.xlsx)|*.xls; *.xlsx|");
    EXPECT_EQ(ui.choosers[0].defaultExtension, L"XLS");
    EXPECT_TRUE(ui.choosers[0].fileMustExist);
    EXPECT_EQ(path, L"unchanged");
    ui.ChooseFiles({L"/sheets/bolts.xls"});
    EXPECT_TRUE(ChooseSpreadsheet(nullptr, path));
    EXPECT_EQ(path, L"/sheets/bolts.xls");

    SpreadsheetTable table{{L"stale"}};
    EXPECT_FALSE(ReadImportColumns(nullptr, L"/nonexistent/bolts.xls", {{L"A"}}, table));
    EXPECT_TRUE(table.empty());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_SHEET_NOT_READABLE));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);

    EXPECT_TRUE(CheckImportNotEmpty(nullptr, {{L"a"}, {L"b"}}));
    EXPECT_FALSE(CheckImportNotEmpty(nullptr, {{L"a"}, {}, {}}));
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_NE(ui.messages[1].text.find(L"2, 3"), std::wstring::npos);
}

// Names are added once and only when the database lacks them in any letter case; a failed
// addition is reported once and ends the additions.
TEST_F(DialogCommonTest, ImportedFastenersGoIntoTheDatabaseOnce) {
    ScopedDatabaseFolder folder;
    FastenerAdditions additions;
    additions.RecordName(L"iso 4017 m8");
    additions.RecordName(L"ACME Ä1");
    additions.RecordName(L"acme ä1");
    additions.RecordThread(L"M8x1.25", L"ACME Ä1");
    additions.RecordThread(L"M8x1.25", L"iso 4017 m8");
    AddToFastenerDatabase(nullptr, additions);
    EXPECT_TRUE(ui.messages.empty());

    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    std::list<std::wstring> names;
    ASSERT_EQ(db->GetFastenerNames(names), ZebDbOk);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"ACME Ä1"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"acme ä1"), 0);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"iso 4017 m8"), 0);
    std::map<std::wstring, std::wstring> threads;
    ASSERT_EQ(db->GetAttributeData(kFastenerThreadAttributeSet, threads), ZebDbOk);
    EXPECT_EQ(threads[L"ACME Ä1"], L"M8x1.25");
    EXPECT_EQ(threads.count(L"ISO 4017 M8"), 1u);
    EXPECT_EQ(threads.count(L"iso 4017 m8"), 0u);

    FastenerAdditions failing;
    failing.RecordName(L"");
    failing.RecordName(L"after the failure");
    failing.RecordThread(L"M3x0.5", L"after the failure");
    AddToFastenerDatabase(nullptr, failing);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
    ASSERT_EQ(db->GetFastenerNames(names), ZebDbOk);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"after the failure"), 0);
}

// The database module counts only once the host has loaded it beside the module; its name then
// fills the database drop-down.
TEST_F(DialogCommonTest, DatabaseModuleNameOnlyFromALoadedModule) {
    ScopedDatabaseFolder folder;
    std::wstring name = L"unchanged";
    CWrapperComboCtrl list;
    const std::string path = VANTOR_BUILD_DIR "/tests/ZEBDatabaseu.so";
    EXPECT_FALSE(GetLoadedDatabaseModuleName(name));
    EXPECT_EQ(name, L"unchanged");
    EXPECT_FALSE(FillDatabaseModuleList(list));
    EXPECT_EQ(list.count(), 0);

    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_TRUE(GetLoadedDatabaseModuleName(name));
    EXPECT_EQ(name, L"Vantor Database");
    EXPECT_TRUE(FillDatabaseModuleList(list));
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.currentText(), "Vantor Database");
    dlclose(handle);
}
