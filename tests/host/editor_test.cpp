// The rule-set editor in this process over the built module: the window's commands as a user
// gives them, its questions and file choosers answered by the recording UI service, rule dialogs
// answered through their controls' ids.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTranslator>
#include <QUndoStack>
#include <filesystem>
#include <fstream>
#include <regex>

#include "app/help_topics.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/ui/rule_dlg_base.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_rule.h"
#include "host/editor/rule_set_editor.h"
#include "host/param_text.h"
#include "host/settings_diff.h"
#include "host/settings_file.h"
#include "tests/database/db_test_support.h"
#include "tests/host/editor_fixture.h"
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

// The host's texts in the language LANG names, for one test, taken away again however it ends, so
// that no test sees another's language.
struct EditorTexts {
    EditorTexts() { InstallEditorTranslations(*QCoreApplication::instance()); }
    ~EditorTexts() {
        for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
};

class EditorTest : public EditorFixture {
protected:
    void SetUp() override {
        EditorFixture::SetUp();
        if (HasFatalFailure()) return;
        // A document as `new` writes it, with a rule of another module before the end.
        file = folder.Folder() / "settings.xml";
        const std::string made =
            VANTOR_BUILD_DIR "/bin/vantor-rules new -o " + file.string() + " 2>/dev/null";
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
    ui.AnswerMessage(ZebIdYes);
    editor.RemoveCurrentRule();
    ASSERT_EQ(editor.Table()->rowCount(), 12);

    ui.AnswerMessage(ZebIdCancel);
    editor.NewDocument();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].buttons, ZebMsgButtons::SaveDiscardCancel);
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
    editor.SetCurrentSeverity(5);
    const fs::path chosen = folder.Folder() / "chosen.xml";
    EXPECT_EQ(MenuAction(editor, "Save As...")->shortcut(),
              QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
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
    const std::string brokenText =
        "<VantorSettings>\n  <AssemblyRules Unit=\"0\">\n    <Rule "
        "Name=\"x\">\n</VantorSettings>\n";
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
    editor.SetCurrentSeverity(5);
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
        for (std::sregex_iterator it(document.begin(), document.end(), valueOrUnit), end; it != end;
             ++it)
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
    EXPECT_NE(ui.messages[0].text.find(L"from Inches (in) to Millimetres (mm)"), std::wstring::npos)
        << ToUtf8(ui.messages[0].text);
    EXPECT_EQ(editor.Document().Unit(), 3);
    EXPECT_FALSE(editor.Document().IsModified());
}

// Rules missing from the document can be added back; German users get the window in German.
TEST_F(EditorTest, RulesAreAddedBackAndTheWindowSpeaksTheUsersLanguage) {
    ScopedEnv german{"LANG", "de_DE.UTF-8"};
    EditorTexts texts;
    ASSERT_NE(QCoreApplication::instance()->findChild<QTranslator*>(), nullptr);
    {
        CRuleSetEditor editor(module);
        EXPECT_EQ(editor.menuBar()->actions().at(0)->text(), "&Datei");
        EXPECT_EQ(editor.windowTitle(), "Unbenannt[*] - Vantor-Regeln");
        EXPECT_EQ(editor.Table()->horizontalHeaderItem(1)->text(), "Schweregrad");
        const int clearance = RowNamed(editor, "Fastener Clearance");
        ASSERT_GE(clearance, 0);
        EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Schwerwiegend");

        QAction* addRuleAction = MenuAction(editor, "Regel hinzufügen");
        ASSERT_NE(addRuleAction, nullptr);
        QMenu* addRule = addRuleAction->menu();
        ASSERT_NE(addRule, nullptr);
        EXPECT_FALSE(addRule->isEnabled());  // every rule is there
        editor.Table()->setCurrentCell(clearance, 0);
        ui.AnswerMessage(ZebIdYes);
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

        // The editor's own messages too.
        const fs::path foreign = folder.Folder() / "project.xml";
        std::ofstream(foreign, std::ios::binary) << "<Project/>\n";
        ui.AnswerMessage(ZebIdNo);
        EXPECT_FALSE(editor.OpenFile(foreign.string()));
        ASSERT_EQ(ui.messages.size(), 2u);
        EXPECT_NE(ui.messages[1].text.find(L"kein Einstellungsdokument (sein Wurzelelement ist "
                                           L"<Project>, nicht <VantorSettings>)"),
                  std::wstring::npos)
            << ToUtf8(ui.messages[1].text);
        EXPECT_FALSE(ZebOpenHelp(&editor, L"/nowhere/vantor.html", L""));
        ASSERT_EQ(ui.messages.size(), 3u);
        EXPECT_EQ(ui.messages[2].text, L"Die Hilfedatei /nowhere/vantor.html fehlt.");
        const fs::path damaged = folder.Folder() / "damaged.xml";
        std::ofstream(damaged, std::ios::binary) << "<VantorSettings>\n  <AssemblyRules>\n";
        EXPECT_FALSE(editor.OpenFile(damaged.string()));
        ASSERT_EQ(ui.messages.size(), 4u);
        EXPECT_EQ(ui.messages[3].text.rfind(
                      FromUtf8(damaged.string()) + L" konnte nicht geöffnet werden.\n\n", 0),
                  0u)
            << ToUtf8(ui.messages[3].text);
    }
}

// A file without a settings root is refused, or opened read-only when the user agrees; then it is
// never saved over, and Save asks for another name.
TEST_F(EditorTest, AFileWithoutASettingsRootIsNeverSavedOver) {
    CRuleSetEditor editor(module);
    const fs::path foreign = folder.Folder() / "project.xml";
    const std::string foreignText = "<Project>\n  <Part Name=\"bracket\"/>\n</Project>\n";
    std::ofstream(foreign, std::ios::binary) << foreignText;

    ui.AnswerMessage(ZebIdNo);
    EXPECT_FALSE(editor.OpenFile(foreign.string()));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find(L"<Project>"), std::wstring::npos) << ui.messages[0].text;
    EXPECT_EQ(editor.Table()->rowCount(), 12);  // the new document stays
    EXPECT_TRUE(editor.Document().Path().empty());

