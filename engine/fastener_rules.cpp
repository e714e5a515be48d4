// Fastener clearance, engagement length and alignment: each fastener against the holes it passes
// through and the nut or tapped hole it ends in.
#include <BRepAlgoAPI_Common.hxx>
#include <BRepBndLib.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <Standard_Failure.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Ax2.hxx>
#include <gp_Lin.hxx>
#include <limits>

#include "engine/feature_rules.h"
#include "engine/finding_text.h"
#include "engine/pair_search.h"
#include "framework/zeb_types.h"

namespace {
// A fastener axis more than this off its hole's is not parallel to it.
constexpr double kParallelDegrees = 0.5;

const NamedBound* RowFor(const AssemblyPart& part, const std::vector<NamedBound>& rows) {
    for (const NamedBound& row : rows)
        if (PartMatches(part, row.name)) return &row;
    return nullptr;
}

std::vector<std::wstring> NamesOf(const std::vector<NamedBound>& rows,
                                  std::vector<std::wstring> names) {
    for (const NamedBound& row : rows) names.push_back(row.name);
    return names;
}

// The head alone: the fastener cut off where its shank starts.
TopoDS_Shape Head(const AssemblyPart& part, const FastenerShape& f) {
    const double above = 1.0;
    const gp_Pnt from = f.top.Translated(gp_Vec(f.Axis()) * -above);
    const TopoDS_Shape cutter =
        BRepPrimAPI_MakeCylinder(gp_Ax2(from, f.Axis()), f.headDiameter / 2 + above,
                                 f.top.Distance(f.bearing) + above)
            .Shape();
    return BRepAlgoAPI_Common(part.shape, cutter).Shape();
}

double Reach(const Bound& bound) { return bound.op == ZebOp_Range ? bound.upper : bound.value; }

// Free space around each fastener head with a row: the distance from the head to the nearest part
// it is not joined to, when that part lies within the row's reach; infinity otherwise.
bool HeadSpaces(FeatureCache& cache, const AssemblyFasteners& fasteners,
                const std::vector<NamedBound>& rows, const CheckContext& context,
                std::vector<double>& spaces) {
    const std::vector<AssemblyPart>& parts = cache.assembly().parts;
    spaces.assign(fasteners.joints.size(), std::numeric_limits<double>::infinity());
    // Heads join the parts as extra entries of the same box hierarchy.
    std::vector<AssemblyPart> all = parts;
    std::vector<int> jointOfHead;
    double reach = 0.0;
    for (size_t k = 0; k < fasteners.joints.size(); ++k) {
        const FastenerJoint& joint = fasteners.joints[k];
        const NamedBound* row = RowFor(parts[joint.fastener], rows);
        if (!row) continue;
        reach = std::max(reach, Reach(row->bound));
        AssemblyPart head;
        try {
            head.shape = Head(parts[joint.fastener], cache.features()[joint.fastener].fastener);
        } catch (const Standard_Failure&) {
            continue;
        }
        BRepBndLib::Add(head.shape, head.box);
        all.push_back(std::move(head));
        jointOfHead.push_back(static_cast<int>(k));
    }
    std::vector<std::pair<int, int>> pairs;  // (joint, part)
    for (const auto& [i, j] : NearPairs(all, reach)) {
        if (j < static_cast<int>(parts.size()) || i >= static_cast<int>(parts.size())) continue;
        const int k = jointOfHead[j - parts.size()];
        const FastenerJoint& joint = fasteners.joints[k];
        bool joined = i == joint.fastener || i == joint.nut || i == joint.tapped.part;
        for (const HoleRef& h : joint.passed) joined = joined || h.part == i;
        if (!joined) pairs.emplace_back(k, i);
    }
    std::vector<double> distances(pairs.size(), std::numeric_limits<double>::infinity());
    const bool complete = RunParallel(
        pairs.size(), context.threads,
        [&](size_t p) {
            const int head =
                static_cast<int>(parts.size()) +
                static_cast<int>(std::find(jointOfHead.begin(), jointOfHead.end(), pairs[p].first) -
                                 jointOfHead.begin());
            try {
                distances[p] = MeasureDistance(all[head], parts[pairs[p].second]).distance;
            } catch (const Standard_Failure&) {
            }
        },
        nullptr, context.cancel);
    if (!complete) return false;
    for (size_t p = 0; p < pairs.size(); ++p)
        if (distances[p] <= reach)
            spaces[pairs[p].first] = std::min(spaces[pairs[p].first], distances[p]);
    return true;
}

// The holes a fastener lies in: those it passes through, then its nut's bore or tapped hole.
std::vector<HoleRef> HolesOf(const FastenerJoint& joint,
                             const std::vector<PartFeatures>& features) {
    std::vector<HoleRef> holes = joint.passed;
    if (joint.tapped.part >= 0) holes.push_back(joint.tapped);
    if (joint.nut >= 0 && !features[joint.nut].holes.empty()) holes.push_back({joint.nut, 0});
    return holes;
}
}  // namespace

