// vantor-rules configure in this process: the host's own code loads the module, the rule's
// Configure opens its dialog, and the test answers the dialog through its controls' ids, as a
// user would.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTranslator>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "framework/ui/control_id.h"
#include "framework/ui/rule_dlg_base.h"
#include "host/configure_settings.h"
#include "tests/database/db_test_support.h"
#include "tests/support/answer_dialog.h"
#include "tests/support/scoped_env.h"
#include "tests/support/scratch_config.h"
#include "tests/support/settings_text.h"

namespace fs = std::filesystem;

namespace {
class ConfigureTest : public ::testing::Test {
protected:
    void SetUp() override {
        static int argc = 1;
        static char name[] = "configure_test";
        static char* argv[] = {name, nullptr};
        UseScratchConfiguration();
        if (!QApplication::instance()) new QApplication(argc, argv);
        file = folder.Folder() / "settings.xml";
        const std::string made =
            VANTOR_BUILD_DIR "/bin/vantor-rules new -o " + file.string() + " 2>/dev/null";
        ASSERT_EQ(std::system(made.c_str()), 0);
        original = FileBytes(file);
    }

    int Configure(const std::string& rule, const std::string& output = "") {
        CommandArgs args;
        args.positional = {file.string(), rule};
        args.output = output;
        return ConfigureSettings(args);
    }

    ScopedEnv platform{"QT_QPA_PLATFORM", "offscreen"};
    ScopedEnv resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv language{"LANG", "en_US.UTF-8"};
    ScopedDatabaseFolder folder;
    fs::path file;
    std::string original;
};
}  // namespace

// Cancel writes nothing; OK after one change writes the document with only that rule's element
// changed, to -o or back to the file.
TEST_F(ConfigureTest, OkWritesOnlyTheConfiguredRuleAndCancelNothing) {
    AnswerRuleDialog(CZEBRuleDlgBase::kIdCancel);
    EXPECT_EQ(Configure("fastener clearance"), 1);
    EXPECT_TRUE(FileBytes(file) == original);

    const fs::path out = folder.Folder() / "out.xml";
    AnswerRuleDialog(CZEBRuleDlgBase::kIdOk, 4);
    EXPECT_EQ(Configure("FASTENER CLEARANCE", out.string()), 0);
    EXPECT_TRUE(FileBytes(file) == original);
    const std::vector<std::string> before = RuleElements(original),
                                   after = RuleElements(FileBytes(out));
    ASSERT_EQ(after.size(), before.size());
    int changed = 0;
    for (size_t i = 0; i < before.size(); ++i) {
        if (before[i] == after[i]) continue;
        ++changed;
        EXPECT_NE(after[i].find("Name=\"Fastener Clearance\""), std::string::npos);
        EXPECT_NE(after[i].find("Severity=\"4\""), std::string::npos);
        // Only the severity changed.
        EXPECT_EQ(std::regex_replace(after[i], std::regex("Severity=\"\\d\""), ""),
                  std::regex_replace(before[i], std::regex("Severity=\"\\d\""), ""));
    }
    EXPECT_EQ(changed, 1);

    // OK without a change writes the file back as it was.
    AnswerRuleDialog(CZEBRuleDlgBase::kIdOk);
    EXPECT_EQ(Configure("Fastener Engagement Length"), 0);
    EXPECT_TRUE(FileBytes(file) == original);
}

// Rules the file or the module does not have are refused.
TEST_F(ConfigureTest, RefusesWhatItCannotConfigure) {
    EXPECT_EQ(Configure("No Such Rule"), 2);
    EXPECT_TRUE(FileBytes(file) == original);
    CommandArgs args;
    args.positional = {(folder.Folder() / "missing.xml").string(), "Fastener Clearance"};
    EXPECT_EQ(ConfigureSettings(args), 2);
}

// The bolt and screw rule rebuilds its summary from what its dialog stored.
TEST_F(ConfigureTest, BoltScrewSummaryFollowsItsDialog) {
    ClickInRuleDialog({9015, CZEBRuleDlgBase::kIdOk});  // same head type off
    ASSERT_EQ(Configure("Bolt and Screw Rationalization"), 0);
    const std::string text = FileBytes(file);
    const size_t rule = text.find("<Rule Name=\"Bolt and Screw Rationalization\"");
    ASSERT_NE(rule, std::string::npos);
    const std::string element = text.substr(rule, text.find("</Rule>", rule) - rule);
    EXPECT_NE(
        element.find(
            "Summary=\"Bolts &amp; Screws can be rationalized based on same diameter, same "
            "material, "
            "same length or difference between consecutive lengths, difference between consecutive "
            "diameters.\""),
        std::string::npos)
        << element;
}

