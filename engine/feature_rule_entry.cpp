#include "engine/feature_rule_entry.h"

#include "database/service/data_helper.h"
#include "engine/rule_values.h"
#include "framework/case_fold.h"
#include "util/rule_params.h"

namespace {
using Hole_ = HoleAlignmentParams;
using Slot_ = SlotAlignmentParams;
using Clearance_ = FastenerClearanceParams;
using Engagement_ = FastenerEngagementParams;
using Alignment_ = FastenerAlignmentParams;
using Access_ = FastenerAccessibilityParams;
using Kinds_ = BoltScrewParams;
using Threads_ = RecommThreadParams;

// A value parameter as a limit: its operator and first value.
Bound BoundOf(CZebRule& rule, long id, double toKernel) {
    const ZebTypedParam<double>* p = Param<double>(rule, id);
    Bound bound;
    if (!p || p->values.GetSize() == 0) return bound;  // no limit: anything holds
    bound.op = p->op;
    bound.value = p->values[0] * toKernel;
    return bound;
}

bool Enabled(CZebRule& rule, long id) {
    CZebParamStorage* storage = rule.FindParameterInArray(id);
    return storage && storage->GetParam() && storage->GetParam()->status;
}

// Rows of (name, min, max) under the table's operator; a row without its minimum asks nothing.
std::vector<NamedBound> Conditions(CZebRule& rule, long id, double toKernel) {
    std::vector<NamedBound> rows;
    const ZebTypedParam<ZebRow>* p = Param<ZebRow>(rule, id);
    if (!p) return rows;
    const int op = p->op == ZebOp_Range ? ZebOp_Range : ZebOp_GreaterEqual;
    for (const ZebRow& row : p->values) {
        if (row.size() < 2 || row.Cell(0).empty() || row.Cell(1).empty()) continue;
        Bound bound{op, ParseLength(row.Cell(1)) * toKernel, 0.0};
        if (op == ZebOp_Range)
            bound.upper = ParseLength(row.size() > 2 ? row.Cell(2) : L"") * toKernel;
        rows.push_back({row.Cell(0), bound});
    }
    return rows;
}

std::vector<std::wstring> DatabaseFastenerNames() {
    std::list<std::wstring> names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db || db->GetFastenerNames(names) != ZebDbOk) return {};
    return {names.begin(), names.end()};
}

// A row of the thread size table: a size ("M8", or "8") and its pitch ("1.25", or "coarse" for
// the size's coarse pitch). Nothing when the row is neither.
ThreadDesignation SizeRow(const ZebRow& row) {
    if (row.size() < 2) return {};
    ThreadDesignation thread = ReadThread(row.Cell(0));
    if (!thread) thread = ReadThread(L"M" + row.Cell(0));
    const std::wstring& pitch = row.Cell(1);
    if (ZebEqualsNoCase(pitch, L"coarse")) {
        for (const MetricThread& metric : MetricThreads())
            if (thread.Fits({metric.size, 0.0})) thread.pitch = metric.coarsePitch;
    } else if (ParseLength(pitch) > 0) {
        thread.pitch = ParseLength(pitch);
    }
    return thread && thread.pitch > 0 ? thread : ThreadDesignation{};
}

ThreadPairOptions ReadThreadPairs(CZebRule& rule) {
    ThreadPairOptions options;
    for (const ZebRow& row : Rows(rule, Threads_::kThreadPairs.id))
        if (row.size() >= 2 && !row.Cell(0).empty() && !row.Cell(1).empty())
            options.pairs.emplace_back(row.Cell(0), row.Cell(1));
    // The rule's own sizes first when switched on, then the thread size database's.
    const ZebTypedParam<ZebRow>* sizes = Param<ZebRow>(rule, Threads_::kThreadSizes.id);
    if (sizes && sizes->criteriaStatus)
        for (const ZebRow& row : sizes->values)
            if (const ThreadDesignation thread = SizeRow(row)) options.pitches.push_back(thread);
    std::list<std::wstring> threads;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db && db->GetThreadSizes(threads) == ZebDbOk)
        for (const std::wstring& text : threads)
            if (const ThreadDesignation thread = ReadThread(text); thread.pitch > 0)
                options.pitches.push_back(thread);
    return options;
}
}  // namespace

bool IsFeatureRule(CZebRule& rule) {
    for (long id : {Hole_::kOffset.id, Slot_::kOffset.id, Clearance_::kConditionA.id,
                    Engagement_::kLengths.id, Alignment_::kOffset.id, Access_::kToolClearance.id,
                    Kinds_::kLengthStep.id, Threads_::kThreadPairs.id})
        if (rule.FindParameterInArray(id)) return true;
    return false;
}

