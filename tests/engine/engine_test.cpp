// The engine on assemblies written here with answers worked out by hand, and on the shared real
// assembly. Every check goes the way the host goes: settings through the module's entry points,
// the engine loaded from its library.
#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <set>
#include <tuple>

#include "engine/assembly_image.h"
#include "tests/engine/engine_fixture.h"
#include "tests/engine/shared_assembly.h"

namespace {
// a (0..10)^3; b overlaps a by 2 x 10 x 10 = 200; c touches a on its face y = 10 and b along a
// strip; d sits 0.5 above a and b.
std::vector<SolidToWrite> FourBoxes(const std::wstring& subOfAB = L"") {
    return {{L"a", Box(0, 0, 0), subOfAB, L"Steel"},
            {L"b", Box(8, 0, 0), subOfAB, L"Steel"},
            {L"c", Box(0, 10, 0), L"", L"Aluminium"},
            {L"d", Box(0, 0, 10.5), L"", L"Copper"}};
}
}  // namespace

TEST_F(EngineTest, ReadsPathsNamesMaterialsAndUnits) {
    std::vector<SolidToWrite> solids = FourBoxes(L"sub");
    solids.push_back({L"a", Box(50, 0, 0), L"", L""});
    Assembly read;
    std::string error;
    ASSERT_TRUE(ReadStepAssembly(Write(solids, "M"), read, error)) << error;
    std::vector<std::string> paths;
    for (const AssemblyPart& p : read.parts)
        paths.push_back(ToUtf8(p.path) + "|" + ToUtf8(p.subassembly) + "|" + ToUtf8(p.material));
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, (Names{"top/a||", "top/c||Aluminium", "top/d||Copper",
                            "top/sub/a|top/sub|Steel", "top/sub/b|top/sub|Steel"}));
    // Written in metres, read back in the kernel's millimetres.
    double x0, y0, z0, x1, y1, z1;
    read.parts[0].box.Get(x0, y0, z0, x1, y1, z1);
    EXPECT_NEAR(z1 - z0, 10.0, 1e-3);

    AssemblyPart part;
    part.product = L"Housing";
    EXPECT_TRUE(PartMatches(part, L"housing.PRT"));
    EXPECT_TRUE(PartMatches(part, L"HOUSING.step"));
    EXPECT_FALSE(PartMatches(part, L"housing2"));
    part.product = L"housing.asm";
    part.instance = L"cover:1";
    EXPECT_TRUE(PartMatches(part, L"Housing.stp"));
    EXPECT_TRUE(PartMatches(part, L"COVER:1"));
    EXPECT_FALSE(PartMatches(part, L""));
}

