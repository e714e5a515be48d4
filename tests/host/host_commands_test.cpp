// Runs the built vantor-rules as a user would and checks its output files and messages.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/file_bytes.h"
#include "tests/support/host_run.h"

namespace fs = std::filesystem;

namespace {
void WriteFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

class HostCommandsTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("vantor-host-" +
               std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    // `prefix` runs in the same shell before the host (limits, traps).
    HostRun Host(const std::string& args, const std::string& prefix = "") {
        return RunHost(args, dir / "stderr.txt", prefix);
    }

    std::string P(const std::string& name) const { return (dir / name).string(); }

    fs::path dir;
};
}  // namespace

TEST_F(HostCommandsTest, ListUnitsAndHelp) {
    HostRun list = Host("list");
    ASSERT_EQ(list.status, 0) << list.err;
    auto lines = Lines(list.out);
    ASSERT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines[0].substr(0, lines[0].find('\t')), "Hole Alignment");
    EXPECT_EQ(lines[11].substr(0, lines[11].find('\t')), "Slot Alignment");
    EXPECT_EQ(
        lines[7],
        "Fastener Clearance\tFastener Clearance\t2\tChecks the clearance around each fastener "
        "against the limits set for its fastener name.");

    HostRun units = Host("units");
    ASSERT_EQ(units.status, 0) << units.err;
    auto unitLines = Lines(units.out);
    ASSERT_EQ(unitLines.size(), 11u);
    EXPECT_EQ(unitLines[0], "0\tmm\t0.001");
    EXPECT_EQ(unitLines[3], "3\tin\t0.0254");
    EXPECT_EQ(unitLines[5], "5\t\t1e-09");

    HostRun help = Host("--help");
    EXPECT_EQ(help.status, 0);
    for (const char* word : {"list", "units", "new", "show", "resave", "convert", "--module-dir"})
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    EXPECT_EQ(Host("configure").status, 2);
}

// Without a command the host opens the editor when there is a display, else it explains itself.
// Pictures of the editor need no screen.
TEST_F(HostCommandsTest, TheEditorWithAndWithoutADisplay) {
    HostRun bare = Host("", "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM");
    EXPECT_EQ(bare.status, 2);
    EXPECT_NE(bare.err.find("usage: vantor-rules COMMAND"), std::string::npos) << bare.err;
    EXPECT_EQ(Host("edit", "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM").status, 2);

    ASSERT_EQ(Host("new -o " + P("rules.xml")).status, 0);
    const std::string offscreen = "env QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=" + P("config") +
                                  " VANTOR_DATABASE_DIR=" + P("db");
    HostRun pictured =
        Host("edit " + P("rules.xml") + " --screenshot " + P("editor.png"), offscreen);
    ASSERT_EQ(pictured.status, 0) << pictured.err;
    EXPECT_EQ(FileBytes(dir / "editor.png").substr(1, 3), "PNG");

    WriteFile(dir / "broken.xml", "<VantorSettings>\n<AssemblyRules>\n");
    HostRun broken =
        Host("edit " + P("broken.xml") + " --screenshot " + P("broken.png"), offscreen);
    EXPECT_EQ(broken.status, 2);
    EXPECT_NE(broken.err.find("broken.xml"), std::string::npos) << broken.err;
    EXPECT_NE(broken.err.find("line"), std::string::npos) << broken.err;
    EXPECT_FALSE(fs::exists(dir / "broken.png"));

    // The material editors open on the shared database by themselves, and draw themselves too.
    for (const char* which : {"", " --pair"}) {
        const fs::path png = dir / (std::string("materials") + (*which ? "-pair" : "") + ".png");
        HostRun materials =
            Host(std::string("materials") + which + " --screenshot " + png.string(), offscreen);
        ASSERT_EQ(materials.status, 0) << materials.err;
        EXPECT_EQ(FileBytes(png).substr(1, 3), "PNG");
    }
    EXPECT_TRUE(fs::exists(dir / "db" / "vantor.sqlite"));
    EXPECT_EQ(Host("materials --colour", offscreen).status, 2);
}

