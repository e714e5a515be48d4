// The rule-set editor in this process over the built module: the window's commands as a user
// gives them, its questions and file choosers answered by the recording UI service, rule dialogs
// answered through their controls' ids.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTableWidget>
#include <QTest>
#include <QTranslator>
#include <filesystem>
#include <fstream>
#include <regex>

#include "framework/ui/recording_ui_service.h"
#include "framework/ui/rule_dlg_base.h"
#include "host/editor/rule_set_editor.h"
#include "tests/database/db_test_support.h"
#include "tests/support/answer_dialog.h"
#include "tests/support/scoped_env.h"
#include "tests/support/settings_text.h"

namespace fs = std::filesystem;

namespace {
// A rule of another module, as the settings writer lays it out.
const std::string kUnknownRule =
    "<Rule Name=\"Wobble Check\" Severity=\"4\">\n"
    "      <Parameter Type=\"1\">\n"
    "        <Value>7.5</Value>\n"
    "      </Parameter>\n"
    "    </Rule>";

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override {
        static int argc = 1;
        static char name[] = "editor_test";
        static char* argv[] = {name, nullptr};
        if (!QApplication::instance()) new QApplication(argc, argv);
        std::string error;
        ASSERT_TRUE(module.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) << error;
        // A document as `new` writes it, with a rule of another module before the end.
        file = folder.Folder() / "settings.xml";
        const std::string made = VANTOR_BUILD_DIR "/bin/vantor-rules new -o " + file.string() + " 2>/dev/null";
        ASSERT_EQ(std::system(made.c_str()), 0);
        std::string text = FileBytes(file);
        text.insert(text.rfind("  </AssemblyRules>"), "    " + kUnknownRule + "\n");
        std::ofstream(file, std::ios::binary) << text;
        original = FileBytes(file);
    }

    // The table row whose first column reads `text`; -1 when none does.
    static int RowNamed(CRuleSetEditor& editor, const QString& text) {
        for (int row = 0; row < editor.Table()->rowCount(); ++row)
            if (editor.Table()->item(row, 0)->text() == text) return row;
        return -1;
    }

    ScopedEnv platform{"QT_QPA_PLATFORM", "offscreen"};
    ScopedEnv resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv language{"LANG", "en_US.UTF-8"};
    ScopedDatabaseFolder folder;
    // Recent files and the window's size go to a settings file of the test's own.
    ScopedEnv config{"XDG_CONFIG_HOME", (folder.Folder() / "config").c_str()};
    CZebRecordingUiService ui;
    ModuleLoader module;
    fs::path file;
    std::string original;
};
}  // namespace

// Open, configure one rule (Enter, then OK with a new severity), save: only that rule's element
// changed and the unknown rule is written back byte for byte. Cancel changes nothing.
TEST_F(EditorTest, ConfiguringOneRuleChangesOnlyItsElement) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    ASSERT_EQ(editor.Table()->rowCount(), 13);
    EXPECT_EQ(editor.windowTitle(), "settings.xml[*] - Vantor Rules");
    const int unknown = RowNamed(editor, "Wobble Check");
    ASSERT_EQ(unknown, 12);
    EXPECT_TRUE(editor.Table()->item(unknown, 1)->text().isEmpty());
    EXPECT_FALSE(editor.Table()->item(unknown, 0)->toolTip().isEmpty());

    const int clearance = RowNamed(editor, "Fastener Clearance");
    ASSERT_GE(clearance, 0);
    EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Major");
    editor.Table()->setCurrentCell(clearance, 0);
    AnswerRuleDialog(CZEBRuleDlgBase::kIdCancel, 1);
    QTest::keyClick(editor.Table(), Qt::Key_Return);
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_FALSE(editor.isWindowModified());
    EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Major");

    AnswerRuleDialog(CZEBRuleDlgBase::kIdOk, 1);
    QTest::keyClick(editor.Table(), Qt::Key_Return);
    EXPECT_TRUE(editor.isWindowModified());
    EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Critical");
    EXPECT_EQ(FileBytes(file), original);

    ASSERT_TRUE(editor.SaveDocument());
    EXPECT_FALSE(editor.isWindowModified());
    const std::string saved = FileBytes(file);
    const std::vector<std::string> before = RuleElements(original), after = RuleElements(saved);
    ASSERT_EQ(after.size(), before.size());
    for (size_t i = 0; i < before.size(); ++i) {
        if (after[i].find("Name=\"Fastener Clearance\"") != std::string::npos)
            EXPECT_NE(after[i].find("Severity=\"1\""), std::string::npos) << after[i];
        else
            EXPECT_EQ(after[i], before[i]);
    }
    EXPECT_NE(saved.find(kUnknownRule), std::string::npos);
    EXPECT_TRUE(ui.messages.empty());
}

