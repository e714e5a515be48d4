#include "engine/fasteners.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <gp_Lin.hxx>

#include "engine/pair_search.h"
#include "engine/thread_designation.h"

namespace {
constexpr double kFitLength = 1e-4;
// A shank tilted by more than this in a hole is not taken to pass through it.
constexpr double kMostTilt = 15.0 * M_PI / 180.0;

// Where a hole lies along a fastener, measured from the top of its head.
struct Along {
    double from = 0.0, to = 0.0;
};

Along Span(const FastenerShape& f, const Hole& h) {
    const gp_Vec axis(f.Axis());
    const double a = gp_Vec(f.top, h.start).Dot(axis), b = gp_Vec(f.top, h.end).Dot(axis);
    return {std::min(a, b), std::max(a, b)};
}

// The length of shank inside the hole, 0 when the shank does not lie in it.
double ShankInside(const FastenerShape& f, const Hole& h) {
    if (f.Axis().Angle(h.Axis()) > kMostTilt && f.Axis().Angle(h.Axis().Reversed()) > kMostTilt)
        return 0.0;
    const gp_Pnt middle((h.start.XYZ() + h.end.XYZ()) / 2);
    if (gp_Lin(f.top, f.Axis()).Distance(middle) > h.diameter / 2 + kFitLength) return 0.0;
    const Along hole = Span(f, h);
    const double shankFrom = f.top.Distance(f.bearing), shankTo = f.Length();
    return std::max(0.0, std::min(hole.to, shankTo) - std::max(hole.from, shankFrom));
}
}  // namespace

double MetricSize(double shankDiameter) {
    for (const MetricThread& thread : MetricThreads())
        if (std::fabs(thread.size - shankDiameter) <= 0.1) return thread.size;
    return 0.0;
}

std::wstring FastenerLabel(const AssemblyPart& part, const FastenerShape& shape) {
    wchar_t size[32];
    if (const double metric = MetricSize(shape.shankDiameter); metric > 0)
        std::swprintf(size, 32, L"M%g", metric);
    else
        std::swprintf(size, 32, L"%.3g mm", shape.shankDiameter);
    const std::wstring name = part.product.empty() ? L"fastener" : part.product;
    return (shape.found ? std::wstring(size) + L" " : std::wstring()) + name + L" (" + part.path +
           L")";
}

std::vector<bool> NamedFasteners(const Assembly& assembly, const std::vector<std::wstring>& names) {
    std::vector<bool> named(assembly.parts.size(), false);
    for (size_t i = 0; i < named.size(); ++i)
        named[i] = std::any_of(names.begin(), names.end(), [&](const std::wstring& name) {
            return PartMatches(assembly.parts[i], name);
        });
    return named;
}

AssemblyFasteners FindFasteners(const Assembly& assembly, const std::vector<PartFeatures>& features,
                                const std::vector<std::wstring>& names) {
    const std::vector<AssemblyPart>& parts = assembly.parts;
    AssemblyFasteners found;
    found.fastener = NamedFasteners(assembly, names);
    found.nut.assign(parts.size(), false);
    std::vector<int> jointOf(parts.size(), -1);
    for (size_t i = 0; i < parts.size(); ++i) {
        if (!found.fastener[i]) continue;
        // A nut has a bore; a bolt or screw a shank and no bore.
        found.nut[i] = !features[i].holes.empty();
        if (!found.nut[i] && features[i].fastener.found) {
            jointOf[i] = static_cast<int>(found.joints.size());
            FastenerJoint joint;
            joint.fastener = static_cast<int>(i);
            found.joints.push_back(joint);
        }
    }
    if (found.joints.empty()) return found;

    // Nuts nearer the tip win over those nearer the head (a washer is passed, the nut ends).
    std::vector<double> nutAt(found.joints.size(), -1.0);
    for (const auto& [i, j] : NearPairs(parts, 0.0)) {
        for (const auto& [self, other] : {std::pair{i, j}, std::pair{j, i}}) {
            if (jointOf[self] < 0) continue;
            FastenerJoint& joint = found.joints[jointOf[self]];
            const FastenerShape& shape = features[self].fastener;
            const std::vector<Hole>& holes = features[other].holes;
            for (size_t h = 0; h < holes.size(); ++h) {
                const double inside = ShankInside(shape, holes[h]);
                if (inside <= kFitLength) continue;
                const double at = Span(shape, holes[h]).from;
                if (found.nut[other]) {
                    if (at > nutAt[jointOf[self]]) {
                        nutAt[jointOf[self]] = at;
                        joint.nut = other;
                        joint.engagement = inside;
                        joint.tapped = {};
                    }
                } else if (holes[h].diameter <= shape.shankDiameter + kFitLength &&
                           Span(shape, holes[h]).to >= shape.Length() - kFitLength) {
                    // No wider than the shank and holding its tip: the thread is cut in the part.
                    if (joint.nut < 0 && inside > joint.engagement) {
                        joint.tapped = {other, static_cast<int>(h)};
                        joint.engagement = inside;
                    }
                } else {
                    joint.passed.push_back({other, static_cast<int>(h)});
                }
            }
        }
    }
    for (FastenerJoint& joint : found.joints) {
        const FastenerShape& shape = features[joint.fastener].fastener;
        std::sort(joint.passed.begin(), joint.passed.end(),
                  [&](const HoleRef& a, const HoleRef& b) {
                      return Span(shape, features[a.part].holes[a.hole]).from <
                             Span(shape, features[b.part].holes[b.hole]).from;
                  });
    }
    return found;
}
