// Hole alignment and slot alignment: features of touching parts that are meant to line up.
#include <algorithm>
#include <cmath>
#include <gp_Lin.hxx>

#include "engine/feature_rules.h"
#include "engine/finding_text.h"
#include "engine/pair_search.h"
#include "framework/zeb_types.h"

namespace {
// Ends of two features closer than this along their axes meet.
constexpr double kMeet = 1e-3;
// Axes whose directions differ by less than this (1 - |cos|, about 0.8 degrees) are parallel.
constexpr double kAxesParallel = 1e-4;

// Where a segment lies along an axis through `origin`.
std::pair<double, double> Along(const gp_Pnt& origin, const gp_Dir& axis, const gp_Pnt& a,
                                const gp_Pnt& b) {
    const double ta = gp_Vec(origin, a).Dot(gp_Vec(axis)), tb = gp_Vec(origin, b).Dot(gp_Vec(axis));
    return {std::min(ta, tb), std::max(ta, tb)};
}

// Two features meet end to end: one ends where the other starts, without overlapping.
bool EndToEnd(std::pair<double, double> a, std::pair<double, double> b) {
    const double overlap = std::min(a.second, b.second) - std::max(a.first, b.first);
    return std::fabs(overlap) <= kMeet;
}

// Touching parts that are meant to line up: neither is a fastener.
std::vector<PartPair> MemberPairs(const FeatureCache& cache,
                                  const std::vector<std::wstring>& fastenerNames) {
    const std::vector<bool> fastener = NamedFasteners(cache.assembly(), fastenerNames);
    std::vector<PartPair> pairs;
    for (const PartPair& pair : NearPairs(cache.assembly().parts, 0.0))
        if (!fastener[pair.first] && !fastener[pair.second]) pairs.push_back(pair);
    return pairs;
}

std::wstring SlotLabel(const Slot& slot, const AssemblyPart& part, const CheckContext& context) {
    return L"slot " + Number(slot.width * context.toReport) + L" x " +
           LengthText(slot.length, context) + L" of " + part.path;
}
}  // namespace

bool CheckHoleAlignment(FeatureCache& cache, const HoleAlignmentOptions& options,
                        const std::vector<std::wstring>& fastenerNames, const CheckContext& context,
                        std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const std::vector<AssemblyPart>& parts = cache.assembly().parts;
    const std::vector<PartFeatures>& features = cache.features();
    const auto checked = [&](const Hole& h) { return h.through ? options.through : options.blind; };
    for (const auto& [i, j] : MemberPairs(cache, fastenerNames))
        for (const Hole& a : features[i].holes)
            for (const Hole& b : features[j].holes) {
                if (!checked(a) || !checked(b) ||
                    1 - std::fabs(a.Axis().Dot(b.Axis())) > kAxesParallel)
                    continue;
                if (!EndToEnd(Along(a.start, a.Axis(), a.start, a.end),
                              Along(a.start, a.Axis(), b.start, b.end)))
                    continue;
                // Measured where the holes meet, on the nearer end of b.
                const gp_Lin axis(a.start, a.Axis());
                const double offset =
                    std::min(std::min(axis.Distance(b.start), axis.Distance(b.end)),
                             std::min(gp_Lin(b.start, b.Axis()).Distance(a.start),
                                      gp_Lin(b.start, b.Axis()).Distance(a.end)));
                // Holes that do not even overlap are not meant to line up.
                if (offset >= (a.diameter + b.diameter) / 2) continue;
                const std::wstring pair =
                    HoleLabel(a, parts[i], context) + L" and " + HoleLabel(b, parts[j], context);
                if (!options.offset.Holds(offset, 1e-6))
                    findings.push_back(
                        BoundFinding(context, {parts[i].path, parts[j].path},
                                     pair + L" are " + LengthText(offset, context) + L" off axis",
                                     offset, options.offset));
                const double difference = std::fabs(a.diameter - b.diameter);
                if (!options.diameters.Holds(difference, 1e-6))
                    findings.push_back(BoundFinding(
                        context, {parts[i].path, parts[j].path},
                        pair + L" differ in diameter by " + LengthText(difference, context),
                        difference, options.diameters));
            }
    return true;
}

bool CheckSlotAlignment(FeatureCache& cache, const SlotAlignmentOptions& options,
                        const std::vector<std::wstring>& fastenerNames, const CheckContext& context,
                        std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const std::vector<AssemblyPart>& parts = cache.assembly().parts;
    const std::vector<PartFeatures>& features = cache.features();
    for (const auto& [i, j] : MemberPairs(cache, fastenerNames))
        for (const Slot& a : features[i].slotFeatures)
            for (const Slot& b : features[j].slotFeatures) {
                if (1 - std::fabs(a.axis.Dot(b.axis)) > kAxesParallel) continue;
                const auto depthOf = [&](const Slot& s) {
                    return Along(a.centre, a.axis,
                                 s.centre.Translated(gp_Vec(s.axis) * (s.depth / 2)),
                                 s.centre.Translated(gp_Vec(s.axis) * (-s.depth / 2)));
                };
                if (!EndToEnd(depthOf(a), depthOf(b))) continue;
                const gp_Vec apart(a.centre, b.centre);
                const gp_Dir across = a.axis.Crossed(a.direction);
                const double offset = std::fabs(apart.Dot(gp_Vec(across)));
                const double along = apart.Dot(gp_Vec(a.direction));
                // Slots that do not overlap are not meant to line up.
                if (offset >= (a.width + b.width) / 2 ||
                    std::fabs(along) >= (a.length + b.length) / 2)
                    continue;
                const std::vector<std::wstring> both{parts[i].path, parts[j].path};
                const std::wstring pair =
                    SlotLabel(a, parts[i], context) + L" and " + SlotLabel(b, parts[j], context);
                if (!options.offset.Holds(offset, 1e-6))
                    findings.push_back(BoundFinding(context, both,
                                                    pair + L" are " + LengthText(offset, context) +
                                                        L" apart across their width",
                                                    offset, options.offset));
                if (options.ends) {
                    // Ends of b measured along a: each end against the nearer end of a.
                    const double reach = std::fabs(b.direction.Dot(a.direction)) * b.length / 2;
                    const double ends = std::max(std::fabs(along - reach + a.length / 2),
                                                 std::fabs(along + reach - a.length / 2));
                    if (!options.ends->Holds(ends, 1e-6))
                        findings.push_back(BoundFinding(
                            context, both, pair + L" end " + LengthText(ends, context) + L" apart",
                            ends, *options.ends));
                }
                if (options.sameWidth && std::fabs(a.width - b.width) > kTouchTolerance) {
                    ZebFinding finding =
                        Finding(context, both,
                                pair + L" differ in width by " +
                                    LengthText(std::fabs(a.width - b.width), context));
                    finding.value = std::fabs(a.width - b.width) * context.toReport;
                    finding.limit = 0.0;
                    findings.push_back(std::move(finding));
                }
                if (options.sameDirection &&
                    1 - std::fabs(a.direction.Dot(b.direction)) > kAxesParallel) {
                    const double degrees = a.direction.Angle(b.direction) * 180 / M_PI;
                    ZebFinding finding =
                        Finding(context, both,
                                pair + L" run " + Number(std::min(degrees, 180 - degrees)) +
                                    L" degrees apart");
                    finding.value = std::min(degrees, 180 - degrees);
                    finding.limit = 0.0;
                    findings.push_back(std::move(finding));
                }
            }
    return true;
}