bool CheckFastenerClearance(FeatureCache& cache, const FastenerClearanceOptions& options,
                            const std::vector<std::wstring>& fastenerNames,
                            const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const auto& [parts, features, fasteners] =
        cache.Scene(NamesOf(options.headSpace, NamesOf(options.play, fastenerNames)));
    std::vector<double> spaces;
    if (!HeadSpaces(cache, fasteners, options.headSpace, context, spaces)) return false;
    for (size_t k = 0; k < fasteners.joints.size(); ++k) {
        const FastenerJoint& joint = fasteners.joints[k];
        const AssemblyPart& part = parts[joint.fastener];
        const FastenerShape& shape = features[joint.fastener].fastener;
        const std::wstring label = FastenerLabel(part, shape);
        if (const NamedBound* row = RowFor(part, options.play))
            for (const HoleRef& ref : joint.passed) {
                const Hole& hole = features[ref.part].holes[ref.hole];
                const double play = (hole.diameter - shape.shankDiameter) / 2;
                if (row->bound.Holds(play, 1e-6)) continue;
                findings.push_back(BoundFinding(context, {part.path, parts[ref.part].path},
                                                label + L" has a radial play of " +
                                                    LengthText(play, context) + L" in " +
                                                    HoleLabel(hole, parts[ref.part], context),
                                                play, row->bound));
            }
        if (const NamedBound* row = RowFor(part, options.headSpace);
            row && !row->bound.Holds(spaces[k], 1e-6))
            findings.push_back(BoundFinding(context, {part.path},
                                            label + L" has " + LengthText(spaces[k], context) +
                                                L" of free space around its head",
                                            spaces[k], row->bound));
    }
    return true;
}

bool CheckFastenerEngagement(FeatureCache& cache, const std::vector<NamedBound>& lengths,
                             const std::vector<std::wstring>& fastenerNames,
                             const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const auto& [parts, features, fasteners] = cache.Scene(NamesOf(lengths, fastenerNames));
    for (const FastenerJoint& joint : fasteners.joints) {
        const AssemblyPart& part = parts[joint.fastener];
        const NamedBound* row = RowFor(part, lengths);
        if (!row || row->bound.Holds(joint.engagement, 1e-6)) continue;
        const std::wstring label = FastenerLabel(part, features[joint.fastener].fastener);
        std::vector<std::wstring> involved{part.path};
        std::wstring message;
        if (joint.nut >= 0) {
            involved.push_back(parts[joint.nut].path);
            message = label + L" engages its nut " + parts[joint.nut].path + L" over " +
                      LengthText(joint.engagement, context);
        } else if (joint.tapped.part >= 0) {
            involved.push_back(parts[joint.tapped.part].path);
            message = label + L" engages the tapped " +
                      HoleLabel(features[joint.tapped.part].holes[joint.tapped.hole],
                                parts[joint.tapped.part], context) +
                      L" over " + LengthText(joint.engagement, context);
        } else {
            message = label + L" ends in no nut or tapped hole";
        }
        findings.push_back(BoundFinding(context, std::move(involved), std::move(message),
                                        joint.engagement, row->bound));
    }
    return true;
}

bool CheckFastenerAlignment(FeatureCache& cache, const FastenerAlignmentOptions& options,
                            const std::vector<std::wstring>& fastenerNames,
                            const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const auto& [parts, features, fasteners] = cache.Scene(fastenerNames);
    for (const FastenerJoint& joint : fasteners.joints) {
        const AssemblyPart& part = parts[joint.fastener];
        const FastenerShape& shape = features[joint.fastener].fastener;
        const gp_Lin axis(shape.top, shape.Axis());
        const std::wstring label = FastenerLabel(part, shape);
        for (const HoleRef& ref : HolesOf(joint, features)) {
            const Hole& hole = features[ref.part].holes[ref.hole];
            const std::vector<std::wstring> both{part.path, parts[ref.part].path};
            // The largest distance of the hole's axis from the fastener's, over the hole's depth.
            const double offset = std::max(axis.Distance(hole.start), axis.Distance(hole.end));
            if (!options.offset.Holds(offset, 1e-6))
                findings.push_back(BoundFinding(context, both,
                                                label + L" is " + LengthText(offset, context) +
                                                    L" off the axis of " +
                                                    HoleLabel(hole, parts[ref.part], context),
                                                offset, options.offset));
            const double angle = shape.Axis().Angle(hole.Axis()) * 180 / M_PI;
            const double tilt = std::min(angle, 180 - angle);
            if (options.parallel && tilt > kParallelDegrees) {
                ZebFinding finding =
                    Finding(context, both,
                            label + L" is tilted " + Number(tilt) + L" degrees against " +
                                HoleLabel(hole, parts[ref.part], context) + L"; allowed " +
                                Number(kParallelDegrees));
                finding.value = tilt;
                finding.limit = kParallelDegrees;
                findings.push_back(std::move(finding));
            }
        }
    }
    return true;
}