// The reader program hands what it read over as an image, which gives back the same parts with
// the same names, materials, colours, placements and shared shapes as reading the file here. An
// image cut short, or a file that is none, is refused and leaves the assembly as it was.
TEST_F(EngineTest, TheReaderProgramHandsOverWhatItRead) {
    const std::string shared = SharedAssembly();
    Assembly here, imaged, handed;
    std::string error;
    ASSERT_TRUE(ReadStepAssemblyHere(shared, here, error)) << error;
    const std::string image = (dir.Path() / "shared.image").string();
    const std::string reader = VANTOR_BUILD_DIR "/lib/vantor/vantor-step-reader";
    ASSERT_EQ(std::system((reader + " " + shared + " " + image).c_str()), 0);
    ASSERT_TRUE(ReadAssemblyImage(image, imaged));
    ASSERT_EQ(imaged.parts.size(), here.parts.size());
    std::set<const void*> imagedShapes, hereShapes;
    for (size_t i = 0; i < here.parts.size(); ++i) {
        const AssemblyPart &a = imaged.parts[i], &b = here.parts[i];
        EXPECT_EQ(std::tie(a.path, a.product, a.instance, a.subassembly, a.material, a.colour),
                  std::tie(b.path, b.product, b.instance, b.subassembly, b.material, b.colour));
        double a0[6], b0[6];
        a.box.Get(a0[0], a0[1], a0[2], a0[3], a0[4], a0[5]);
        b.box.Get(b0[0], b0[1], b0[2], b0[3], b0[4], b0[5]);
        for (int k = 0; k < 6; ++k) EXPECT_NEAR(a0[k], b0[k], 1e-9) << ToUtf8(a.path);
        GProp_GProps va, vb;
        BRepGProp::VolumeProperties(a.shape, va);
        BRepGProp::VolumeProperties(b.shape, vb);
        EXPECT_NEAR(va.Mass(), vb.Mass(), 1e-6 * vb.Mass()) << ToUtf8(a.path);
        EXPECT_TRUE(va.CentreOfMass().IsEqual(vb.CentreOfMass(), 1e-6)) << ToUtf8(a.path);
        imagedShapes.insert(a.shape.TShape().get());
        hereShapes.insert(b.shape.TShape().get());
    }
    // The three bolts and three nuts are instances of one bolt and one nut.
    EXPECT_LT(hereShapes.size(), here.parts.size());
    EXPECT_EQ(imagedShapes.size(), hereShapes.size());
    // The engine's reading goes through the program and its image to the same parts.
    ASSERT_TRUE(ReadStepAssembly(shared, handed, error)) << error;
    EXPECT_EQ(handed.file, here.file);
    ASSERT_EQ(handed.parts.size(), here.parts.size());
    for (size_t i = 0; i < here.parts.size(); ++i)
        EXPECT_EQ(handed.parts[i].path, here.parts[i].path);

    const auto whole = std::filesystem::file_size(image);
    Assembly kept;
    kept.parts.resize(1);
    for (const auto size : {whole / 2, whole - 1, uintmax_t(10)}) {
        std::filesystem::resize_file(image, size);
        EXPECT_FALSE(ReadAssemblyImage(image, kept)) << size;
        EXPECT_EQ(kept.parts.size(), 1u);
    }
    EXPECT_FALSE(ReadAssemblyImage(shared, kept));
    EXPECT_EQ(kept.parts.size(), 1u);
}

TEST_F(EngineTest, InterferenceOptions) {
    const std::string path = Write(FourBoxes());
    CZebRule* rule = Rule(6067);
    ZebCheckReport report = Check(path);
    ASSERT_EQ(Pairs(report), Names{"a-b"});
    EXPECT_NEAR(*report.findings[0].value, 200.0, 1e-6);
    EXPECT_FALSE(report.findings[0].limit);

    Set<bool>(rule, 6070, {true});  // touching counts
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-b", "a-c", "b-c"}));
    Set<bool>(rule, 6070, {false});

    // The volume limit: "<" 200 keeps an overlap of exactly 200, "<=" drops it.
    ZebTypedParam<double>& volume = Param<double>(rule, 8978);
    volume.status = true;
    volume.op = ZebOp_Less;
    Set<double>(rule, 8978, {200.0});
    report = Check(path);
    ASSERT_EQ(Pairs(report), Names{"a-b"});
    EXPECT_NEAR(*report.findings[0].limit, 200.0, 1e-9);
    volume.op = ZebOp_LessEqual;
    EXPECT_TRUE(Check(path).findings.empty());
    // In centimetres the same limit is 0.2 cm^3, the overlap 0.2 cm^3.
    Set<double>(rule, 8978, {0.19});
    report = Check(path, 1);
    ASSERT_EQ(Pairs(report), Names{"a-b"});
    EXPECT_NEAR(*report.findings[0].value, 0.2, 1e-9);
    volume.status = false;

    // Listed pairs, names with or without extension; a pair that does not touch gives nothing.
    Set<bool>(rule, 6067, {false});
    SetRows(rule, 6068, {{L"A.prt", L"d"}});
    EXPECT_TRUE(Check(path).findings.empty());
    SetRows(rule, 6068, {{L"A.prt", L"d"}, {L"B.STEP", L"a"}});
    EXPECT_EQ(Pairs(Check(path)), Names{"a-b"});
    // Two groups: a against {b, c}; touching on, so a-c counts, b-c (one group) does not.
    Set<bool>(rule, 8073, {true});
    Set<bool>(rule, 6070, {true});
    SetRows(rule, 6068, {{L"a", L"b"}, {L"", L"c"}});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-b", "a-c"}));

    // The database's ignore list takes b out of every pair.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->SaveInterferenceIgnoreList({L"B.prt"}), ZebDbOk);
    EXPECT_EQ(Pairs(Check(path)), Names{"a-c"});
}