TEST_F(HostCommandsTest, NewShowAndConvert) {
    HostRun made = Host("new -o " + P("inch.xml") + " --unit 3");
    ASSERT_EQ(made.status, 0) << made.err;
    const std::string text = FileBytes(dir / "inch.xml");
    EXPECT_NE(text.find("<AssemblyRules Version=\"v3.5\" Unit=\"3\">"), std::string::npos);
    EXPECT_EQ(Lines(Host("list").out).size(), 12u);

    HostRun shown = Host("show " + P("inch.xml"));
    ASSERT_EQ(shown.status, 0) << shown.err;
    auto lines = Lines(shown.out);
    EXPECT_EQ(lines[0].substr(0, 15), "Hole Alignment\t");
    EXPECT_EQ(lines[1],
              "  7800\tdouble\top <=\tkind 1\tstatus 1\tcriteria 1 type 0\tvalues 0.019685");
    // Every summary that names a unit names the document's, the slot alignment's too.
    EXPECT_EQ(shown.out.find(" mm"), std::string::npos) << shown.out;
    EXPECT_NE(
        shown.out.find(
            "Slot Alignment\tSlot Alignment\t1\tSlots in mating parts must line up; allowed offset "
            "<= 0.019685 in."),
        std::string::npos)
        << shown.out;

    HostRun converted = Host("convert " + P("inch.xml") + " --unit 1 -o " + P("cm.xml"));
    ASSERT_EQ(converted.status, 0) << converted.err;
    EXPECT_NE(FileBytes(dir / "cm.xml").find("Unit=\"1\""), std::string::npos);
    HostRun shownCm = Host("show " + P("cm.xml"));
    EXPECT_NE(
        shownCm.out.find("  7800\tdouble\top <=\tkind 1\tstatus 1\tcriteria 1 type 0\tvalues 0.05"),
        std::string::npos)
        << shownCm.out;
    EXPECT_NE(shownCm.out.find("must be <= 0.05 cm."), std::string::npos);

    // Reading and writing again changes nothing, summaries included.
    ASSERT_EQ(Host("resave " + P("cm.xml") + " -o " + P("again.xml")).status, 0);
    EXPECT_TRUE(FileBytes(dir / "again.xml") == FileBytes(dir / "cm.xml"));
}