namespace {
// The space a tool needs at a fastener's head: a cylinder about its axis, `factor` times the
// head's diameter across, from just above the face the head bears on to one head diameter above
// its top.
TopoDS_Shape ToolSpace(const FastenerShape& f, double factor) {
    constexpr double kAboveBearing = 0.01;
    const gp_Dir up = f.Axis().Reversed();
    const gp_Pnt from = f.bearing.Translated(gp_Vec(up) * kAboveBearing);
    const double height = f.top.Distance(f.bearing) - kAboveBearing + f.headDiameter;
    return BRepPrimAPI_MakeCylinder(gp_Ax2(from, up), factor * f.headDiameter / 2, height).Shape();
}
}  // namespace

bool CheckFastenerAccessibility(FeatureCache& cache, const AccessibilityOptions& options,
                                const std::vector<std::wstring>& fastenerNames,
                                const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    // Named, not bound: the lambdas below use them, which structured bindings do not allow.
    const FastenerScene scene = cache.Scene(fastenerNames);
    const std::vector<AssemblyPart>& parts = scene.parts;
    const std::vector<PartFeatures>& features = scene.features;
    const AssemblyFasteners& fasteners = scene.fasteners;
    std::vector<double> factors{options.tool};
    if (options.second) factors.push_back(*options.second);
    // Tool spaces join the parts as extra entries of the same box hierarchy.
    struct Space {
        int joint;
        double factor;
    };
    std::vector<AssemblyPart> all = parts;
    std::vector<Space> spaces;
    for (size_t k = 0; k < fasteners.joints.size(); ++k)
        for (double factor : factors) {
            AssemblyPart tool;
            tool.shape = ToolSpace(features[fasteners.joints[k].fastener].fastener, factor);
            BRepBndLib::Add(tool.shape, tool.box);
            all.push_back(std::move(tool));
            spaces.push_back({static_cast<int>(k), factor});
        }
    const int count = static_cast<int>(parts.size());
    std::vector<std::pair<int, int>> pairs;  // (space, part)
    for (const auto& [i, j] : NearPairs(all, 0.0))
        if (i < count && j >= count && i != fasteners.joints[spaces[j - count].joint].fastener)
            pairs.emplace_back(j - count, i);
    // Per pair: does the part reach into the space, and how far is it from the fastener.
    std::vector<std::optional<double>> blocked(pairs.size());
    const bool complete = RunParallel(
        pairs.size(), context.threads,
        [&](size_t p) {
            const auto [space, part] = pairs[p];
            try {
                if (MeasureDistance(all[count + space], parts[part]).distance > kTouchTolerance)
                    return;
                blocked[p] = MeasureDistance(parts[fasteners.joints[spaces[space].joint].fastener],
                                             parts[part])
                                 .distance;
            } catch (const Standard_Failure&) {
                blocked[p] = 0.0;
            }
        },
        nullptr, context.cancel);
    if (!complete) return false;
    for (size_t p = 0; p < pairs.size(); ++p) {
        if (!blocked[p]) continue;
        const Space& space = spaces[pairs[p].first];
        const AssemblyPart& fastener = parts[fasteners.joints[space.joint].fastener];
        const FastenerShape& shape = features[fasteners.joints[space.joint].fastener].fastener;
        const AssemblyPart& other = parts[pairs[p].second];
        ZebFinding finding =
            Finding(context, {fastener.path, other.path},
                    other.path + L" lies " + LengthText(*blocked[p], context) + L" from " +
                        FastenerLabel(fastener, shape) + L", inside the space its tool needs: " +
                        Number(space.factor) + L" x the head's " +
                        LengthText(shape.headDiameter, context) + L" across");
        finding.value = *blocked[p] * context.toReport;
        // The free space around the head that the tool asks for.
        finding.limit = (space.factor - 1) * shape.headDiameter / 2 * context.toReport;
        findings.push_back(std::move(finding));
    }
    return true;
}