TEST_F(EngineTest, InterferenceWithinASubassembly) {
    const std::string path = Write(FourBoxes(L"sub"));
    CZebRule* rule = Rule(6067);
    EXPECT_EQ(Pairs(Check(path)), Names{"a-b"});
    Set<bool>(rule, 6069, {false});
    EXPECT_TRUE(Check(path).findings.empty());
}

TEST_F(EngineTest, ClearanceOptions) {
    const std::string path = Write(FourBoxes(L"sub"), "INCH");
    CZebRule* rule = Rule(2062);
    Set<double>(rule, 2062, {1.0, 1.0});
    ZebCheckReport report = Check(path);
    // d is 0.5 above a, b and c (across the edge c shares with a); touching and overlapping pairs
    // stay out.
    ASSERT_EQ(Pairs(report), (Names{"a-d", "b-d", "c-d"}));
    for (const ZebFinding& f : report.findings) {
        EXPECT_NEAR(*f.value, 0.5, 1e-4);
        EXPECT_NEAR(*f.limit, 1.0, 1e-9);
        EXPECT_NE(f.message.find(L", 10)"), std::wstring::npos) << ToUtf8(f.message);
        EXPECT_NE(f.message.find(L", 10.5)"), std::wstring::npos) << ToUtf8(f.message);
    }
    Set<double>(rule, 2062, {1.0, 0.4});
    EXPECT_TRUE(Check(path).findings.empty());
    // The switch off ignores the general clearance.
    Set<double>(rule, 2062, {0.0, 1.0});
    EXPECT_TRUE(Check(path).findings.empty());

    // A pair of the table with its own clearance, in metres: 0.0006 m against 0.0005 m.
    Set<double>(rule, 2049, {1.0});
    SetRows(rule, 2048, {{L"d.prt", L"A", L"0.0006"}});
    report = Check(path, 2);
    ASSERT_EQ(Pairs(report), Names{"a-d"});
    EXPECT_NEAR(*report.findings[0].value, 0.0005, 1e-7);

    // Touching parts reported when asked: a-b overlap, a-c and b-c touch.
    Set<double>(rule, 2049, {0.0});
    Set<double>(rule, 2062, {1.0, 0.1});
    Set<bool>(rule, 6072, {true});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-b", "a-c", "b-c"}));
    // Only parts of different subassemblies: a and b share "sub".
    Set<double>(rule, 2063, {0.0});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-c", "b-c"}));
}

TEST_F(EngineTest, ContactMaterialAndGroups) {
    std::vector<SolidToWrite> solids = FourBoxes();
    solids.push_back({L"e", Box(-10, 0, 0), L"", L""});  // touches a, has no material
    const std::string path = Write(solids);
    CZebRule* rule = Rule(7065);
    SetRows(rule, 7065, {{L"steel;", L"ALUMINIUM;"}});
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Pairs(report), (Names{"a-c", "b-c", "e"}));
    EXPECT_NE(report.findings[2].message.find(L"no material"), std::wstring::npos);

    // Closer than 0.6 also counts: copper d is 0.5 from both steels.
    ZebTypedParam<double>& nearer = Param<double>(rule, 7051);
    nearer.status = true;
    Set<double>(rule, 7051, {0.6});
    SetRows(rule, 7065, {{L"Copper;", L"Steel;"}});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-d", "b-d", "e"}));
    Set<double>(rule, 7051, {0.4});
    EXPECT_EQ(Pairs(Check(path)), Names{"e"});

    // A group's name stands for its materials.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddMaterial(L"Light metals", L"Aluminium", 0), ZebDbOk);
    SetRows(rule, 7065, {{L"Light metals;", L"Steel;"}});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-c", "b-c", "e"}));
}