TEST_F(HostCommandsTest, ResaveFindsRulesAtAnyDepthAndKeepsUnknownOnes) {
    const std::string wobble =
        R"(<Rule Name="Wobble Check" Severity="4"><Parameter Type="1"><Value>7.5</Value></Parameter></Rule>)";
    WriteFile(dir / "mixed.xml", R"(<Project><Settings><Old Unit="2">
        <Rule Name="FASTENER ALIGNMENT" Severity="3"><Parameter Type="8019"><Operator>8</Operator><ParameterType>1</ParameterType><Value>0.25</Value></Parameter></Rule>
        )" + wobble + R"(</Old></Settings>
        <Rule Name="Preferred Components"/></Project>)");
    HostRun resaved = Host("resave " + P("mixed.xml") + " -o " + P("out.xml"));
    ASSERT_EQ(resaved.status, 0) << resaved.err;
    EXPECT_NE(resaved.err.find("'Wobble Check'; it is kept as it stands"), std::string::npos)
        << resaved.err;
    const std::string out = FileBytes(dir / "out.xml");
    EXPECT_NE(out.find("<VantorSettings>\n  <AssemblyRules Version=\"v3.5\" Unit=\"2\">"),
              std::string::npos);
    const size_t alignment = out.find("Name=\"FASTENER ALIGNMENT\"");
    const size_t kept = out.find("<Rule Name=\"Wobble Check\" Severity=\"4\">");
    const size_t preferred = out.find("Name=\"Preferred Components\"");
    EXPECT_NE(alignment, std::string::npos);
    EXPECT_NE(preferred, std::string::npos);
    // The unknown rule keeps its place between the others, and all it holds.
    EXPECT_LT(alignment, kept);
    EXPECT_LT(kept, preferred);
    EXPECT_NE(out.find("<Value>7.5</Value>"), std::string::npos);
    EXPECT_NE(out.find("<Value>0.250000</Value>"), std::string::npos);

    // Converting would leave the unknown rule's values in the old unit: nothing is written.
    HostRun refused = Host("convert " + P("mixed.xml") + " --unit 0 -o " + P("mm.xml"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("'Wobble Check'"), std::string::npos) << refused.err;
    EXPECT_FALSE(fs::exists(dir / "mm.xml"));

    // Each rule converts from its own parent's unit: metres to millimetres here.
    WriteFile(dir / "mixed.xml",
              std::regex_replace(FileBytes(dir / "mixed.xml"),
                                 std::regex("<Rule Name=\"Wobble Check\".*?</Rule>"), ""));
    ASSERT_EQ(Host("convert " + P("mixed.xml") + " --unit 0 -o " + P("mm.xml")).status, 0);
    EXPECT_NE(FileBytes(dir / "mm.xml").find("<Value>250.000000</Value>"), std::string::npos);
}

TEST_F(HostCommandsTest, ARuleInsideAnotherTravelsWithItAndIsNeverCopied) {
    // Inside a rule the module does not know: kept with it, once, however often the file is
    // saved again. Inside one it knows: gone with the rest of what the module does not write.
    WriteFile(dir / "nested.xml", R"(<VantorSettings><AssemblyRules Version="v3.5" Unit="0">
        <Rule Name="Wobble Check"><Parameter Type="1"><Value>x<Rule Name="Preferred Components"/></Value></Parameter></Rule>
        <Rule Name="Fastener Alignment"><Parameter Type="8019"><Operator>8</Operator><ParameterType>1</ParameterType>
            <Value>0.25<Rule Name="Hole Alignment"/></Value></Parameter></Rule>
        </AssemblyRules></VantorSettings>)");
    ASSERT_EQ(Host("resave " + P("nested.xml") + " -o " + P("once.xml")).status, 0);
    ASSERT_EQ(Host("resave " + P("once.xml") + " -o " + P("twice.xml")).status, 0);
    const std::string once = FileBytes(dir / "once.xml");
    EXPECT_EQ(once, FileBytes(dir / "twice.xml"));
    size_t rules = 0;
    for (size_t at = once.find("<Rule "); at != std::string::npos; at = once.find("<Rule ", at + 1))
        ++rules;
    EXPECT_EQ(rules, 3u) << once;
    EXPECT_NE(once.find("<Value>x<Rule Name=\"Preferred Components\" />"), std::string::npos)
        << once;
    EXPECT_EQ(once.find("Hole Alignment"), std::string::npos) << once;
}

TEST_F(HostCommandsTest, SwitchValuesBeyondAnyIntegerShowASummary) {
    const std::string hostile = VANTOR_SOURCE_DIR "/tests/data/hostile/";
    HostRun huge = Host("show " + hostile + "settings-huge-2062.xml");
    ASSERT_EQ(huge.status, 0) << huge.err;
    auto lines = Lines(huge.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].substr(0, 32), "Minimum Clearance Between Parts\t");
    EXPECT_EQ(lines[0].substr(lines[0].rfind('\t') + 1),
              "Minimum clearance between parts must be >= 0.1 mm.");
    EXPECT_NE(huge.out.find("values 1e+300 0.1"), std::string::npos) << huge.out;

    HostRun negative = Host("show " + hostile + "settings-huge-2049.xml");
    ASSERT_EQ(negative.status, 0) << negative.err;
    lines = Lines(negative.out);
    ASSERT_FALSE(lines.empty());
    // The general clearance is absent from the file, so only the part pairs are mentioned.
    EXPECT_EQ(lines[0].substr(lines[0].rfind('\t') + 1),
              " Listed part pairs are checked against their own clearance.");
}

