// Bolt and screw rationalization: the kinds of fasteners an assembly uses, grouped by the rule's
// options, and the sizes within a group that lie closer together than the steps it asks for.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "engine/feature_rules.h"
#include "engine/finding_text.h"
#include "framework/case_fold.h"

namespace {
// Sizes are compared after rounding to this (kernel millimetres).
constexpr double kSizeStep = 0.01;

double Rounded(double value) { return std::round(value / kSizeStep) * kSizeStep; }

struct Kind {
    double diameter = 0.0, length = 0.0;
    std::vector<std::wstring> parts;
};

// One group: fasteners that may replace each other but for their sizes.
struct Group {
    std::wstring name;  // "bolts", "screws" or "bolts and screws", with head and material
    std::map<std::pair<double, double>, Kind> kinds;  // by (diameter, length)
};

std::vector<std::wstring> PartsOf(const std::vector<const Kind*>& kinds) {
    std::vector<std::wstring> parts;
    for (const Kind* kind : kinds)
        parts.insert(parts.end(), kind->parts.begin(), kind->parts.end());
    return parts;
}

void StepFindings(const Group& group, const Bound& step, bool byLength, const CheckContext& context,
                  std::vector<ZebFinding>& findings) {
    // Lengths are compared among fasteners of one diameter; diameters among all of the group.
    std::map<double, std::map<double, std::vector<const Kind*>>> sizes;
    for (const auto& [key, kind] : group.kinds)
        sizes[byLength ? kind.diameter : 0.0][byLength ? kind.length : kind.diameter].push_back(
            &kind);
    for (const auto& [diameter, bySize] : sizes)
        for (auto next = bySize.begin(), last = next; next != bySize.end(); last = next++) {
            if (next == bySize.begin()) continue;
            const double difference = next->first - last->first;
            if (step.Holds(difference, 1e-6)) continue;
            std::vector<const Kind*> both = last->second;
            both.insert(both.end(), next->second.begin(), next->second.end());
            const std::wstring what = byLength ? L"lengths " : L"diameters ";
            std::wstring message =
                group.name +
                (byLength ? L" of " + LengthText(diameter, context) + L" diameter" : L"") +
                L" use the " + what + LengthText(last->first, context) + L" and " +
                LengthText(next->first, context) + L", " + LengthText(difference, context) +
                L" apart: one would do";
            findings.push_back(
                BoundFinding(context, PartsOf(both), std::move(message), difference, step));
        }
}
}  // namespace

bool CheckRationalization(FeatureCache& cache, const RationalizationOptions& options,
                          const std::vector<std::wstring>& fastenerNames,
                          const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (!cache.Recognize(context)) return false;
    const auto& [parts, features, fasteners] = cache.Scene(fastenerNames);
    std::map<std::wstring, Group> groups;
    for (const FastenerJoint& joint : fasteners.joints) {
        const AssemblyPart& part = parts[joint.fastener];
        const FastenerShape& shape = features[joint.fastener].fastener;
        // A bolt ends in a nut; anything else is a screw.
        std::wstring name = options.together ? L"bolts and screws"
                            : joint.nut >= 0 ? L"bolts"
                                             : L"screws";
        if (options.sameHead)
            name += L" with heads " + LengthText(Rounded(shape.headDiameter), context) + L" across";
        if (options.sameMaterial)
            name += L" of " + (part.material.empty() ? std::wstring(L"no material")
                                                     : ZebFoldCase(part.material));
        Group& group = groups[name];
        group.name = name;
        const double diameter = Rounded(shape.shankDiameter), length = Rounded(shape.Length());
        Kind& kind = group.kinds[{diameter, length}];
        kind.diameter = diameter;
        kind.length = length;
        kind.parts.push_back(part.path);
    }
    for (const auto& [name, group] : groups) {
        if (options.lengthStep) StepFindings(group, *options.lengthStep, true, context, findings);
        if (options.diameterStep)
            StepFindings(group, *options.diameterStep, false, context, findings);
    }
    return true;
}