    ui.AnswerMessage(ZebIdYes);
    ASSERT_TRUE(editor.OpenFile(foreign.string()));
    EXPECT_TRUE(editor.Document().IsReadOnly());
    EXPECT_EQ(editor.Table()->rowCount(), 0);
    EXPECT_NE(editor.windowTitle().indexOf("project.xml"), -1);
    std::string message;
    EXPECT_FALSE(editor.Document().Save(foreign.string(), message));
    EXPECT_NE(message.find("not written over"), std::string::npos) << message;

    // Save goes to Save As: a cancelled chooser writes nothing, another name takes the rules.
    ui.CancelChooser();
    EXPECT_FALSE(editor.SaveDocument());
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_TRUE(ui.choosers[0].forSaving);
    EXPECT_EQ(FileBytes(foreign), foreignText);
}

// Remove and Reset ask first; OK without a change leaves the rule set unmodified; every change
// (configure, add, remove, severity, reset, unit) is undone and redone with Ctrl+Z and
// Ctrl+Shift+Z, back to the file's own bytes, and saving marks where nothing is unsaved.
TEST_F(EditorTest, EveryChangeIsAskedForWhereItDestroysAndCanBeUndone) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.show();
    const int clearance = RowNamed(editor, "Fastener Clearance");
    editor.Table()->setCurrentCell(clearance, 0);

    AnswerRuleDialog(CZEBRuleDlgBase::kIdOk);
    editor.ConfigureCurrentRule();
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_FALSE(editor.isWindowModified());
    EXPECT_EQ(editor.UndoStack()->count(), 0);

    ui.AnswerMessage(ZebIdNo);
    editor.RemoveCurrentRule();
    ui.AnswerMessage(ZebIdNo);
    editor.ResetCurrentRule();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[0].buttons, ZebMsgButtons::YesNo);
    EXPECT_NE(ui.messages[0].text.find(L"Fastener Clearance"), std::wstring::npos);
    EXPECT_EQ(editor.Table()->rowCount(), 13);
    EXPECT_FALSE(editor.Document().IsModified());

    const std::string opened = editor.Document().Snapshot();
    std::vector<std::string> states{opened};
    AnswerRuleDialog(CZEBRuleDlgBase::kIdOk, 1);
    editor.ConfigureCurrentRule();
    states.push_back(editor.Document().Snapshot());
    editor.SetCurrentSeverity(4);
    states.push_back(editor.Document().Snapshot());
    ui.AnswerMessage(ZebIdYes);
    editor.ResetCurrentRule();
    states.push_back(editor.Document().Snapshot());
    editor.ChangeUnit(3);  // refused: the rule of another module cannot change unit
    ui.AnswerMessage(ZebIdYes);
    editor.RemoveCurrentRule();
    states.push_back(editor.Document().Snapshot());
    QAction* add = nullptr;
    for (QAction* action : MenuAction(editor, "Add Rule")->menu()->actions()) add = action;
    ASSERT_NE(add, nullptr);
    add->trigger();
    states.push_back(editor.Document().Snapshot());
    ASSERT_EQ(editor.UndoStack()->count(), 5);
    for (size_t i = 1; i < states.size(); ++i) EXPECT_NE(states[i], states[i - 1]) << i;
    EXPECT_TRUE(editor.isWindowModified());

    editor.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    editor.Table()->setFocus();
    for (size_t i = states.size() - 1; i > 0; --i) {
        QTest::keyClick(editor.Table(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(editor.Document().Snapshot() == states[i - 1]) << i;
    }
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_FALSE(editor.isWindowModified());
    EXPECT_EQ(editor.Table()->item(clearance, 1)->text(), "Major");
    for (size_t i = 1; i < states.size(); ++i) {
        QTest::keyClick(editor.Table(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(editor.Document().Snapshot() == states[i]) << i;
    }
    EXPECT_TRUE(editor.Document().IsModified());

    // Undone back to the file, then saved: nothing but the file's own bytes.
    while (editor.UndoStack()->canUndo()) editor.UndoStack()->undo();
    ASSERT_TRUE(editor.SaveDocument());
    EXPECT_EQ(FileBytes(file), original);
    // After a save, undo is a change again.
    editor.UndoStack()->redo();
    EXPECT_TRUE(editor.isWindowModified());
}

// The pane beside the list shows the chosen rule's values, table rows and unit; the filter keeps
// the rules whose name holds its text and chooses the first of them.
TEST_F(EditorTest, TheDetailPaneAndTheFilter) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.ChangeUnit(3);  // refused while the rule of another module is there
    const int clearance = RowNamed(editor, "Minimum Clearance Between Parts");
    ASSERT_GE(clearance, 0);
    editor.Table()->setCurrentCell(clearance, 0);
    QString details = editor.Details()->toPlainText();
    EXPECT_TRUE(details.contains("Minimum Clearance Between Parts")) << details.toStdString();
    EXPECT_TRUE(details.contains("Lengths in Millimetres (mm)")) << details.toStdString();
    EXPECT_TRUE(details.contains("Severity: Critical")) << details.toStdString();
    EXPECT_TRUE(details.contains("Minimum clearance between all parts: on, >= 0.1 mm"))
        << details.toStdString();
    EXPECT_TRUE(editor.Details()->isReadOnly());

    editor.Table()->setCurrentCell(RowNamed(editor, "Wobble Check"), 0);
    EXPECT_TRUE(editor.Details()->toPlainText().contains("kept as it stands"));

    QTest::keyClicks(editor.Filter(), "ALIGN");
    std::vector<QString> shown;
    for (int row = 0; row < editor.Table()->rowCount(); ++row)
        if (!editor.Table()->isRowHidden(row))
            shown.push_back(editor.Table()->item(row, 0)->text());
    EXPECT_EQ(shown,
              (std::vector<QString>{"Hole Alignment", "Fastener Alignment", "Slot Alignment"}));
    EXPECT_EQ(editor.Table()->item(editor.Table()->currentRow(), 0)->text(), "Hole Alignment");
    EXPECT_TRUE(editor.Details()->toPlainText().contains("Hole Alignment"));
    editor.Filter()->clear();
    for (int row = 0; row < editor.Table()->rowCount(); ++row)
        EXPECT_FALSE(editor.Table()->isRowHidden(row));
}

// The pane names each value as the rule's dialog does, with its unit, and heads a table's columns
// as the dialog does, in the user's language; a value no dialog shows is named by its id.
TEST_F(EditorTest, TheDetailPaneNamesValuesAsTheDialogsDo) {
    std::string text = original;
    text.erase(text.find("    " + kUnknownRule + "\n"), kUnknownRule.size() + 5);
    const auto replace = [&](const std::string& from, const std::string& to) {
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    };
    // A range keeps rows in pairs or threes, as its dialog stores them.
    const std::string head = "Status=\"1\">\n        <Operator>7</Operator>";
    replace("Type=\"2052\" " + head,
            "Type=\"2052\" Status=\"1\">\n        <Operator>1</Operator>\n"
            "        <Value Attribute1=\"M6\" Attribute2=\"1.5\" Attribute3=\"2.5\" />\n"
            "        <Value Attribute1=\"M8\" Attribute2=\"2\" Attribute3=\"3\" />");
    replace("Type=\"9450\" " + head,
            "Type=\"9450\" " + head +
                "\n        <Value Attribute1=\"M6\" Attribute2=\"0.75\" Attribute3=\"\" />"
                "\n        <Value Attribute1=\"M8\" Attribute2=\"1\" Attribute3=\"\" />");
    replace(
        "Type=\"7002\" " + head + "\n        <ParameterType>1</ParameterType>\n        <Value />",
        "Type=\"7002\" " + head +
            "\n        <ParameterType>1</ParameterType>\n        <Value>"
            "Washer&lt;CZEB_MACRO_TAB&gt;W-100&lt;CZEB_MACRO_TAB&gt;W-110&lt;CZEB_MACRO_TAB&gt;"
            "W-090&lt;CZEB_MACRO_ENDLINE&gt;</Value>");
    std::ofstream(file, std::ios::binary) << text;

    const auto detailsOf = [](CRuleSetEditor& editor, const QString& rule) {
        const int row = RowNamed(editor, rule);
        EXPECT_GE(row, 0) << rule.toStdString();
        editor.Table()->setCurrentCell(row, 0);
        return editor.Details()->toPlainText();
    };
    const auto expectAll = [](const QString& details, const QStringList& parts) {
        for (const QString& part : parts)
            EXPECT_TRUE(details.contains(part)) << part.toStdString() << "\nnot in:\n"
                                                << details.toStdString();
    };
    {
        EditorTexts english;
        CRuleSetEditor editor(module);
        ASSERT_TRUE(editor.OpenFile(file.string()));
        expectAll(detailsOf(editor, "Fastener Clearance"),
                  {"Clearance A: Between, 2 rows\n", "Clearance B: >=, 2 rows\n", "Fastener name",
                   "Min (mm)", "Max (mm)", "M6", "2.5", "0.75"});
        expectAll(
            detailsOf(editor, "Preferred Components"),
            {"Preferred Components: 1 row\n", "Description", "Component to replace", "W-090"});
        expectAll(detailsOf(editor, "Minimum Clearance Between Parts"),
                  {"Report parts that touch: off", "Parameter 6073: = true"});
        expectAll(detailsOf(editor, "Interference Detection"),
                  {"Ignore interferences with a volume: off", "Check all components: on"});
        expectAll(detailsOf(editor, "Bolt and Screw Rationalization"),
                  {"The same length, or lengths that differ by: on, >= 4.0 mm"});
    }
    ScopedEnv german{"LANG", "de_DE.UTF-8"};
    EditorTexts texts;
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    expectAll(detailsOf(editor, "Fastener Clearance"),
              {"Freiraum A: Zwischen, 2 Zeilen", "Name des Verbindungselements", "Min (mm)"});
    expectAll(detailsOf(editor, "Minimum Clearance Between Parts"),
              {"Mindestabstand zwischen allen Teilen: ein, >= 0.1 mm", "Parameter 8095: = false"});
    expectAll(detailsOf(editor, "Fastener Accessibility"), {"Werkzeugfreiraum: >= 1.2 mm"});
    editor.ChangeUnit(3);
    expectAll(detailsOf(editor, "Hole Alignment"),
              {"Achsversatz zwischen fluchtenden Bohrungen: <= 0.019685 in"});
    expectAll(detailsOf(editor, "Fastener Clearance"), {"Min (in)", "0.029528", "0.059055"});
}

// Rules taken from another rule set are chosen in a list and converted into the open set's unit;
// the comparison with a file shows what diff prints.
TEST_F(EditorTest, RulesComeFromAnotherFileAndTheDifferenceIsShown) {
    const fs::path inches = folder.Folder() / "inches.xml";
    const std::string made =
        VANTOR_BUILD_DIR "/bin/vantor-rules new --unit 3 -o " + inches.string() + " 2>/dev/null";
    ASSERT_EQ(std::system(made.c_str()), 0);
    std::string inchText = FileBytes(inches);
    // The inch set's hole alignment tolerance: 0.5 in, which is 12.7 mm.
    const size_t hole = inchText.find("<Value>0.019685</Value>");
    ASSERT_NE(hole, std::string::npos);
    inchText.replace(hole, 23, "<Value>0.5</Value>");
    std::ofstream(inches, std::ios::binary) << inchText;

    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    QStringList offered;
    WhenModalOpen<QDialog>([&offered](QDialog& dialog) {
        auto* list = dialog.findChild<QListWidget*>(CRuleSetEditor::kImportListName);
        for (int i = 0; i < list->count(); ++i) {
            offered << list->item(i)->text();
            // Only the hole alignment, chosen with the keyboard: Space unticks the others.
            if (list->item(i)->text() != "Hole Alignment")
                list->item(i)->setCheckState(Qt::Unchecked);
        }
        dialog.accept();
    });
    ui.ChooseFiles({inches.wstring()});
    editor.ImportRulesFromFile();
    EXPECT_EQ(offered.size(), 12);
    EXPECT_TRUE(editor.Document().IsModified());
    EXPECT_EQ(editor.Document().RuleCount(), 13u);
    const CZebRule* imported =
        editor.Document().Rule(static_cast<size_t>(RowNamed(editor, "Hole Alignment")));
    ASSERT_NE(imported, nullptr);
    EXPECT_EQ(imported->CurrentUnits.LengthUnit, 0);
    EXPECT_NE(ParamValuesText(*imported->ParamArray[0]).find("12.7"), std::string::npos);

    QString differences;
    WhenModalOpen<QDialog>([&differences](QDialog& dialog) {
        differences =
            dialog.findChild<QPlainTextEdit*>(CRuleSetEditor::kDifferencesName)->toPlainText();
        dialog.reject();
    });
    ui.ChooseFiles({inches.wstring()});
    editor.CompareWithFile();
    std::vector<std::string> lines;
    std::string error;
    ASSERT_TRUE(editor.SaveDocument());
    ASSERT_TRUE(DiffSettings(module, file.string(), inches.string(), lines, error)) << error;
    ASSERT_FALSE(lines.empty());
    QString expected;
    for (const std::string& line : lines) expected += QString::fromStdString(line) + "\n";
    EXPECT_EQ(differences, expected);
    EXPECT_FALSE(differences.contains("Hole Alignment")) << differences.toStdString();
}

// F1 opens the help file at the chosen rule's section, or at the rule sets' without one; both
// sections are in every language's help file.
TEST_F(EditorTest, HelpOpensAtTheChosenRule) {
    CRuleSetEditor editor(module);
    editor.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    editor.Table()->setCurrentCell(RowNamed(editor, "Slot Alignment"), 0);
    QTest::keyClick(editor.Table(), Qt::Key_F1);
    ASSERT_EQ(ui.opened.size(), 1u);
    EXPECT_NE(ui.opened[0].find(L"/en/vantor.html#rule-slot-alignment"), std::wstring::npos)
        << ui.opened[0];
    editor.Filter()->setText("no such rule");
    editor.ShowHelp();
    ASSERT_EQ(ui.opened.size(), 2u);
    EXPECT_NE(ui.opened[1].find(L"#rule-sets"), std::wstring::npos) << ui.opened[1];
    for (const char* language : {"en", "de"}) {
        const std::string help =
            FileBytes(fs::path(VANTOR_BUILD_DIR "/share/vantor/res") / language / "vantor.html");
        for (const ZebRuleHelpTopic& topic : kRuleHelpTopics) {
            const size_t section = help.find("id=\"" + ToUtf8(topic.topic) + "\"");
            ASSERT_NE(section, std::string::npos) << language;
            // Each rule's section shows its picture, which is there beside the help file.
            const std::string tag = "src=\"../images/";
            const size_t image = help.find(tag, section);
            ASSERT_LT(image, help.find("</section>", section))
                << language << " " << ToUtf8(topic.topic);
            const size_t name = image + tag.size();
            const std::string file = help.substr(name, help.find('"', name) - name);
            EXPECT_TRUE(fs::exists(fs::path(VANTOR_BUILD_DIR "/share/vantor/res/images") / file))
                << file;
        }
    }
}

// A whole configuration with keys alone: find a rule, configure it (its severity chosen in the
// dialog), set another's severity, undo it, save.
TEST_F(EditorTest, AWholeConfigurationFromTheKeyboard) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.show();
    editor.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    QWidget* focus = QApplication::focusWidget();
    ASSERT_EQ(focus, editor.Table());
    QTest::keyClick(focus, Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), editor.Filter());
    QTest::keyClicks(editor.Filter(), "clearance");
    QTest::keyClick(editor.Filter(), Qt::Key_Return);  // on to the first rule shown
    ASSERT_EQ(QApplication::focusWidget(), editor.Table());
    QTest::keyClick(editor.Table(), Qt::Key_Down);
    ASSERT_EQ(editor.Table()->item(editor.Table()->currentRow(), 0)->text(), "Fastener Clearance");

    // In the dialog: the severity list takes Critical, Enter presses OK.
    WhenModalOpen<CZEBRuleDlgBase>([](CZEBRuleDlgBase& dialog) {
        QWidget* severity = dialog.GetDlgItem(6022);
        severity->setFocus();
        QTest::keyClick(severity, Qt::Key_Home);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    QTest::keyClick(editor.Table(), Qt::Key_Return);
    EXPECT_EQ(editor.Table()->item(editor.Table()->currentRow(), 1)->text(), "Critical");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    ASSERT_EQ(QApplication::focusWidget(), editor.Table());
    QTest::keyClick(editor.Table(), Qt::Key_Up);  // the minimum clearance, critical at first
    QTest::keyClick(editor.Table(), Qt::Key_5, Qt::ControlModifier);
    EXPECT_EQ(editor.Table()->item(editor.Table()->currentRow(), 1)->text(), "Info");
    QTest::keyClick(editor.Table(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor.Table()->item(editor.Table()->currentRow(), 1)->text(), "Critical");
    QTest::keyClick(editor.Table(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), editor.Details());
    QTest::keyClick(editor.Details(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(editor.Document().IsModified());
    const std::string saved = FileBytes(file);
    EXPECT_NE(saved.find("Name=\"Fastener Clearance\" Status=\"0\""), std::string::npos);
    EXPECT_TRUE(ui.messages.empty());
}

// Space, the menu and a click on the box switch a rule off and on, each one change to undo; the
// rule switched off is greyed with "(off)" in the list and the pane, and is saved with nothing
// else changed, read back switched off, and named so by diff.
TEST_F(EditorTest, ARuleIsSwitchedOffAndOnFromTheList) {
    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.show();
    editor.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    const int row = RowNamed(editor, "Fastener Clearance");
    ASSERT_GE(row, 0);
    QTableWidget* table = editor.Table();
    table->setCurrentCell(row, 2);  // Space works wherever in the row the cursor is
    table->setFocus();
    const auto item = [&] { return table->item(row, 0); };
    const auto rule = [&] { return editor.Document().Rule(static_cast<size_t>(row)); };
    const QColor normal = table->item(row + 1, 0)->foreground().color();
    EXPECT_EQ(item()->checkState(), Qt::Checked);
    EXPECT_TRUE(RuleInUse(*rule()));

    QTest::keyClick(table, Qt::Key_Space);
    EXPECT_EQ(rule()->LifeStatus, kLifeStatusSwitchedOff);
    EXPECT_FALSE(RuleInUse(*rule()));
    EXPECT_EQ(item()->text(), "Fastener Clearance (off)");
    EXPECT_EQ(item()->checkState(), Qt::Unchecked);
    EXPECT_NE(item()->foreground().color(), normal);
    EXPECT_EQ(table->item(row, 1)->foreground().color(), item()->foreground().color());
    EXPECT_TRUE(editor.Details()->toPlainText().contains("Fastener Clearance (off)"));
    EXPECT_TRUE(editor.Details()->toPlainText().contains("Switched off"))
        << editor.Details()->toPlainText().toStdString();
    EXPECT_TRUE(editor.isWindowModified());
    EXPECT_EQ(editor.UndoStack()->undoText(), "Switch Off Fastener Clearance");
    const std::string off = editor.Document().Snapshot();

    QAction* menu = MenuAction(editor, "Switch On/Off");
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_T));
    menu->trigger();
    EXPECT_EQ(rule()->LifeStatus, kLifeStatusInUse);
    EXPECT_EQ(item()->text(), "Fastener Clearance");
    EXPECT_EQ(item()->foreground().color(), normal);

    // A click on the box sets the state the model is given, once the click has ended.
    table->model()->setData(table->model()->index(row, 0), Qt::Unchecked, Qt::CheckStateRole);
    QTRY_COMPARE(editor.UndoStack()->count(), 3);
    EXPECT_EQ(rule()->LifeStatus, kLifeStatusSwitchedOff);
    EXPECT_TRUE(editor.Document().Snapshot() == off);

    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(item()->checkState(), Qt::Checked);
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(item()->text(), "Fastener Clearance (off)");
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_EQ(item()->checkState(), Qt::Checked);
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(editor.Document().Snapshot() == off);
    EXPECT_EQ(editor.UndoStack()->count(), 3);  // filling the list again switched nothing

    ASSERT_TRUE(editor.SaveDocument());
    std::string expected = original;
    const size_t at =
        expected.find("<Rule Name=\"Fastener Clearance\" Status=\"0\" LifeStatus=\"0\"");
    ASSERT_NE(at, std::string::npos);
    expected.replace(expected.find("LifeStatus=\"0\"", at), 14, "LifeStatus=\"1\"");
    EXPECT_EQ(FileBytes(file), expected);

    CRuleSetEditor reopened(module);
    ASSERT_TRUE(reopened.OpenFile(file.string()));
    EXPECT_EQ(reopened.Table()->item(row, 0)->checkState(), Qt::Unchecked);
    EXPECT_FALSE(RuleInUse(*reopened.Document().Rule(static_cast<size_t>(row))));
    // Reset brings back the rule's values, not the rule into use.
    reopened.Table()->setCurrentCell(row, 0);
    ui.AnswerMessage(ZebIdYes);
    reopened.ResetCurrentRule();
    EXPECT_FALSE(RuleInUse(*reopened.Document().Rule(static_cast<size_t>(row))));

    const fs::path before = folder.Folder() / "before.xml";
    std::ofstream(before, std::ios::binary) << original;
    std::vector<std::string> lines;
    std::string error;
    ASSERT_TRUE(DiffSettings(module, before.string(), file.string(), lines, error)) << error;
    EXPECT_EQ(lines, std::vector<std::string>{
                         "rule \"Fastener Clearance\": life status in use -> switched off"});
}

// A rule whose element holds no status (settings older than the switch) has no box; Space and
// the menu leave it as it is and say why, and a save keeps its element as it was read.
TEST_F(EditorTest, ARuleWithoutAStatusHasNoSwitch) {
    std::string text = original;
    const std::string header = "<Rule Name=\"Fastener Alignment\" Status=\"0\" LifeStatus=\"0\"";
    const size_t at = text.find(header);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, header.size(), "<Rule Name=\"Fastener Alignment\" Status=\"0\"");
    std::ofstream(file, std::ios::binary) << text;

    CRuleSetEditor editor(module);
    ASSERT_TRUE(editor.OpenFile(file.string()));
    editor.show();
    editor.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    const int row = RowNamed(editor, "Fastener Alignment");
    ASSERT_GE(row, 0);
    const CZebRule* rule = editor.Document().Rule(static_cast<size_t>(row));
    EXPECT_EQ(rule->LifeStatus, -1);
    EXPECT_FALSE(RuleHasSwitch(*rule));
    EXPECT_TRUE(RuleInUse(*rule));
    EXPECT_FALSE(editor.Table()->item(row, 0)->data(Qt::CheckStateRole).isValid());
    editor.Table()->setCurrentCell(row, 0);
    EXPECT_TRUE(editor.Details()->toPlainText().contains("no status"))
        << editor.Details()->toPlainText().toStdString();
    EXPECT_TRUE(editor.Table()->item(row, 0)->toolTip().contains("no status"));

    editor.Table()->setFocus();
    QTest::keyClick(editor.Table(), Qt::Key_Space);
    MenuAction(editor, "Switch On/Off")->trigger();
    EXPECT_FALSE(editor.Document().SetInUse(static_cast<size_t>(row), false));
    EXPECT_EQ(editor.UndoStack()->count(), 0);
    EXPECT_FALSE(editor.Document().IsModified());
    EXPECT_TRUE(editor.statusBar()->currentMessage().contains("no status"))
        << editor.statusBar()->currentMessage().toStdString();
    // The rule of another module has no box either.
    const int unknown = RowNamed(editor, "Wobble Check");
    EXPECT_FALSE(editor.Table()->item(unknown, 0)->data(Qt::CheckStateRole).isValid());
    EXPECT_FALSE(editor.Document().SetInUse(static_cast<size_t>(unknown), false));

    // Another rule switched off and saved: the rule without a status is written as it was read.
    editor.Table()->setCurrentCell(row + 1, 0);
    QTest::keyClick(editor.Table(), Qt::Key_Space);
    ASSERT_EQ(editor.UndoStack()->count(), 1);
    ASSERT_TRUE(editor.SaveDocument());
    const std::vector<std::string> read = RuleElements(text), saved = RuleElements(FileBytes(file));
    ASSERT_EQ(saved.size(), read.size());
    EXPECT_EQ(saved[static_cast<size_t>(row)], read[static_cast<size_t>(row)]);
    EXPECT_NE(saved[static_cast<size_t>(row) + 1], read[static_cast<size_t>(row) + 1]);
}