// The minimum clearance rule rebuilds its summary from what its dialog stored: with the general
// clearance off and the part pairs on, only the part pairs' sentence is left.
TEST_F(ConfigureTest, MinClearanceSummaryFollowsItsDialog) {
    // The general clearance off, the part pairs on.
    ClickInRuleDialog({6008, 6009, CZEBRuleDlgBase::kIdOk});
    ASSERT_EQ(Configure("Minimum Clearance Between Parts"), 0);
    const std::string text = FileBytes(file);
    const size_t rule = text.find("<Rule Name=\"Minimum Clearance Between Parts\"");
    ASSERT_NE(rule, std::string::npos);
    const std::string element = text.substr(rule, text.find("</Rule>", rule) - rule);
    EXPECT_NE(
        element.find("Summary=\" Listed part pairs are checked against their own clearance.\""),
        std::string::npos)
        << element;
}

// The host gives every rule it reads the unit of its document, so the dialogs of rules that read
// no unit of their own name inches, not millimetres, for an inch document.
TEST_F(ConfigureTest, DialogsNameTheUnitOfTheDocument) {
    const std::string made =
        VANTOR_BUILD_DIR "/bin/vantor-rules new --unit 3 -o " + file.string() + " 2>/dev/null";
    ASSERT_EQ(std::system(made.c_str()), 0);
    const std::pair<const char*, int> labels[] = {{"Fastener Clearance", 6019},
                                                  {"Fastener Engagement Length", 6032},
                                                  {"Contact Material", 7059}};
    for (const auto& [rule, labelId] : labels) {
        QString label;
        WhenModalOpen<CZEBRuleDlgBase>([&label, labelId = labelId](CZEBRuleDlgBase& dialog) {
            if (auto* shown = qobject_cast<QLabel*>(dialog.GetDlgItem(labelId)))
                label = shown->text();
            qobject_cast<QPushButton*>(dialog.GetDlgItem(CZEBRuleDlgBase::kIdCancel))->click();
        });
        EXPECT_EQ(Configure(rule), 1) << rule;
        // "Clearance values (in)", or the unit alone
        EXPECT_EQ(label.split(QChar(u' ')).last().remove(u'(').remove(u')'), "in")
            << rule << ": " << label.toStdString();
    }
}

// The host names the user's database folder for the module when the user names none, making it
// on a new account; a folder the user names stays.
TEST_F(ConfigureTest, TheHostNamesTheDatabaseFolderTheUserDidNot) {
    const fs::path data = folder.Folder() / "new account" / "data";
    ScopedEnv xdg{"XDG_DATA_HOME", data.c_str()};
    {
        ScopedEnv unnamed{"VANTOR_DATABASE_DIR", nullptr};
        ModuleLoader loader;
        std::string error;
        ASSERT_TRUE(loader.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) << error;
        const char* named = std::getenv("VANTOR_DATABASE_DIR");
        ASSERT_NE(named, nullptr);
        EXPECT_EQ(fs::path(named), data / "vantor");
        EXPECT_TRUE(fs::is_directory(data / "vantor"));
        IDatabaseCollector* database = zeb_db::ZEBDataHelper::getInstance();
        ASSERT_NE(database, nullptr);
        EXPECT_EQ(fs::path(database->GetDatabasePath()).parent_path(), data / "vantor");
    }
    ModuleLoader loader;
    std::string error;
    ASSERT_TRUE(loader.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) << error;
    EXPECT_EQ(fs::path(std::getenv("VANTOR_DATABASE_DIR")), folder.Folder());
}

// configure shows a rule's dialog with Qt's buttons in the user's language, as the editor does.
TEST_F(ConfigureTest, TheButtonsSpeakTheUsersLanguage) {
    // The module keeps the language it started in for the process; it starts in English here,
    // as for every other test.
    ModuleLoader english;
    std::string error;
    ASSERT_TRUE(english.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) << error;
    ScopedEnv german{"LANG", "de_DE.UTF-8"};
    QString cancel;
    WhenModalOpen<CZEBRuleDlgBase>([&cancel](CZEBRuleDlgBase& dialog) {
        auto* button = qobject_cast<QPushButton*>(dialog.GetDlgItem(CZEBRuleDlgBase::kIdCancel));
        cancel = button->text();
        button->click();
    });
    const int status = Configure("Fastener Clearance");
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>()) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
    EXPECT_EQ(status, 1);
    EXPECT_EQ(cancel.remove('&'), "Abbrechen");
}
