// The hole, slot and fastener rules on bolted joints built with known sizes, checked the way the
// host checks them.
#include <cmath>

#include "tests/engine/engine_fixture.h"
#include "tests/engine/joint_shapes.h"

using namespace joint_shapes;

namespace {
// The findings as "parts value" lines, sorted, values rounded to three decimals.
std::vector<std::string> Lines(const ZebCheckReport& report) {
    std::vector<std::string> lines;
    std::vector<std::string> pairs = Pairs(report);
    for (const ZebFinding& f : report.findings) {
        std::vector<std::string> names;
        for (const std::wstring& part : f.parts)
            names.push_back(ToUtf8(part.substr(part.rfind(L'/') + 1)));
        std::sort(names.begin(), names.end());
        std::string text;
        for (const std::string& name : names) text += (text.empty() ? "" : "-") + name;
        char value[32];
        std::snprintf(value, sizeof value, " %.3f", f.value ? *f.value : -1.0);
        lines.push_back(text + value);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}
}  // namespace

// Two plates 10 thick, one on the other. Through holes 9: one pair in line, one pair 0.7 apart.
// Blind holes 6 and 6.2 meeting at the joint, 0.3 apart.
TEST_F(EngineTest, HoleAlignmentOptions) {
    TopoDS_Shape lower = Plate(0, 0, 0, 40, 40, 10), upper = Plate(0, 0, 10, 40, 40, 10);
    lower = Drill(lower, gp_Pnt(10, 10, -1), gp::DZ(), 9, 12);
    upper = Drill(upper, gp_Pnt(10, 10, 9), gp::DZ(), 9, 12);
    lower = Drill(lower, gp_Pnt(30, 10, -1), gp::DZ(), 9, 12);
    upper = Drill(upper, gp_Pnt(30.7, 10, 9), gp::DZ(), 9, 12);
    lower = Drill(lower, gp_Pnt(10, 30, 10), -gp::DZ(), 6, 4);
    upper = Drill(upper, gp_Pnt(10.3, 30, 10), gp::DZ(), 6.2, 4);
    const std::string path = Write({Solid(L"lower", lower), Solid(L"upper", upper)});
    CZebRule* rule = Rule(7800);

    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"lower-upper 0.200", "lower-upper 0.700"}));
    EXPECT_TRUE(Mentions(report,
                         L"hole 9 mm of top/lower and hole 9 mm of top/upper are 0.7 mm off axis; "
                         L"allowed <= 0.5 mm"));
    EXPECT_TRUE(Mentions(report, L"differ in diameter by 0.2 mm; allowed <= 0.1 mm"));

    // "<" 0.7 still finds an offset of 0.7, "<=" 0.7 does not.
    Param<double>(rule, 7800).op = ZebOp_Less;
    Set<double>(rule, 7800, {0.7});
    EXPECT_EQ(Lines(Check(path)), (Names{"lower-upper 0.200", "lower-upper 0.700"}));
    Param<double>(rule, 7800).op = ZebOp_LessEqual;
    EXPECT_EQ(Lines(Check(path)), Names{"lower-upper 0.200"});
    Set<double>(rule, 7800, {0.5});

    // Blind holes off: the pair of blind holes is not checked; through holes off likewise.
    Param<double>(rule, 7094).status = false;
    EXPECT_EQ(Lines(Check(path)), Names{"lower-upper 0.700"});
    Param<double>(rule, 7092).status = false;
    EXPECT_TRUE(Check(path).findings.empty());
    Param<double>(rule, 7092).status = true;
    Param<double>(rule, 7094).status = true;

    // In centimetres: 0.05 cm allowed, 0.07 cm found; diameters within 0.03 cm.
    Set<double>(rule, 7800, {0.05});
    Set<double>(rule, 9084, {0.03});
    report = Check(path, 1);
    EXPECT_EQ(Lines(report), Names{"lower-upper 0.070"});
    EXPECT_NEAR(*report.findings[0].limit, 0.05, 1e-9);

    // A ring under the lower plate's in-line hole is a part with a hole 1 smaller; named as a
    // fastener it is a nut, whose bore is the fastener rules' business, not this rule's.
    Set<double>(rule, 7800, {0.5});
    Set<double>(rule, 9084, {0.1});
    const std::string withNut = Write({Solid(L"lower", lower), Solid(L"upper", upper),
                                       Solid(L"nut", Nut(gp_Pnt(10, 10, 0), -gp::DZ(), 8, 6))});
    EXPECT_EQ(Lines(Check(withNut)),
              (Names{"lower-nut 1.000", "lower-upper 0.200", "lower-upper 0.700"}));
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"nut"), ZebDbOk);
    EXPECT_EQ(Lines(Check(withNut)), (Names{"lower-upper 0.200", "lower-upper 0.700"}));
}

