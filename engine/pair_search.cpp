#include "engine/pair_search.h"

#include <BRepAlgoAPI_Common.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepGProp.hxx>
#include <BVH_BoxSet.hxx>
#include <BVH_LinearBuilder.hxx>
#include <GProp_GProps.hxx>
#include <Standard_Failure.hxx>
// The traversal's metrics are declared without a value and set by RejectNode (below); GCC cannot
// see that where the template is used.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <BVH_Traverse.hxx>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {
using BoxSet = BVH_BoxSet<Standard_Real, 3, int>;

BVH_Box<Standard_Real, 3> GrownBox(const Bnd_Box& box, double grow) {
    if (box.IsVoid()) return {};
    double x0, y0, z0, x1, y1, z1;
    box.Get(x0, y0, z0, x1, y1, z1);
    return BVH_Box<Standard_Real, 3>(BVH_Vec3d(x0 - grow, y0 - grow, z0 - grow),
                                     BVH_Vec3d(x1 + grow, y1 + grow, z1 + grow));
}

// Collects the parts after `self` whose boxes overlap the query box.
class OverlapQuery : public BVH_Traverse<Standard_Real, 3, BoxSet, bool> {
public:
    OverlapQuery(BoxSet& set, const BVH_Box<Standard_Real, 3>& box, int self,
                 std::vector<int>& found)
        : m_box(box), m_self(self), m_found(found) {
        SetBVHSet(&set);
    }
    // No metric is used, but the traversal copies the one it hands in, so it is given a value.
    Standard_Boolean RejectNode(const BVH_Vec3d& min, const BVH_Vec3d& max,
                                bool& metric) const override {
        metric = false;
        return m_box.IsOut(min, max);
    }
    Standard_Boolean Accept(const int index, const bool&) override {
        const int part = myBVHSet->Element(index);
        if (part <= m_self || m_box.IsOut(myBVHSet->Box(index))) return false;
        m_found.push_back(part);
        return true;
    }

private:
    BVH_Box<Standard_Real, 3> m_box;
    int m_self;
    std::vector<int>& m_found;
};
}  // namespace

std::vector<PartPair> NearPairs(const std::vector<AssemblyPart>& parts, double gap) {
    // Each box grows by half the gap, so two boxes meet when they are within the gap.
    const double grow = gap / 2 + kTouchTolerance;
    BoxSet set(new BVH_LinearBuilder<Standard_Real, 3>());
    set.SetSize(parts.size());
    for (size_t i = 0; i < parts.size(); ++i)
        if (!parts[i].box.IsVoid()) set.Add(static_cast<int>(i), GrownBox(parts[i].box, grow));
    set.Build();
    std::vector<PartPair> pairs;
    std::vector<int> found;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].box.IsVoid()) continue;
        found.clear();
        OverlapQuery query(set, GrownBox(parts[i].box, grow), static_cast<int>(i), found);
        query.Select();
        for (int j : found) pairs.emplace_back(static_cast<int>(i), j);
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

PairDistance MeasureDistance(const AssemblyPart& a, const AssemblyPart& b) {
    BRepExtrema_DistShapeShape measure(a.shape, b.shape);
    PairDistance result;
    if (!measure.IsDone() || measure.NbSolution() == 0)
        throw Standard_Failure("no distance between the parts");
    result.distance = measure.InnerSolution() ? 0.0 : measure.Value();
    result.onFirst = measure.PointOnShape1(1);
    result.onSecond = measure.PointOnShape2(1);
    return result;
}

double CommonVolume(const AssemblyPart& a, const AssemblyPart& b) {
    BRepAlgoAPI_Common common(a.shape, b.shape);
    if (!common.IsDone()) throw Standard_Failure("no common volume of the parts");
    GProp_GProps props;
    BRepGProp::VolumeProperties(common.Shape(), props);
    return std::max(0.0, props.Mass());
}

bool RunParallel(size_t count, unsigned threads, const std::function<void(size_t)>& work,
                 const std::function<void(size_t, size_t)>& done, const std::atomic<bool>* cancel) {
    if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
    threads = static_cast<unsigned>(std::min<size_t>(threads, std::max<size_t>(count, 1)));
    std::atomic<size_t> next{0}, finished{0};
    std::mutex mutex;
    std::condition_variable wake;
    const auto cancelled = [cancel] { return cancel && cancel->load(std::memory_order_relaxed); };
    {
        std::vector<std::jthread> workers;
        for (unsigned t = 0; t < threads; ++t)
            workers.emplace_back([&] {
                for (size_t i; !cancelled() && (i = next.fetch_add(1)) < count;) {
                    work(i);
                    if (finished.fetch_add(1) + 1 == count) {
                        std::lock_guard lock(mutex);
                        wake.notify_all();
                    }
                }
            });
        std::unique_lock lock(mutex);
        while (finished.load() < count && !cancelled()) {
            if (done) done(finished.load(), count);
            wake.wait_for(lock, std::chrono::milliseconds(50));
        }
    }
    if (cancelled()) return false;
    if (done) done(count, count);
    return true;
}