TEST_F(EngineTest, PreferredComponents) {
    const std::string path = Write(FourBoxes());
    CZebRule* rule = Rule(7002);
    Set<std::wstring>(rule, 7002,
                      {CZEBStringTableParser::Compose(
                          {{L"use stock", L"b.prt", L"c", L"A.stp"}, {L"", L"x", L"", L"D"}})});
    ZebCheckReport report = Check(path);
    ASSERT_EQ(Pairs(report), (Names{"a", "d"}));
    EXPECT_NE(report.findings[0].message.find(L"b.prt"), std::wstring::npos);
    EXPECT_NE(report.findings[0].message.find(L"alternative c"), std::wstring::npos);
    EXPECT_EQ(report.findings[1].message.find(L"alternative"), std::wstring::npos);
}

// A rule switched off in the rule set is not checked, and naming it alone is refused.
TEST_F(EngineTest, SwitchedOffRulesAreSkipped) {
    const std::string path = Write(FourBoxes());
    CZebRule* interference = Rule(6067);
    CZebRule* clearance = Rule(2062);
    Set<double>(clearance, 2062, {1.0, 1.0});
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-b", "a-d", "b-d", "c-d"}));
    interference->LifeStatus = 1;
    ZebCheckReport report = Check(path);
    EXPECT_EQ(Pairs(report), (Names{"a-d", "b-d", "c-d"}));
    EXPECT_EQ(report.rules, std::vector<std::wstring>{clearance->Name});
    // Another life status leaves the rule on.
    interference->LifeStatus = 2;
    EXPECT_EQ(Pairs(Check(path)), (Names{"a-b", "a-d", "b-d", "c-d"}));

    interference->LifeStatus = 1;
    std::string error;
    report = {};
    EXPECT_EQ(Run(path, {interference->Name}, report, error), ZebCheckBadInput);
    EXPECT_NE(error.find("switched on"), std::string::npos) << error;
    clearance->LifeStatus = 1;
    EXPECT_EQ(Run(path, {}, report, error), ZebCheckBadInput);
    EXPECT_NE(error.find("switched on"), std::string::npos) << error;
}

TEST_F(EngineTest, SharedAssemblyGivesStableResults) {
    const std::string shared = SharedAssembly();
    CZebRule* interference = Rule(6067);
    Set<bool>(interference, 6070, {true});
    CZebRule* clearance = Rule(2062);
    Set<double>(clearance, 2062, {1.0, 2.0});
    const ZebCheckReport one = Check(shared, 0, 1);
    ASSERT_EQ(one.parts.size(), 18u);
    std::vector<std::string> paths;
    for (const ZebCheckedPart& p : one.parts) paths.push_back(ToUtf8(p.path));
    EXPECT_NE(std::find(paths.begin(), paths.end(),
                        "as1/l-bracket-assembly[2]/nut-bolt-assembly[3]/bolt"),
              paths.end());
    EXPECT_NE(std::find(paths.begin(), paths.end(), "as1/plate"), paths.end());
    EXPECT_NE(std::find(paths.begin(), paths.end(), "as1/rod-assembly/nut[2]"), paths.end());
    // Bolts sit in their holes without play: touching, never overlapping.
    EXPECT_FALSE(one.findings.empty());
    for (const ZebFinding& f : one.findings)
        if (f.rule == one.rules[0]) {
            EXPECT_LT(*f.value, 1e-3) << ToUtf8(f.message);
        }
    const ZebCheckReport many = Check(shared, 0, 4);
    EXPECT_EQ(ReportJson(one), ReportJson(many));
}