// Before New, Open and Quit with unsaved changes: Cancel keeps the window and the document,
// Discard drops the changes without touching the file, Save writes them first.
TEST_F(EditorTest, UnsavedChangesAreAskedAbout) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.Table()->setCurrentCell(0, 0);
    editor.RemoveCurrentRule();
    ASSERT_EQ(editor.Table()->rowCount(), 12);

    ui.AnswerMessage(ZebIdCancel);
    editor.NewDocument();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].buttons, ZebMsgButtons::SaveDiscardCancel);
    EXPECT_EQ(editor.Table()->rowCount(), 12);
    EXPECT_TRUE(editor.Document().IsModified());
    ui.AnswerMessage(ZebIdCancel);
    editor.show();
    EXPECT_FALSE(editor.close());
    EXPECT_TRUE(editor.isVisible());

    ui.AnswerMessage(ZebIdNo);
    editor.NewDocument();
    EXPECT_EQ(editor.Table()->rowCount(), 12);  // every rule of the module, at its defaults
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_EQ(editor.windowTitle(), "Untitled[*] - Vantor Rules");
    EXPECT_EQ(FileBytes(file), original);

    // A new document is saved under the name the chooser gives.
    editor.Table()->setCurrentCell(0, 0);
    editor.ResetCurrentRule();
    const fs::path chosen = folder.Folder() / "chosen.xml";
    ui.AnswerMessage(ZebIdYes);
    ui.ChooseFiles({chosen.wstring()});
    EXPECT_TRUE(editor.close());
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_TRUE(ui.choosers[0].forSaving);
    EXPECT_EQ(RuleElements(FileBytes(chosen)).size(), 12u);
}

// A damaged file is refused with the place of the error and stays as it was; a save that fails
// leaves the old file whole and the document changed.
TEST_F(EditorTest, BadFilesAndFailedSavesLoseNothing) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    const fs::path broken = folder.Folder() / "broken.xml";
    const std::string brokenText = "<VantorSettings>\n  <AssemblyRules Unit=\"0\">\n    <Rule Name=\"x\">\n</VantorSettings>\n";
    std::ofstream(broken, std::ios::binary) << brokenText;
    EXPECT_FALSE(editor.OpenFile(broken.string()));
    ASSERT_EQ(ui.messages.size(), 1u);
    const std::wstring& message = ui.messages[0].text;
    EXPECT_NE(message.find(broken.wstring()), std::wstring::npos) << message;
    EXPECT_NE(message.find(L"line 4"), std::wstring::npos) << message;
    EXPECT_NE(message.find(L"column"), std::wstring::npos) << message;
    EXPECT_EQ(FileBytes(broken), brokenText);
    EXPECT_EQ(editor.Table()->rowCount(), 13);
    EXPECT_EQ(editor.Document().Path(), file.string());

    // Files may not grow past 100 bytes while saving, so the write fails.
    editor.Table()->setCurrentCell(0, 0);
    editor.ResetCurrentRule();
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit tiny{100, old.rlim_max};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tiny);
    const bool saved = editor.SaveDocument();
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_DFL);
    EXPECT_FALSE(saved);
    EXPECT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(FileBytes(file), original);
    EXPECT_TRUE(editor.Document().IsModified());
    EXPECT_TRUE(editor.isWindowModified());
    size_t leftovers = 0;
    for (const auto& entry : fs::directory_iterator(folder.Folder()))
        leftovers += entry.path().filename().string().rfind(".vantor-", 0) == 0;
    EXPECT_EQ(leftovers, 0u);
}

