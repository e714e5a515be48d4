// vantor-rules check as a user runs it: exit statuses, reports, and bad input.
#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <fstream>

#include "engine/step_writer.h"
#include "tests/engine/shared_assembly.h"
#include "tests/support/file_bytes.h"
#include "tests/support/host_run.h"
#include "tests/support/scoped_temp_dir.h"

namespace {

class CheckCommandTest : public ::testing::Test {
protected:
    void SetUp() override {
        settings = (dir.Path() / "s.xml").string();
        ASSERT_EQ(Run("new -o " + settings).status, 0);
    }
    HostRun Run(const std::string& args) {
        return RunHost(args, dir.Path() / "err.txt", "VANTOR_DATABASE_DIR=" + dir.Path().string());
    }
    std::string File(const char* name, const std::string& bytes) {
        const std::string path = (dir.Path() / name).string();
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    std::string Boxes(const char* name, std::vector<gp_Pnt> corners) {
        std::vector<SolidToWrite> solids;
        for (size_t i = 0; i < corners.size(); ++i)
            solids.push_back({L"box" + std::to_wstring(i),
                              BRepPrimAPI_MakeBox(corners[i], 10, 10, 10).Shape(), L"", L""});
        const std::string path = (dir.Path() / name).string();
        std::string error;
        EXPECT_TRUE(WriteStepAssembly(path, L"top", solids, "MM", error)) << error;
        return path;
    }

    ScopedTempDir dir{"check_command"};
    std::string settings;
};
}  // namespace

TEST_F(CheckCommandTest, ExitStatusAndReports) {
    const std::string clean = Boxes("clean.stp", {gp_Pnt(0, 0, 0), gp_Pnt(20, 0, 0)});
    HostRun run = Run("check " + settings + " " + clean);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("2 parts, 0 findings"), std::string::npos) << run.err;

    const std::string overlapping = Boxes("overlap.stp", {gp_Pnt(0, 0, 0), gp_Pnt(5, 0, 0)});
    run = Run("check " + settings + " " + overlapping +
              " --rule 'interference detection' --format json");
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_NE(run.out.find("\"parts\": 2"), std::string::npos) << run.out;
    EXPECT_NE(
        run.out.find("\"parts\": [\"top/box0\", \"top/box1\"], \"value\": 500, \"limit\": null"),
        std::string::npos)
        << run.out;

    const std::string html = (dir.Path() / "r.html").string();
    run = Run("check " + settings + " " + overlapping + " --format html -o " + html);
    EXPECT_EQ(run.status, 1);
    const std::string page = FileBytes(html);
    EXPECT_NE(page.find("<h2>Interference Detection &mdash; Critical (1)</h2>"), std::string::npos)
        << page;
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_NE(page.find("<h2>Parts checked (2)</h2>"), std::string::npos) << page;
    EXPECT_NE(page.find("<tr><td>top/box1</td><td>box1</td><td>no material</td></tr>"),
              std::string::npos)
        << page;

    run = Run("check " + settings + " " + overlapping + " --rule nosuchrule");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("no rule 'nosuchrule'"), std::string::npos) << run.err;
    EXPECT_EQ(Run("check " + settings + " " + overlapping + " --format xml").status, 2);
}

