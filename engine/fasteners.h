#pragma once

#include <string>
#include <vector>

#include "engine/features.h"

// Fasteners of an assembly and the joints they make: which holes each passes through and the nut
// or tapped hole it ends in.

struct HoleRef {
    int part = -1;
    int hole = -1;
};

struct FastenerJoint {
    int fastener = -1;            // the part
    std::vector<HoleRef> passed;  // clearance holes, from the head towards the tip
    int nut = -1;                 // the nut it ends in, or
    HoleRef tapped;               // the tapped hole it ends in
    double engagement = 0.0;      // length of shank inside the nut or tapped hole
    bool Ends() const { return nut >= 0 || tapped.part >= 0; }
};

struct AssemblyFasteners {
    std::vector<bool> fastener;         // per part: named as a fastener
    std::vector<bool> nut;              // per part: a fastener with an inner cylinder and no shank
    std::vector<FastenerJoint> joints;  // one per fastener with a shank, in part order
};

// Per part: its product or instance name is one of `names`.
std::vector<bool> NamedFasteners(const Assembly& assembly, const std::vector<std::wstring>& names);

// Parts whose product or instance name is one of `names` are fasteners; each one with a shank is
// joined, through the bounding-box hierarchy, to the holes its shank lies in.
AssemblyFasteners FindFasteners(const Assembly& assembly, const std::vector<PartFeatures>& features,
                                const std::vector<std::wstring>& names);

// How a finding names a fastener: "M8 bolt (as1/bolt)", or "6.5 mm pin (as1/pin)" off the metric
// series.
std::wstring FastenerLabel(const AssemblyPart& part, const FastenerShape& shape);
// The metric thread size nearest a shank diameter, 0 when none is within 0.1 mm.
double MetricSize(double shankDiameter);
