// Holes, slots and fastener shapes recognised from solids built with known sizes.
#include "engine/features.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "engine/fasteners.h"
#include "engine/step_writer.h"
#include "framework/text_convert.h"
#include "tests/engine/joint_shapes.h"
#include "tests/engine/shared_assembly.h"
#include "tests/support/scoped_temp_dir.h"

using namespace joint_shapes;

namespace {
const Hole* HoleOf(const PartFeatures& f, double diameter) {
    for (const Hole& h : f.holes)
        if (std::fabs(h.diameter - diameter) < 1e-6) return &h;
    return nullptr;
}
}  // namespace

TEST(Features, HolesAndSlotsOfAPlate) {
    TopoDS_Shape plate = Plate(0, 0, 0, 60, 40, 10);
    plate = Drill(plate, gp_Pnt(10, 10, -1), gp::DZ(), 8.5, 12);  // through
    plate = Drill(plate, gp_Pnt(30, 10, 10), -gp::DZ(), 6, 4);    // blind, 4 deep from the top
    plate = Drill(plate, gp_Pnt(10, 30, -1), gp::DZ(), 9, 12);    // through with ...
    plate = Drill(plate, gp_Pnt(10, 30, 10), -gp::DZ(), 15, 3);   // ... a counterbore
    plate = CutSlot(plate, 40, 28, -1, 6, 20, 12);                // slot along x
    const PartFeatures f = RecognizeFeatures(plate);

    ASSERT_EQ(f.holes.size(), 3u);
    const Hole* through = HoleOf(f, 8.5);
    ASSERT_TRUE(through);
    EXPECT_TRUE(through->through);
    EXPECT_NEAR(through->Depth(), 10, 1e-6);
    EXPECT_NEAR(std::fabs(through->Axis().Z()), 1, 1e-9);
    EXPECT_NEAR(through->start.X(), 10, 1e-6);
    const Hole* blind = HoleOf(f, 6);
    ASSERT_TRUE(blind);
    EXPECT_FALSE(blind->through);
    EXPECT_NEAR(blind->Depth(), 4, 1e-6);
    EXPECT_NEAR(std::max(blind->start.Z(), blind->end.Z()), 10, 1e-6);
    // The counterbore belongs to its hole, which keeps the narrow bore's diameter.
    const Hole* counterbored = HoleOf(f, 9);
    ASSERT_TRUE(counterbored);
    EXPECT_TRUE(counterbored->through);
    EXPECT_NEAR(counterbored->Depth(), 10, 1e-6);
    EXPECT_FALSE(HoleOf(f, 15));

    ASSERT_EQ(f.slotFeatures.size(), 1u);
    const Slot& slot = f.slotFeatures[0];
    EXPECT_NEAR(slot.width, 6, 1e-6);
    EXPECT_NEAR(slot.length, 20, 1e-6);
    EXPECT_NEAR(slot.depth, 10, 1e-6);
    EXPECT_NEAR(std::fabs(slot.direction.X()), 1, 1e-9);
    EXPECT_NEAR(slot.centre.X(), 40, 1e-6);
    EXPECT_NEAR(slot.centre.Y(), 28, 1e-6);
    // A plate has no shank; its outer faces are planes.
    EXPECT_FALSE(f.fastener.found);
}

TEST(Features, BoltAndNutShapes) {
    // Head 13 across, 5.6 high, shank 8 x 30, pointing down from z = 40.
    const PartFeatures bolt = RecognizeFeatures(Bolt(gp_Pnt(5, 5, 40), -gp::DZ(), 8, 30, 13, 5.6));
    ASSERT_TRUE(bolt.fastener.found);
    EXPECT_TRUE(bolt.holes.empty());
    EXPECT_NEAR(bolt.fastener.shankDiameter, 8, 1e-6);
    EXPECT_NEAR(bolt.fastener.headDiameter, 13, 1e-6);
    EXPECT_NEAR(bolt.fastener.Length(), 35.6, 1e-6);
    EXPECT_NEAR(bolt.fastener.top.Z(), 40, 1e-6);
    EXPECT_NEAR(bolt.fastener.bearing.Z(), 34.4, 1e-6);
    EXPECT_NEAR(bolt.fastener.Axis().Z(), -1, 1e-9);

    const PartFeatures nut = RecognizeFeatures(Nut(gp_Pnt(0, 0, 0), gp::DZ(), 8, 6.5));
    ASSERT_EQ(nut.holes.size(), 1u);
    EXPECT_NEAR(nut.holes[0].diameter, 8, 1e-6);
    EXPECT_NEAR(nut.holes[0].Depth(), 6.5, 1e-6);
}

