#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <gp_Pnt.hxx>
#include <utility>
#include <vector>

#include "engine/assembly.h"

using PartPair = std::pair<int, int>;  // first < second

// Pairs of parts whose bounding boxes come within `gap` of each other, found through a bounding
// volume hierarchy over the boxes; sorted.
std::vector<PartPair> NearPairs(const std::vector<AssemblyPart>& parts, double gap);

// How two parts lie: the exact distance between them (0 when they touch or overlap) and the two
// closest points.
struct PairDistance {
    double distance = 0.0;
    gp_Pnt onFirst, onSecond;
};
PairDistance MeasureDistance(const AssemblyPart& a, const AssemblyPart& b);
// The volume the two parts share (kernel millimetres cubed).
double CommonVolume(const AssemblyPart& a, const AssemblyPart& b);

// Distances below this count as touching (kernel millimetres).
inline constexpr double kTouchTolerance = 1e-4;

// Runs work(i) for i in [0, count) on `threads` threads (0: one per processor), each index once,
// while the calling thread reports done(finished, count) now and then. Stops early, returning
// false, when `cancel` is set.
bool RunParallel(size_t count, unsigned threads, const std::function<void(size_t)>& work,
                 const std::function<void(size_t, size_t)>& done, const std::atomic<bool>* cancel);
