// Thread designations read from names and bores, and the recommended thread pairs checked on
// bolted joints built with known sizes (the shared assembly's: check_command_test.cpp).
#include "engine/thread_designation.h"
#include "tests/engine/engine_fixture.h"
#include "tests/engine/joint_shapes.h"

using namespace joint_shapes;

TEST(ThreadDesignation, NamesAndBores) {
    const auto named = [](const wchar_t* name) { return ThreadInName(name).Text(); };
    EXPECT_EQ(named(L"Bolt_m8x1"), L"M8x1");
    EXPECT_EQ(named(L"nut M8 X 1.25"), L"M8x1.25");
    // A number after the size is a length unless it is below half the size.
    EXPECT_EQ(named(L"ISO 4017 M8x40"), L"M8");
    EXPECT_EQ(named(L"ISO 4762 M10x1.25x30"), L"M10x1.25");
    EXPECT_EQ(named(L"pin-M1.6"), L"M1.6");
    // An "M" inside a word or without a number is none.
    EXPECT_FALSE(ThreadInName(L"AM8 mount"));
    EXPECT_FALSE(ThreadInName(L"Mx8"));
    EXPECT_EQ(named(L"AM8 M6"), L"M6");

    EXPECT_EQ(ReadThread(L" m8 x 1.25 ").Text(), L"M8x1.25");
    EXPECT_FALSE(ReadThread(L"M8 bolt"));
    EXPECT_FALSE(ReadThread(L"UNC"));
    EXPECT_TRUE(ReadThread(L"M8").Fits(ReadThread(L"M8x1")));
    EXPECT_FALSE(ReadThread(L"M8x1.25").Fits(ReadThread(L"M8x1")));
    EXPECT_FALSE(ReadThread(L"M8").Fits(ReadThread(L"M10")));

    // Nominal, tap-drill (8 - 1.25) and minor (8 - 1.0825 x 1.25) bores of M8.
    EXPECT_EQ(InternalThreadSize(8.0, 0), 8.0);
    EXPECT_EQ(InternalThreadSize(6.8, 0), 8.0);
    EXPECT_EQ(InternalThreadSize(6.65, 0), 8.0);
    EXPECT_EQ(InternalThreadSize(7.3, 8), 0.0);
    // 5 is M5 drawn at its nominal size or M6 at its tap drill: what screws into it decides.
    EXPECT_EQ(InternalThreadSize(5.0, 0), 5.0);
    EXPECT_EQ(InternalThreadSize(5.0, 6), 6.0);
    EXPECT_EQ(InternalThreadSize(5.0, 8), 5.0);
}

namespace {
// Four connections, each bolt 8 across: a bolt through two plates (holes 9) into a nut with a
// bore 8; a screw through a cover into a tapped hole 6.8 of a block; a stud through two plates
// into a nut with a bore 10; and, off any metric size, a bolt 7 across into a nut with a bore 7.
std::vector<SolidToWrite> ThreadJoints(const wchar_t* bolt = L"bolt", const wchar_t* nut = L"nut",
                                       const wchar_t* stud = L"stud") {
    const auto plate = [](double y, double z) {
        return Drill(Plate(0, y, z, 40, 40, 10), gp_Pnt(20, y + 20, z - 1), gp::DZ(), 9, 12);
    };
    return {
        Solid(L"lower", plate(0, 0)),
        Solid(L"upper", plate(0, 10)),
        Solid(bolt, Bolt(gp_Pnt(20, 20, 25.6), -gp::DZ(), 8, 30, 13, 5.6)),
        Solid(nut, Nut(gp_Pnt(20, 20, 0), -gp::DZ(), 8, 6.5)),
        Solid(L"block", Drill(Plate(60, 0, 0, 40, 40, 20), gp_Pnt(80, 20, 20), -gp::DZ(), 6.8, 15)),
        Solid(L"cover", Drill(Plate(60, 0, 20, 40, 40, 10), gp_Pnt(80, 20, 19), gp::DZ(), 9, 12)),
        Solid(L"screw", Bolt(gp_Pnt(80, 20, 35.6), -gp::DZ(), 8, 20, 13, 5.6)),
        Solid(L"base", plate(60, 0)),
        Solid(L"top", plate(60, 10)),
        Solid(stud, Bolt(gp_Pnt(20, 80, 25.6), -gp::DZ(), 8, 30, 13, 5.6)),
        Solid(L"nut10", Nut(gp_Pnt(20, 80, 0), -gp::DZ(), 10, 6.5)),
        Solid(L"odd", Bolt(gp_Pnt(20, 140, 20), -gp::DZ(), 7, 20)),
        Solid(L"oddnut", Nut(gp_Pnt(20, 140, 10), -gp::DZ(), 7, 6.5)),
    };
}

void NameFasteners(std::initializer_list<const wchar_t*> names) {
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    for (const wchar_t* name : names) ASSERT_EQ(db->AddFastenerName(name), ZebDbOk);
}

constexpr long kPairs = 7072, kSizes = 9148;
}  // namespace