TEST_F(HostCommandsTest, BadInputIsReportedAndWritesNothing) {
    WriteFile(dir / "broken.xml", "<VantorSettings>\n  <AssemblyRules>\n</VantorSettings>\n");
    WriteFile(dir / "empty.xml", "");
    WriteFile(dir / "keep.xml", "old contents");
    for (const std::string& command :
         {"show " + P("broken.xml"), "resave " + P("broken.xml") + " -o " + P("keep.xml"),
          "convert " + P("broken.xml") + " --unit 1 -o " + P("keep.xml")}) {
        HostRun run = Host(command);
        EXPECT_EQ(run.status, 2) << command;
        EXPECT_EQ(Lines(run.err).size(), 1u) << run.err;
        EXPECT_NE(run.err.find("broken.xml: line 3, column"), std::string::npos) << run.err;
        EXPECT_TRUE(run.out.empty());
    }
    EXPECT_EQ(FileBytes(dir / "keep.xml"), "old contents");

    HostRun empty = Host("resave " + P("empty.xml") + " -o " + P("new.xml"));
    EXPECT_EQ(empty.status, 2);
    EXPECT_NE(empty.err.find("empty"), std::string::npos);
    HostRun missing = Host("show " + P("missing.xml"));
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.err.find("cannot open"), std::string::npos);
    EXPECT_EQ(Host("convert " + P("keep.xml") + " --unit 99 -o " + P("new.xml")).status, 2);
    EXPECT_EQ(Host("convert " + P("keep.xml") + " -o " + P("new.xml")).status, 2);
    EXPECT_EQ(Host("new").status, 2);
    EXPECT_FALSE(fs::exists(dir / "new.xml"));

    HostRun noModule = Host("list --module-dir " + P("nowhere"));
    EXPECT_EQ(noModule.status, 1);
    EXPECT_NE(noModule.err.find("cannot load"), std::string::npos);
}

TEST_F(HostCommandsTest, ModuleFolderWithADatabaseModule) {
    // Any loadable shared object stands in for the database module here.
    const fs::path modules = dir / "modules";
    fs::create_directories(modules);
    fs::copy_file(VANTOR_BUILD_DIR "/lib/vantor/ZEBAssemblyRules.so",
                  modules / "ZEBAssemblyRules.so");
    fs::copy_file(VANTOR_BUILD_DIR "/share/vantor/res/en/ZEBAssemblyRulesResu.so",
                  modules / "ZEBDatabaseu.so");
    HostRun made = Host("new -o " + P("db.xml") + " --module-dir " + modules.string());
    ASSERT_EQ(made.status, 0) << made.err;
    const std::string text = FileBytes(dir / "db.xml");
    EXPECT_NE(text.find("SelectedDatabase=\"ZEBDatabaseu\" DBCategory=\"Hardware\""),
              std::string::npos);

    // Without it the alignment rules name no database.
    fs::remove(modules / "ZEBDatabaseu.so");
    ASSERT_EQ(Host("new -o " + P("nodb.xml") + " --module-dir " + modules.string()).status, 0);
    EXPECT_NE(FileBytes(dir / "nodb.xml").find("SelectedDatabase=\"\" DBCategory=\"Hardware\""),
              std::string::npos);

    // A database module that does not load is reported, and the rules still come.
    WriteFile(modules / "ZEBDatabaseu.so", "not a library");
    HostRun broken = Host("list --module-dir " + modules.string());
    EXPECT_EQ(broken.status, 0);
    EXPECT_EQ(Lines(broken.out).size(), 12u);
    EXPECT_NE(broken.err.find("warning: cannot load"), std::string::npos) << broken.err;
}