// Inches and back: every value and the parent's unit as they were. A unit that the rule of
// another module would need is refused and changes nothing.
TEST_F(EditorTest, UnitsConvertEveryRuleAndBack) {
    std::string text = original;
    text.erase(text.find("    " + kUnknownRule + "\n"), kUnknownRule.size() + 5);
    std::ofstream(file, std::ios::binary) << text;
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.ChangeUnit(3);
    EXPECT_EQ(editor.Document().Unit(), 3);
    EXPECT_TRUE(editor.isWindowModified());
    const fs::path inches = folder.Folder() / "inches.xml";
    std::string message;
    ASSERT_TRUE(editor.Document().Save(inches.string(), message)) << message;
    const std::string inchText = FileBytes(inches);
    EXPECT_NE(inchText.find("Unit=\"3\""), std::string::npos);
    EXPECT_NE(inchText.find("<Value>0.019685</Value>"), std::string::npos);  // 0.5 mm
    editor.ChangeUnit(0);
    ASSERT_TRUE(editor.SaveDocument());  // now inches.xml
    // Summaries are rebuilt on the way, so values and units are what must match.
    const std::regex valueOrUnit(R"(<Value>[^<]*</Value>|Unit="\d+")");
    const auto valuesOf = [&](const std::string& document) {
        std::vector<std::string> found;
        for (std::sregex_iterator it(document.begin(), document.end(), valueOrUnit), end; it != end; ++it)
            found.push_back(it->str());
        return found;
    };
    EXPECT_EQ(valuesOf(FileBytes(inches)), valuesOf(text));
    EXPECT_NE(valuesOf(inchText), valuesOf(text));

    std::string withUnknown = inchText;
    withUnknown.insert(withUnknown.rfind("  </AssemblyRules>"), "    " + kUnknownRule + "\n");
    const fs::path mixed = folder.Folder() / "mixed.xml";
    std::ofstream(mixed, std::ios::binary) << withUnknown;
    ASSERT_TRUE(editor.OpenFile(mixed.string()));
    editor.ChangeUnit(0);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find(L"Wobble Check"), std::wstring::npos);
    EXPECT_EQ(editor.Document().Unit(), 3);
    EXPECT_FALSE(editor.Document().IsModified());
}

// Rules missing from the document can be added back; German users get the window in German.
TEST_F(EditorTest, RulesAreAddedBackAndTheWindowSpeaksTheUsersLanguage) {
    ScopedEnv german{"LANG", "de_DE.UTF-8"};
    InstallEditorTranslations(*QCoreApplication::instance());
    ASSERT_NE(QCoreApplication::instance()->findChild<QTranslator*>(), nullptr);
    {
        CRuleSetEditor editor(module);
        EXPECT_EQ(editor.menuBar()->actions().at(0)->text(), "&Datei");
        EXPECT_EQ(editor.windowTitle(), "Unbenannt[*] - Vantor-Regeln");
        EXPECT_EQ(editor.Table()->horizontalHeaderItem(1)->text(), "Schweregrad");
        const int clearance = RowNamed(editor, "Fastener Clearance");
        ASSERT_GE(clearance, 0);
        EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Schwerwiegend");

        QMenu* addRule = nullptr;
        for (QAction* action : editor.menuBar()->actions().at(1)->menu()->actions())
            if (action->menu()) addRule = action->menu();
        ASSERT_NE(addRule, nullptr);
        EXPECT_FALSE(addRule->isEnabled());  // every rule is there
        editor.Table()->setCurrentCell(clearance, 0);
        editor.RemoveCurrentRule();
        ASSERT_TRUE(addRule->isEnabled());
        ASSERT_EQ(addRule->actions().size(), 1);
        EXPECT_EQ(addRule->actions().at(0)->text(), "Fastener Clearance");
        const auto missing = editor.Document().MissingRules();
        ASSERT_EQ(missing.size(), 1u);
        EXPECT_EQ(missing[0].first, L"Fastener Clearance");
        ASSERT_TRUE(editor.Document().AddRule(missing[0].first));
        EXPECT_TRUE(editor.Document().MissingRules().empty());
        EXPECT_EQ(editor.Document().RuleCount(), 12u);
    }
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>()) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
}