TEST_F(EngineTest, RecommendedThreadPairs) {
    const std::string path = Write(ThreadJoints());
    NameFasteners({L"bolt", L"nut", L"screw", L"stud", L"nut10", L"odd", L"oddnut"});
    CZebRule* rule = Rule(kPairs);
    // No pair recommended: the rule asks nothing, not even of the odd bolt.
    ZebCheckReport report = Check(path);
    EXPECT_TRUE(report.findings.empty());
    EXPECT_EQ(report.rules, std::vector<std::wstring>{rule->Name});

    // Sizes from the geometry, pitches from the thread size database. A half-filled row asks
    // nothing.
    SetRows(rule, kPairs, {{L"M8", L"M8"}, {L"M10", L""}});
    report = Check(path);
    EXPECT_EQ(Pairs(report), (Names{"nut10-stud", "odd-oddnut"}));
    EXPECT_TRUE(Mentions(report,
                         L"M8x1.25 stud (top/stud) in M10x1.5 nut10 (top/nut10): not a recommended "
                         L"pair of threads; recommended M8 / M8"));
    EXPECT_TRUE(Mentions(report,
                         L"odd (top/odd) in oddnut (top/oddnut): neither the names of top/odd nor "
                         L"its 7 mm shank give a metric thread; neither the names of top/oddnut "
                         L"nor its 7 mm bore give a metric thread"));
    for (const ZebFinding& f : report.findings) EXPECT_FALSE(f.value);

    // Either order, any letter case, spaces: the stud and its nut pass.
    SetRows(rule, kPairs, {{L"m8", L"m8"}, {L"M8X1.25", L"m10 x 1.5"}});
    EXPECT_EQ(Pairs(Check(path)), Names{"odd-oddnut"});

    // The tapped hole 6.8 is an M8 thread. A finding lists three pairs and counts the rest; a
    // type that is no metric designation fits no thread.
    SetRows(
        rule, kPairs,
        {{L"M10", L"M8"}, {L"M12", L"M12"}, {L"M16", L"M16"}, {L"M20", L"M20"}, {L"UNC", L"M8"}});
    report = Check(path);
    EXPECT_EQ(Pairs(report), (Names{"block-screw", "bolt-nut", "odd-oddnut"}));
    EXPECT_TRUE(Mentions(report,
                         L"M8x1.25 screw (top/screw) in M8x1.25 tapped hole 6.8 mm of top/block: "
                         L"not a recommended pair of threads; recommended M10 / M8, M12 / M12, "
                         L"M16 / M16 and 2 more"));
}

// The rule's thread sizes, when switched on, complete a bare size before the database does.
TEST_F(EngineTest, RecommendedThreadPitches) {
    const std::string path = Write(ThreadJoints());
    NameFasteners({L"bolt", L"nut", L"screw", L"stud", L"nut10"});
    CZebRule* rule = Rule(kPairs);
    SetRows(rule, kPairs, {{L"M8x1.25", L"M8x1.25"}, {L"M10", L"M8"}});
    EXPECT_TRUE(Check(path).findings.empty());

    // Fine M8 first; only once the table is switched on.
    SetRows(rule, kSizes, {{L"M8", L"1"}, {L"M8", L"1.25"}, {L"M10", L"fine"}});
    EXPECT_TRUE(Check(path).findings.empty());
    Param<ZebRow>(rule, kSizes).criteriaStatus = true;
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Pairs(report), (Names{"block-screw", "bolt-nut"}));
    EXPECT_TRUE(Mentions(report, L"M8x1 bolt (top/bolt) in M8x1 nut (top/nut): not a recommended"));
    EXPECT_TRUE(Mentions(report, L"M8x1 screw (top/screw) in M8x1 tapped hole 6.8 mm"));

    // A size without "M" and the coarse pitch named.
    SetRows(rule, kSizes, {{L"8", L"coarse"}, {L"M8", L"1"}});
    EXPECT_TRUE(Check(path).findings.empty());
}

// Sizes and pitches in the names decide over the shank, the bore and the tables.
TEST_F(EngineTest, RecommendedThreadsFromNames) {
    const std::string path = Write(ThreadJoints(L"bolt_m8x1", L"nut-M8", L"stud-M10"));
    NameFasteners({L"bolt_m8x1", L"nut-M8", L"screw", L"stud-M10", L"nut10"});
    CZebRule* rule = Rule(kPairs);
    SetRows(rule, kPairs, {{L"M8x1.25", L"M8x1.25"}, {L"M10", L"M10"}});
    const ZebCheckReport report = Check(path);
    EXPECT_EQ(Pairs(report), Names{"bolt_m8x1-nut-M8"});
    EXPECT_TRUE(Mentions(report, L"M8x1 bolt_m8x1 (top/bolt_m8x1) in M8x1.25 nut-M8 (top/nut-M8)"));
}