// Slot pairs across two plates: one pair 1 apart across and 0.4 along, one pair of different
// widths, one pair crossing at right angles.
TEST_F(EngineTest, SlotAlignmentOptions) {
    TopoDS_Shape lower = Plate(0, 0, 0, 100, 40, 10), upper = Plate(0, 0, 10, 100, 40, 10);
    lower = CutSlot(lower, 20, 20, -1, 6, 20, 12);
    upper = CutSlot(upper, 20.4, 21, 9, 6, 20, 12);
    lower = CutSlot(lower, 50, 20, -1, 6, 20, 12);
    upper = CutSlot(upper, 50, 20, 9, 8, 20, 12);
    lower = CutSlot(lower, 80, 20, -1, 6, 20, 12);
    upper = CutSlot(upper, 80, 20, 9, 6, 20, 12, true);
    const std::string path = Write({Solid(L"lower", lower), Solid(L"upper", upper)});
    CZebRule* rule = Rule(8004);
    ZebTypedParam<double>& ends = Param<double>(rule, 9503);

    // Across the width only the first pair is off; the crossing pair's ends lie 10 apart.
    ends.status = false;
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), Names{"lower-upper 1.000"});
    EXPECT_TRUE(Mentions(report,
                         L"slot 6 x 20 mm of top/lower and slot 6 x 20 mm of top/upper are 1 mm "
                         L"apart across their width"));
    ends.status = true;
    EXPECT_EQ(Lines(Check(path)), (Names{"lower-upper 1.000", "lower-upper 10.000"}));
    Set<double>(rule, 9503, {0.3});
    EXPECT_EQ(Lines(Check(path)),
              (Names{"lower-upper 0.400", "lower-upper 1.000", "lower-upper 10.000"}));
    ends.status = false;

    Set<bool>(rule, 9608, {true});  // widths must match
    EXPECT_EQ(Lines(Check(path)), (Names{"lower-upper 1.000", "lower-upper 2.000"}));
    Set<bool>(rule, 9606, {true});  // and directions
    report = Check(path);
    EXPECT_EQ(Lines(report),
              (Names{"lower-upper 1.000", "lower-upper 2.000", "lower-upper 90.000"}));
    EXPECT_TRUE(Mentions(report, L"run 90 degrees apart"));
}