bool CheckFeatureRule(CZebRule& rule, double toKernel, FeatureCache& cache,
                      const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (rule.FindParameterInArray(Hole_::kOffset.id)) {
        HoleAlignmentOptions options;
        options.offset = BoundOf(rule, Hole_::kOffset.id, toKernel);
        options.diameters = BoundOf(rule, Hole_::kTolerance.id, toKernel);
        options.through = Enabled(rule, Hole_::kThroughHoles.id);
        options.blind = Enabled(rule, Hole_::kBlindHoles.id);
        return CheckHoleAlignment(cache, options, DatabaseFastenerNames(), context, findings);
    }
    if (rule.FindParameterInArray(Slot_::kOffset.id)) {
        SlotAlignmentOptions options;
        options.offset = BoundOf(rule, Slot_::kOffset.id, toKernel);
        if (Enabled(rule, Slot_::kSecondOffset.id))
            options.ends = BoundOf(rule, Slot_::kSecondOffset.id, toKernel);
        options.sameWidth = Value<bool>(rule, Slot_::kWidth.id).value_or(false);
        options.sameDirection = Value<bool>(rule, Slot_::kDirection.id).value_or(false);
        return CheckSlotAlignment(cache, options, DatabaseFastenerNames(), context, findings);
    }
    if (rule.FindParameterInArray(Clearance_::kConditionA.id)) {
        FastenerClearanceOptions options;
        options.play = Conditions(rule, Clearance_::kConditionA.id, toKernel);
        options.headSpace = Conditions(rule, Clearance_::kConditionB.id, toKernel);
        return CheckFastenerClearance(cache, options, DatabaseFastenerNames(), context, findings);
    }
    if (rule.FindParameterInArray(Engagement_::kLengths.id)) {
        // The length is the least engagement, whatever operator the table carries.
        std::vector<NamedBound> lengths;
        for (const ZebRow& row : Rows(rule, Engagement_::kLengths.id))
            if (row.size() >= 2 && !row.Cell(0).empty())
                lengths.push_back(
                    {row.Cell(0), {ZebOp_GreaterEqual, ParseLength(row.Cell(1)) * toKernel, 0.0}});
        return CheckFastenerEngagement(cache, lengths, DatabaseFastenerNames(), context, findings);
    }
    if (rule.FindParameterInArray(Alignment_::kOffset.id)) {
        FastenerAlignmentOptions options;
        options.offset = BoundOf(rule, Alignment_::kOffset.id, toKernel);
        options.parallel = Enabled(rule, Alignment_::kSwitch.id);
        return CheckFastenerAlignment(cache, options, DatabaseFastenerNames(), context, findings);
    }
    if (rule.FindParameterInArray(Access_::kToolClearance.id)) {
        // Multiples of the head's diameter: no unit.
        AccessibilityOptions options;
        options.tool = Value<double>(rule, Access_::kToolClearance.id).value_or(options.tool);
        if (static_cast<long>(Value<double>(rule, Access_::kSecondSwitch.id).value_or(0.0)) != 0)
            options.second = Value<double>(rule, Access_::kSecondClearance.id);
        return CheckFastenerAccessibility(cache, options, DatabaseFastenerNames(), context,
                                          findings);
    }
    if (rule.FindParameterInArray(Threads_::kThreadPairs.id))
        return CheckRecommendedThreads(cache, ReadThreadPairs(rule), DatabaseFastenerNames(),
                                       context, findings);
    if (rule.FindParameterInArray(Kinds_::kLengthStep.id)) {
        RationalizationOptions options;
        options.sameHead = Enabled(rule, Kinds_::kSameHead.id);
        options.sameMaterial = Enabled(rule, Kinds_::kSameMaterial.id);
        options.together = Enabled(rule, Kinds_::kTogether.id);
        const auto step = [&](long id) -> std::optional<Bound> {
            const ZebTypedParam<double>* p = Param<double>(rule, id);
            if (!p || !p->criteriaStatus) return std::nullopt;
            return BoundOf(rule, id, toKernel);
        };
        options.lengthStep = step(Kinds_::kLengthStep.id);
        options.diameterStep = step(Kinds_::kDiameterStep.id);
        return CheckRationalization(cache, options, DatabaseFastenerNames(), context, findings);
    }
    return true;
}