// Two instances of one shape: analysed once, each placed by its own location.
TEST(Features, InstancesArePlacedFromOneAnalysis) {
    const TopoDS_Shape plate = Drill(Plate(0, 0, 0, 20, 20, 5), gp_Pnt(10, 10, -1), gp::DZ(), 5, 7);
    gp_Trsf moved;
    moved.SetTranslation(gp_Vec(100, 0, 0));
    Assembly assembly;
    assembly.parts.resize(2);
    assembly.parts[0].shape = plate;
    assembly.parts[1].shape = plate.Moved(TopLoc_Location(moved));
    std::vector<PartFeatures> features;
    ASSERT_TRUE(RecognizeAssembly(assembly, 2, nullptr, features));
    ASSERT_EQ(features.size(), 2u);
    ASSERT_EQ(features[1].holes.size(), 1u);
    EXPECT_NEAR(features[0].holes[0].start.X(), 10, 1e-6);
    EXPECT_NEAR(features[1].holes[0].start.X(), 110, 1e-6);
}

// A bolt through two plates into a nut, and a screw through a plate into a tapped hole (modelled
// at the thread's minor diameter); written and read back as the engine reads an assembly.
TEST(Fasteners, JoinsShanksToHolesNutsAndTappedHoles) {
    TopoDS_Shape lower = Drill(Plate(0, 0, 0, 40, 40, 10), gp_Pnt(20, 20, -1), gp::DZ(), 9, 12);
    TopoDS_Shape upper = Drill(Plate(0, 0, 10, 40, 40, 10), gp_Pnt(20, 20, 9), gp::DZ(), 9, 12);
    TopoDS_Shape block = Drill(Plate(60, 0, 0, 40, 40, 20), gp_Pnt(80, 20, 20), -gp::DZ(), 6.8, 15);
    TopoDS_Shape cover = Drill(Plate(60, 0, 20, 40, 40, 10), gp_Pnt(80, 20, 19), gp::DZ(), 9, 12);
    ScopedTempDir dir{"features_test"};
    const std::string path = (dir.Path() / "joint.stp").string();
    std::string error;
    ASSERT_TRUE(WriteStepAssembly(
        path, L"top",
        {{L"lower", lower, L"", L""},
         {L"upper", upper, L"", L""},
         {L"bolt", Bolt(gp_Pnt(20, 20, 25.6), -gp::DZ(), 8, 30, 13, 5.6), L"", L""},
         {L"nut", Nut(gp_Pnt(20, 20, 0), -gp::DZ(), 8, 6.5), L"", L""},
         {L"block", block, L"", L""},
         {L"cover", cover, L"", L""},
         {L"screw", Bolt(gp_Pnt(80, 20, 35.6), -gp::DZ(), 8, 20, 13, 5.6), L"", L""},
         {L"rod", Rod(gp_Pnt(0, 60, 0), gp::DZ(), 8, 30), L"", L""}},
        "MM", error))
        << error;
    Assembly assembly;
    ASSERT_TRUE(ReadStepAssemblyHere(path, assembly, error)) << error;
    std::vector<PartFeatures> features;
    ASSERT_TRUE(RecognizeAssembly(assembly, 2, nullptr, features));
    const auto index = [&](const wchar_t* name) {
        for (size_t i = 0; i < assembly.parts.size(); ++i)
            if (assembly.parts[i].product == name) return static_cast<int>(i);
        return -1;
    };
    // Names match without regard to case or extension; the rod is named in no table.
    const AssemblyFasteners found =
        FindFasteners(assembly, features, {L"BOLT.prt", L"nut", L"Screw"});
    EXPECT_TRUE(found.nut[index(L"nut")]);
    EXPECT_FALSE(found.fastener[index(L"rod")]);
    ASSERT_EQ(found.joints.size(), 2u);
    for (const FastenerJoint& joint : found.joints) {
        const std::wstring& name = assembly.parts[joint.fastener].product;
        std::vector<std::wstring> passed;
        for (const HoleRef& h : joint.passed) passed.push_back(assembly.parts[h.part].product);
        if (name == L"bolt") {
            // Head to tip: the upper plate first.
            EXPECT_EQ(passed, (std::vector<std::wstring>{L"upper", L"lower"}));
            EXPECT_EQ(joint.nut, index(L"nut"));
            EXPECT_NEAR(joint.engagement, 6.5, 1e-6);
        } else {
            EXPECT_EQ(passed, std::vector<std::wstring>{L"cover"});
            EXPECT_EQ(joint.nut, -1);
            EXPECT_EQ(joint.tapped.part, index(L"block"));
            EXPECT_NEAR(joint.engagement, 10, 1e-6);
        }
        EXPECT_EQ(FastenerLabel(assembly.parts[joint.fastener], features[joint.fastener].fastener),
                  L"M8 " + name + L" (" + assembly.parts[joint.fastener].path + L")");
    }
}