namespace {
// A bolt M8 through two plates (holes 9) into a nut 6.5 thick; a screw M8 through a cover (hole
// 9) into a tapped hole of a block, 10 deep; a wall 1.5 from the screw's head (13 across); a stud
// M8 tilted 3 degrees through two plates with holes 12, its axis crossing theirs at the joint.
std::vector<SolidToWrite> BoltedJoints() {
    const gp_Dir tilted(std::sin(3 * M_PI / 180), 0, -std::cos(3 * M_PI / 180));
    return {
        Solid(L"lower", Drill(Plate(0, 0, 0, 40, 40, 10), gp_Pnt(20, 20, -1), gp::DZ(), 9, 12)),
        Solid(L"upper", Drill(Plate(0, 0, 10, 40, 40, 10), gp_Pnt(20, 20, 9), gp::DZ(), 9, 12)),
        Solid(L"bolt", Bolt(gp_Pnt(20, 20, 25.6), -gp::DZ(), 8, 30, 13, 5.6)),
        Solid(L"nut", Nut(gp_Pnt(20, 20, 0), -gp::DZ(), 8, 6.5)),
        Solid(L"block", Drill(Plate(60, 0, 0, 40, 40, 20), gp_Pnt(80, 20, 20), -gp::DZ(), 6.8, 15)),
        Solid(L"cover", Drill(Plate(60, 0, 20, 40, 40, 10), gp_Pnt(80, 20, 19), gp::DZ(), 9, 12)),
        Solid(L"screw", Bolt(gp_Pnt(80, 20, 35.6), -gp::DZ(), 8, 20, 13, 5.6)),
        Solid(L"wall", Plate(88, 0, 30, 10, 40, 10)),
        Solid(L"base", Drill(Plate(0, 60, 0, 40, 40, 10), gp_Pnt(20, 80, -1), gp::DZ(), 12, 12)),
        Solid(L"top", Drill(Plate(0, 60, 10, 40, 40, 10), gp_Pnt(20, 80, 9), gp::DZ(), 12, 12)),
        Solid(L"stud",
              Bolt(gp_Pnt(20, 80, 10).Translated(gp_Vec(tilted) * -15.6), tilted, 8, 25, 13, 5.6)),
    };
}
}  // namespace

TEST_F(EngineTest, FastenerClearancePlayAndHeadSpace) {
    const std::string path = Write(BoltedJoints());
    // The nut is a fastener by the database's names, so the bolt ends in it rather than passing it.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"Nut"), ZebDbOk);
    CZebRule* rule = Rule(2052);
    // Play 0.5 in each hole: at least 0.6 fails for the bolt's two holes, 0.4 holds for the screw.
    // The bolt's head has nothing near; the screw's wall is 1.5 away, less than 2.
    SetRows(rule, 2052, {{L"BOLT.prt", L"0.6", L""}, {L"screw", L"0.4", L""}});
    SetRows(rule, 9450, {{L"BOLT.prt", L"1", L""}, {L"screw", L"2", L""}});
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"bolt-lower 0.500", "bolt-upper 0.500", "screw 1.500"}));
    EXPECT_TRUE(Mentions(report,
                         L"M8 bolt (top/bolt) has a radial play of 0.5 mm in hole 9 mm of "
                         L"top/upper; allowed >= 0.6 mm"));
    EXPECT_TRUE(Mentions(report, L"M8 screw (top/screw) has 1.5 mm of free space around its head"));

    // Ranges: play between 0.3 and 0.4 is broken at its upper end; free space between 1 and 2
    // holds. Range tables keep an even number of rows, as the dialog stores them.
    Param<ZebRow>(rule, 2052).op = ZebOp_Range;
    Param<ZebRow>(rule, 9450).op = ZebOp_Range;
    SetRows(rule, 2052, {{L"bolt", L"0.3", L"0.4"}, {L"", L"", L""}});
    SetRows(rule, 9450, {{L"screw", L"1", L"2"}, {L"", L"", L""}});
    report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"bolt-lower 0.500", "bolt-upper 0.500"}));
    EXPECT_NEAR(*report.findings[0].limit, 0.4, 1e-9);
    // A fastener without a row is not checked.
    SetRows(rule, 2052, {{L"washer", L"0.3", L"0.4"}, {L"", L"", L""}});
    EXPECT_TRUE(Check(path).findings.empty());
}