TEST_F(CheckCommandTest, BadAssembliesGetAMessageAndStatus2) {
    const std::string shared = FileBytes(SharedAssembly());
    ASSERT_GT(shared.size(), 1000u);
    // Lengths in furlongs, a unit the reader has no size for.
    std::string unknownUnit;
    const std::string millimetre = "( LENGTH_UNIT() NAMED_UNIT(*) SI_UNIT(.MILLI.,.METRE.) )";
    const std::string furlong =
        "( CONVERSION_BASED_UNIT('FURLONG',#99001) LENGTH_UNIT() NAMED_UNIT(#99002) )";
    size_t from = 0;
    for (size_t at; (at = shared.find(millimetre, from)) != std::string::npos;
         from = at + millimetre.size())
        unknownUnit += shared.substr(from, at - from) + furlong;
    unknownUnit += shared.substr(from);
    const size_t end = unknownUnit.rfind("ENDSEC;");
    ASSERT_NE(end, std::string::npos);
    unknownUnit.insert(end,
                       "#99001 = LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(201.168),#99003);\n"
                       "#99002 = DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.);\n"
                       "#99003 = ( LENGTH_UNIT() NAMED_UNIT(*) SI_UNIT($,.METRE.) );\n");
    const struct {
        std::string path;
        const char* says;
    } cases[] = {
        {File("text.stp", "just some words\n"), "not a readable STEP file"},
        {File("half.stp", shared.substr(0, shared.size() / 2)), "STEP"},
        {File("empty.stp", ""), "not a readable STEP file"},
        {File("unit.stp", unknownUnit), "length unit 'FURLONG'"},
        {Boxes("one.stp", {gp_Pnt(0, 0, 0)}), "one part"},
        {(dir.Path() / "missing.stp").string(), "no such file"},
        // A file on which the kernel's reader dereferences a null point.
        {VANTOR_SOURCE_DIR "/tests/data/engine/reader_stops.stp", "the STEP reader stopped on it"},
    };
    for (const auto& c : cases) {
        const HostRun run = Run("check " + settings + " " + c.path);
        EXPECT_EQ(run.status, 2) << c.path << ": " << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << c.path << ": " << run.err;
    }
}

// The recommended thread pairs of a settings file, with the shared assembly's bolts and nuts named
// in the database: its six connections, M10 bolts in M10 nuts by their shanks and bores, pass
// M10 / M10 and are reported against M8 / M8.
TEST_F(CheckCommandTest, RecommendedThreadTypes) {
    for (const char* name : {"bolt", "nut"})
        ASSERT_EQ(Run(std::string("db fasteners add ") + name).status, 0);
    const std::string text = FileBytes(settings);
    const std::string pairs = "<Parameter Name=\"\" Type=\"7072\" Status=\"1\">";
    const size_t at = text.find(pairs);
    ASSERT_NE(at, std::string::npos);
    const auto withPair = [&](const char* first, const char* second) {
        std::string changed = text;
        changed.insert(at + pairs.size(), std::string("<Value Attribute1=\"") + first +
                                              "\" Attribute2=\"" + second + "\"/>");
        return File("threads.xml", changed);
    };
    const std::string rule = " --rule 'Recommended Thread Types in Connection'";
    HostRun run = Run("check " + withPair("M10", "m10") + " " + SharedAssembly() + rule);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.err.find("18 parts, 0 findings"), std::string::npos) << run.err;

    // The report names every part the check read, with its path.
    const std::string html = (dir.Path() / "shared.html").string();
    run = Run("check " + withPair("M10", "m10") + " " + SharedAssembly() + rule +
              " --format html -o " + html);
    const std::string page = FileBytes(html);
    size_t rows = 0;
    for (size_t at = 0; (at = page.find("<tr><td>as1/", at)) != std::string::npos; ++at) ++rows;
    EXPECT_EQ(rows, 18u) << page;
    EXPECT_NE(page.find("<tr><td>as1/l-bracket-assembly[2]/nut-bolt-assembly[3]/nut</td>"),
              std::string::npos)
        << page;

    run = Run("check " + withPair("M8", "M8") + " " + SharedAssembly() + rule);
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_NE(run.err.find("18 parts, 6 findings"), std::string::npos) << run.err;
    EXPECT_NE(run.out.find("M10x1.5 bolt (as1/l-bracket-assembly[1]/nut-bolt-assembly[1]/bolt) in "
                           "M10x1.5 nut (as1/l-bracket-assembly[1]/nut-bolt-assembly[1]/nut): not "
                           "a recommended pair of threads; recommended M8 / M8"),
              std::string::npos)
        << run.out;
}