// The shared assembly: two brackets, each held to the plate by three bolts with nuts.
TEST(Fasteners, SharedAssemblyBoltsAndNuts) {
    const std::string shared = SharedAssembly();
    Assembly assembly;
    std::string error;
    ASSERT_TRUE(ReadStepAssemblyHere(shared, assembly, error)) << error;
    std::vector<PartFeatures> features;
    ASSERT_TRUE(RecognizeAssembly(assembly, 2, nullptr, features));
    std::map<std::wstring, size_t> holes;
    for (size_t i = 0; i < assembly.parts.size(); ++i) {
        holes[assembly.parts[i].path] = features[i].holes.size();
        for (const Hole& h : features[i].holes) {
            EXPECT_NEAR(h.diameter, 10, 1e-3);
            EXPECT_TRUE(h.through);
        }
    }
    EXPECT_EQ(holes[L"as1/plate"], 6u);
    EXPECT_EQ(holes[L"as1/l-bracket-assembly[1]/l-bracket"], 4u);
    EXPECT_EQ(holes[L"as1/rod-assembly/nut[2]"], 1u);

    const AssemblyFasteners found = FindFasteners(assembly, features, {L"bolt", L"nut"});
    ASSERT_EQ(found.joints.size(), 6u);
    for (const FastenerJoint& joint : found.joints) {
        const std::wstring& bolt = assembly.parts[joint.fastener].path;
        const std::wstring jointPath = bolt.substr(0, bolt.rfind(L'/'));
        const FastenerShape& shape = features[joint.fastener].fastener;
        EXPECT_NEAR(shape.shankDiameter, 10, 1e-3);
        EXPECT_NEAR(shape.headDiameter, 15, 1e-3);
        // Through the bracket (10 thick), then the plate (20), into its own nut (3 thick).
        ASSERT_EQ(joint.passed.size(), 2u) << ToUtf8(bolt);
        EXPECT_EQ(assembly.parts[joint.passed[0].part].path,
                  jointPath.substr(0, jointPath.rfind(L'/')) + L"/l-bracket");
        EXPECT_EQ(assembly.parts[joint.passed[1].part].path, L"as1/plate");
        ASSERT_GE(joint.nut, 0);
        EXPECT_EQ(assembly.parts[joint.nut].path, jointPath + L"/nut");
        EXPECT_NEAR(joint.engagement, 3, 1e-3);
    }
}
