// What the feature rules share: limits, the features recognised once, and how findings name them.
#include "engine/feature_rules.h"

#include <algorithm>
#include <cmath>

#include "engine/finding_text.h"
#include "engine/pair_search.h"
#include "framework/zeb_types.h"

std::wstring LengthText(double value, const CheckContext& context) {
    return Number(value * context.toReport) + L" " + context.unitText;
}

ZebFinding BoundFinding(const CheckContext& context, std::vector<std::wstring> parts,
                        std::wstring message, double value, const Bound& bound) {
    ZebFinding finding = Finding(
        context, std::move(parts),
        std::move(message) + L"; allowed " + bound.Text(context.toReport, context.unitText));
    finding.value = value * context.toReport;
    // A range is broken at one of its ends.
    finding.limit = (bound.op == ZebOp_Range && value > bound.upper ? bound.upper : bound.value) *
                    context.toReport;
    return finding;
}

bool Bound::Holds(double measured, double tolerance) const {
    switch (op) {
        case ZebOp_Less:
            return measured < value - tolerance;
        case ZebOp_LessEqual:
            return measured <= value + tolerance;
        case ZebOp_Greater:
            return measured > value + tolerance;
        case ZebOp_GreaterEqual:
            return measured >= value - tolerance;
        // Geometry is equal to a value within the kernel's touching distance.
        case ZebOp_Equal:
            return std::fabs(measured - value) <= std::max(tolerance, kTouchTolerance);
        case ZebOp_Range:
            return measured >= value - tolerance && measured <= upper + tolerance;
        default:
            return true;
    }
}

std::wstring Bound::Text(double scale, const std::wstring& unit) const {
    const std::wstring v = Number(value * scale);
    switch (op) {
        case ZebOp_Less:
            return L"< " + v + L" " + unit;
        case ZebOp_LessEqual:
            return L"<= " + v + L" " + unit;
        case ZebOp_Greater:
            return L"> " + v + L" " + unit;
        case ZebOp_GreaterEqual:
            return L">= " + v + L" " + unit;
        case ZebOp_Equal:
            return L"= " + v + L" " + unit;
        case ZebOp_Range:
            return L"between " + v + L" and " + Number(upper * scale) + L" " + unit;
        default:
            return L"any";
    }
}

bool FeatureCache::Recognize(const CheckContext& context) {
    if (m_features) return true;
    std::vector<PartFeatures> features;
    if (!RecognizeAssembly(m_assembly, context.threads, context.cancel, features)) return false;
    m_features = std::move(features);
    return true;
}

std::wstring HoleLabel(const Hole& hole, const AssemblyPart& part, const CheckContext& context) {
    return L"hole " + LengthText(hole.diameter, context) + L" of " + part.path;
}