TEST_F(EngineTest, FastenerEngagementLength) {
    const std::string path = Write(BoltedJoints());
    CZebRule* rule = Rule(2053);
    // A nut not named as a fastener is a part like any other: the bolt passes its bore.
    SetRows(rule, 2053, {{L"bolt", L"8"}});
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), Names{"bolt 0.000"});
    EXPECT_TRUE(Mentions(report, L"M8 bolt (top/bolt) ends in no nut or tapped hole"));

    // Named, it ends the bolt, which engages it over 6.5; the screw its tapped hole over 10.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"NUT.prt"), ZebDbOk);
    SetRows(rule, 2053, {{L"bolt", L"8"}, {L"screw", L"8"}});
    report = Check(path);
    EXPECT_EQ(Lines(report), Names{"bolt-nut 6.500"});
    EXPECT_TRUE(Mentions(
        report, L"M8 bolt (top/bolt) engages its nut top/nut over 6.5 mm; allowed >= 8 mm"));
    SetRows(rule, 2053, {{L"bolt", L"6.5"}, {L"screw", L"12"}});
    report = Check(path);
    EXPECT_EQ(Lines(report), Names{"block-screw 10.000"});
    EXPECT_TRUE(Mentions(report, L"engages the tapped hole 6.8 mm of top/block over 10 mm"));
}

TEST_F(EngineTest, FastenerAlignmentOffsetAndTilt) {
    const std::string path = Write(BoltedJoints());
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    for (const wchar_t* name : {L"bolt", L"screw", L"stud"})
        ASSERT_EQ(db->AddFastenerName(name), ZebDbOk);
    CZebRule* rule = Rule(8019);
    // "=" 0: the bolt and the screw lie on their holes' axes; the stud leaves each of its holes'
    // axes by 10 sin 3 degrees = 0.523 at the far end.
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"base-stud 0.523", "stud-top 0.523"}));
    EXPECT_TRUE(Mentions(report, L"M8 stud (top/stud) is 0.523"));
    Param<double>(rule, 8019).op = ZebOp_LessEqual;
    Set<double>(rule, 8019, {0.6});
    EXPECT_TRUE(Check(path).findings.empty());
    // Parallel axes asked for: the stud is tilted 3 degrees against both holes.
    Param<bool>(rule, 8076).status = true;
    report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"base-stud 3.000", "stud-top 3.000"}));
    EXPECT_TRUE(Mentions(report, L"is tilted 3 degrees against hole 12 mm of top/top"));
}

// The shared assembly with bolts and nuts named in the tables: every bolt passes the bracket and
// the plate without play and engages its own nut over 3.
TEST_F(EngineTest, SharedAssemblyFasteners) {
    const std::string shared = SharedAssembly();
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"nut"), ZebDbOk);
    CZebRule* clearance = Rule(2052);
    SetRows(clearance, 2052, {{L"bolt", L"0.1", L""}});
    CZebRule* engagement = Rule(2053);
    SetRows(engagement, 2053, {{L"bolt", L"5"}});
    const ZebCheckReport report = Check(shared);
    size_t play = 0, engaged = 0;
    for (const ZebFinding& f : report.findings) {
        ASSERT_EQ(f.parts.size(), 2u);
        const std::wstring joint = f.parts[0].substr(0, f.parts[0].rfind(L'/'));
        if (f.rule == clearance->Name) {
            ++play;
            EXPECT_NEAR(*f.value, 0.0, 1e-4);
            EXPECT_TRUE(f.parts[1] == L"as1/plate" || f.parts[1].ends_with(L"/l-bracket"))
                << ToUtf8(f.message);
        } else {
            ++engaged;
            EXPECT_NEAR(*f.value, 3.0, 1e-4);
            EXPECT_EQ(f.parts[1], joint + L"/nut");
        }
    }
    // Six bolts, each in two holes and one nut.
    EXPECT_EQ(play, 12u);
    EXPECT_EQ(engaged, 6u);
}

