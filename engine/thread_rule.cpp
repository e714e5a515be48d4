// Recommended thread types in a connection: the thread of each fastener and of the nut or tapped
// hole it screws into, against the pairs the rule recommends.
#include "engine/feature_rules.h"
#include "engine/finding_text.h"

namespace {
// A finding lists at most this many of the recommended pairs.
constexpr size_t kPairsListed = 3;

// One side of a connection: its thread, what it is, and why its thread is not known.
struct ThreadSide {
    ThreadDesignation thread;
    std::wstring what;     // "bolt (top/bolt)", "tapped hole 6.8 mm of top/block"
    std::wstring unknown;  // used when `thread` is none
    std::wstring Label() const { return thread ? thread.Text() + L" " + what : what; }
};

// Names decide over geometry: the product's name, then the instance's.
ThreadDesignation NamedThread(const AssemblyPart& part) {
    if (const ThreadDesignation thread = ThreadInName(part.product)) return thread;
    return ThreadInName(part.instance);
}

std::wstring PartText(const AssemblyPart& part, const wchar_t* otherwise) {
    return (part.product.empty() ? std::wstring(otherwise) : part.product) + L" (" + part.path +
           L")";
}

ThreadSide FastenerSide(const AssemblyPart& part, const FastenerShape& shape,
                        const CheckContext& context) {
    ThreadSide side{NamedThread(part), PartText(part, L"fastener"), L""};
    if (!side.thread) side.thread.size = MetricSize(shape.shankDiameter);
    side.unknown = L"neither the names of " + part.path + L" nor its " +
                   LengthText(shape.shankDiameter, context) + L" shank give a metric thread";
    return side;
}

// What the fastener of `joint` screws into; `hint` is the fastener's size.
ThreadSide MateSide(const FastenerJoint& joint, const FastenerScene& scene, double hint,
                    const CheckContext& context) {
    if (joint.nut >= 0) {
        const AssemblyPart& nut = scene.parts[joint.nut];
        const double bore = scene.features[joint.nut].holes.front().diameter;
        ThreadSide side{NamedThread(nut), PartText(nut, L"nut"), L""};
        if (!side.thread) side.thread.size = InternalThreadSize(bore, hint);
        side.unknown = L"neither the names of " + nut.path + L" nor its " +
                       LengthText(bore, context) + L" bore give a metric thread";
        return side;
    }
    // A part holds holes of many sizes, so its names say nothing of one of them.
    const AssemblyPart& part = scene.parts[joint.tapped.part];
    const Hole& hole = scene.features[joint.tapped.part].holes[joint.tapped.hole];
    ThreadSide side{{}, L"tapped " + HoleLabel(hole, part, context), L""};
    side.thread.size = InternalThreadSize(hole.diameter, hint);
    side.unknown = L"the tapped hole's " + LengthText(hole.diameter, context) +
                   L" bore gives no metric thread";
    return side;
}

// A bare size takes the pitch the tables give it.
void CompletePitch(ThreadDesignation& thread, const std::vector<ThreadDesignation>& pitches) {
    if (!thread || thread.pitch > 0) return;
    for (const ThreadDesignation& row : pitches)
        if (row.pitch > 0 && row.Fits(thread)) {
            thread.pitch = row.pitch;
            return;
        }
}

bool Recommended(const ThreadPairOptions& options, const ThreadDesignation& a,
                 const ThreadDesignation& b) {
    for (const auto& [firstText, secondText] : options.pairs) {
        const ThreadDesignation first = ReadThread(firstText), second = ReadThread(secondText);
        if (first && second &&
            ((first.Fits(a) && second.Fits(b)) || (first.Fits(b) && second.Fits(a))))
            return true;
    }
    return false;
}

// "M8 / M8, M10 / M10, M12 / M12 and 2 more"
std::wstring PairsText(const ThreadPairOptions& options) {
    std::wstring text;
    for (size_t i = 0; i < options.pairs.size() && i < kPairsListed; ++i)
        text += (i > 0 ? L", " : L"") + options.pairs[i].first + L" / " + options.pairs[i].second;
    if (options.pairs.size() > kPairsListed)
        text += L" and " + std::to_wstring(options.pairs.size() - kPairsListed) + L" more";
    return text;
}
}  // namespace

bool CheckRecommendedThreads(FeatureCache& cache, const ThreadPairOptions& options,
                             const std::vector<std::wstring>& fastenerNames,
                             const CheckContext& context, std::vector<ZebFinding>& findings) {
    // No pair recommended: the rule asks nothing.
    if (options.pairs.empty()) return true;
    if (!cache.Recognize(context)) return false;
    const FastenerScene scene = cache.Scene(fastenerNames);
    for (const FastenerJoint& joint : scene.fasteners.joints) {
        if (!joint.Ends()) continue;  // no connection to check
        const AssemblyPart& part = scene.parts[joint.fastener];
        ThreadSide fastener = FastenerSide(part, scene.features[joint.fastener].fastener, context);
        ThreadSide mate = MateSide(joint, scene, fastener.thread.size, context);
        CompletePitch(fastener.thread, options.pitches);
        CompletePitch(mate.thread, options.pitches);
        const std::vector<std::wstring> both{
            part.path, scene.parts[joint.nut >= 0 ? joint.nut : joint.tapped.part].path};
        const std::wstring connection = fastener.Label() + L" in " + mate.Label() + L": ";
        if (!fastener.thread || !mate.thread) {
            std::wstring why = fastener.thread ? L"" : fastener.unknown;
            if (!mate.thread) why += (why.empty() ? L"" : L"; ") + mate.unknown;
            findings.push_back(Finding(context, both, connection + why));
        } else if (!Recommended(options, fastener.thread, mate.thread)) {
            findings.push_back(Finding(context, both,
                                       connection +
                                           L"not a recommended pair of threads; "
                                           L"recommended " +
                                           PairsText(options)));
        }
    }
    return true;
}