// configure shows a dialog: without a display, or for a rule the file does not hold, it refuses.
TEST_F(HostCommandsTest, ConfigureRefusesWithoutADisplayOrARule) {
    ASSERT_EQ(Host("new -o " + P("rules.xml")).status, 0);
    const std::string before = FileBytes(dir / "rules.xml");
    HostRun noDisplay = Host("configure " + P("rules.xml") + " \"Fastener Clearance\"",
                             "env -u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY");
    EXPECT_EQ(noDisplay.status, 2);
    EXPECT_NE(noDisplay.err.find("display"), std::string::npos) << noDisplay.err;
    HostRun unknown = Host("configure " + P("rules.xml") + " Wobble", "QT_QPA_PLATFORM=offscreen");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("Wobble"), std::string::npos) << unknown.err;
    EXPECT_EQ(Host("configure " + P("missing.xml") + " Wobble", "QT_QPA_PLATFORM=offscreen").status,
              2);
    EXPECT_EQ(FileBytes(dir / "rules.xml"), before);
    EXPECT_NE(Host("--help").out.find("configure FILE RULE"), std::string::npos);
}

TEST_F(HostCommandsTest, OutputKeepsTheModeOfTheFileItReplaces) {
    const auto mode = [](const fs::path& path) {
        return fs::status(path).permissions() & fs::perms::all;
    };
    WriteFile(dir / "private.xml", "old contents");
    fs::permissions(dir / "private.xml", fs::perms::owner_read | fs::perms::owner_write);
    HostRun replaced = Host("new -o " + P("private.xml"), "umask 022;");
    ASSERT_EQ(replaced.status, 0) << replaced.err;
    EXPECT_NE(FileBytes(dir / "private.xml").find("<VantorSettings>"), std::string::npos);
    EXPECT_EQ(mode(dir / "private.xml"), fs::perms::owner_read | fs::perms::owner_write);

    // A new file follows the umask.
    ASSERT_EQ(Host("new -o " + P("fresh.xml"), "umask 027;").status, 0);
    EXPECT_EQ(mode(dir / "fresh.xml"),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    ASSERT_EQ(Host("resave " + P("fresh.xml") + " -o " + P("open.xml"), "umask 002;").status, 0);
    EXPECT_EQ(mode(dir / "open.xml"), fs::perms::owner_read | fs::perms::owner_write |
                                          fs::perms::group_read | fs::perms::group_write |
                                          fs::perms::others_read);

    // The temporary name does not grow with the target's, so the longest names can be written.
    const std::string longName = std::string(246, 'n') + ".xml";
    HostRun named = Host("new -o " + P(longName));
    ASSERT_EQ(named.status, 0) << named.err;
    EXPECT_NE(FileBytes(dir / longName).find("<VantorSettings>"), std::string::npos);
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir)) ++files;
    EXPECT_EQ(files, 5u);  // the four outputs and the captured messages
}

TEST_F(HostCommandsTest, FailedWriteKeepsTheOldFile) {
    WriteFile(dir / "keep.xml", "old contents");
    fs::permissions(dir / "keep.xml", fs::perms::owner_read | fs::perms::owner_write);
    // A one-kilobyte file size limit makes the write fail part way.
    HostRun run = Host("new -o " + P("keep.xml"), "trap '' XFSZ; ulimit -f 1;");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("cannot write"), std::string::npos) << run.err;
    EXPECT_EQ(FileBytes(dir / "keep.xml"), "old contents");
    EXPECT_EQ(fs::status(dir / "keep.xml").permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir)) ++files;
    EXPECT_EQ(files, 2u);  // keep.xml and the captured messages, no temporary left behind

    HostRun noFolder = Host("new -o " + P("no/such/folder/out.xml"));
    EXPECT_EQ(noFolder.status, 1);
    EXPECT_FALSE(noFolder.err.empty());
}