TEST_F(EngineTest, FastenerAccessibility) {
    const std::string path = Write(BoltedJoints());
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    for (const wchar_t* name : {L"bolt", L"screw", L"stud"})
        ASSERT_EQ(db->AddFastenerName(name), ZebDbOk);
    CZebRule* rule = Rule(6080);
    // 1.2 x 13 across: the stud's tilted head reaches into its plate, so a tool would too; the
    // wall 1.5 from the screw's head is outside 0.1 x 13 / 2 + 6.5 = 7.8.
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), Names{"stud-top 0.000"});
    EXPECT_NEAR(*report.findings[0].limit, 0.2 * 13 / 2, 1e-9);
    // The second tool, 2.5 x 13 across, switched on: the wall is in its way.
    Set<double>(rule, 6093, {1.0});
    report = Check(path);
    EXPECT_EQ(Lines(report), (Names{"screw-wall 1.500", "stud-top 0.000", "stud-top 0.000"}));
    EXPECT_TRUE(Mentions(report,
                         L"top/wall lies 1.5 mm from M8 screw (top/screw), inside the space its "
                         L"tool needs: 2.5 x the head's 13 mm across"));
    // A smaller first tool and the second off: the stud's head alone.
    Set<double>(rule, 6093, {0.0});
    Set<double>(rule, 6080, {1.1});
    EXPECT_EQ(Lines(Check(path)), Names{"stud-top 0.000"});
}

// Loose fasteners of known sizes (length from the top of the head to the tip): a, b, c M8 with
// heads 13 of steel, 35.6, 37.6 and 45.6 long; d M10 with a head 16, 37 long; e M8 with a head 15,
// 37.6 long; f like a but of brass; b ends in a nut.
TEST_F(EngineTest, BoltAndScrewRationalization) {
    const auto bolt = [](double x, double shank, double length, double head) {
        return Bolt(gp_Pnt(x, 0, 60), -gp::DZ(), shank, length, head, 0.7 * shank);
    };
    std::vector<SolidToWrite> solids{
        {L"a", bolt(0, 8, 30, 13), L"", L"Steel"},
        {L"b", bolt(30, 8, 32, 13), L"", L"Steel"},
        {L"c", bolt(60, 8, 40, 13), L"", L"steel"},
        {L"d", bolt(90, 10, 30, 16), L"", L"Steel"},
        {L"e", bolt(120, 8, 32, 15), L"", L"Steel"},
        {L"f", bolt(150, 8, 30, 13), L"", L"Brass"},
        {L"nut", Nut(gp_Pnt(30, 0, 34), -gp::DZ(), 8, 6), L"", L"Steel"}};
    const std::string path = Write(solids);
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e", L"f", L"nut"})
        ASSERT_EQ(db->AddFastenerName(name), ZebDbOk);
    CZebRule* rule = Rule(9026);
    // Defaults: same head and material, lengths at least 4 apart, diameters at least 2 apart.
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Lines(report), Names{"a-b 2.000"});
    EXPECT_TRUE(
        Mentions(report,
                 L"bolts and screws with heads 13 mm across of steel of 8 mm diameter use the "
                 L"lengths 35.6 mm and 37.6 mm, 2 mm apart: one would do; allowed >= 4 mm"));
    // Any material: f joins a.
    Param<bool>(rule, 9025).status = false;
    EXPECT_EQ(Lines(Check(path)), Names{"a-b-f 2.000"});
    Param<bool>(rule, 9025).status = true;
    // Any head: e joins b; M8 and M10 are 2 apart, which "> 2" does not allow.
    Param<bool>(rule, 9024).status = false;
    EXPECT_EQ(Lines(Check(path)), Names{"a-b-e 2.000"});
    Param<double>(rule, 9027).op = ZebOp_Greater;
    EXPECT_EQ(Lines(Check(path)), (Names{"a-b-c-d-e 2.000", "a-b-e 2.000"}));
    // Length steps switched off leave the diameters.
    Param<double>(rule, 9026).criteriaStatus = false;
    EXPECT_EQ(Lines(Check(path)), Names{"a-b-c-d-e 2.000"});
    Param<double>(rule, 9026).criteriaStatus = true;
    Param<double>(rule, 9027).criteriaStatus = false;
    Param<bool>(rule, 9024).status = true;
    // Bolts apart from screws: b, the one bolt, no longer meets a.
    Param<bool>(rule, 9603).status = false;
    EXPECT_TRUE(Check(path).findings.empty());
}
