#include "rules/hole_alignment_rule.h"

#include <memory>

#include "app/assembly_rules_app.h"
#include "framework/zeb_xml.h"
#include "rules/alignment_support.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"
#include "util/texts.h"

namespace {
constexpr long kHoleOffset = HoleAlignmentParams::kOffset.id;
constexpr long kSecond = HoleAlignmentParams::kThroughHoles.id;
constexpr long kThird = HoleAlignmentParams::kBlindHoles.id;
constexpr long kTolerance = HoleAlignmentParams::kTolerance.id;
constexpr double kDefaultOffset = HoleAlignmentParams::kOffset.defaults.values[0];
constexpr double kDefaultTolerance = HoleAlignmentParams::kTolerance.defaults.values[0];
// Settings older than this lack the criteria defaults of the offset and the two hole kinds.
constexpr double kCriteriaVersion = 3.3;

double HoleSettingsVersion(ZebXMLNode* node) {
    return ParentVersionHasV(node) ? ParentVersionWithoutV(node) : 0.0;
}
}  // namespace

CZEBASMHoleAlignmentCheckRule::CZEBASMHoleAlignmentCheckRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_HOLE_ALIGNMENT,
                           .summaryId = IDS_SUMMARY_HOLE_ALIGNMENT,
                           .severity = 1,
                           .dialogImageId = 13010,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

void CZEBASMHoleAlignmentCheckRule::InitParameters() {
    AddParameters(*this, HoleAlignmentParams::kAll);
    IsPopulated = true;
    RebuildSummary();
}

void CZEBASMHoleAlignmentCheckRule::RebuildSummary() {
    RebuildOffsetSummary(*this, kHoleOffset, IDS_SUMMARY_HOLE_ALIGNMENT);
}

long CZEBASMHoleAlignmentCheckRule::Evaluate(void*, void*, void*) { return -3; }

void CZEBASMHoleAlignmentCheckRule::ImportFromXML(ZebXMLNode* node) {
    if (!node) return;
    RemoveFirstValue(*this, kHoleOffset);
    RemoveFirstValue(*this, kSecond);
    RemoveFirstValue(*this, kTolerance);
    // A detached element has no parent to say in which version and unit it was written.
    std::unique_ptr<ZebXMLNode> parent(node->GetParentNode());
    if (!parent) return;
    ImportRuleXML(this, node);
    if (HoleSettingsVersion(node) < kCriteriaVersion) {
        if (auto* offset = FindTyped<double>(*this, kHoleOffset)) {
            offset->criteriaStatus = true;
            offset->values.Add(kDefaultOffset);
        }
        if (auto* second = FindTyped<double>(*this, kSecond)) second->criteriaStatus = true;
        if (auto* third = FindTyped<double>(*this, kThird)) third->criteriaStatus = false;
    }
    CurrentUnits.LengthUnit = GetUnitAttribute(node);
    auto* tolerance = FindTyped<double>(*this, kTolerance);
    if (tolerance && tolerance->values.IsEmpty()) {
        const int32_t unit = CurrentUnits.LengthUnit;
        tolerance->values.Add(unit != 0 ? ConvertLength(kDefaultTolerance, 0, unit)
                                        : kDefaultTolerance);
    }
    RebuildSummary();
}

ZebXMLNode* CZEBASMHoleAlignmentCheckRule::ExportToXML() {
    ZebXMLNode* node = ExportRuleXML(this);
    AddDatabaseAttributes(*this, node);
    RebuildSummary();
    return node;
}

void CZEBASMHoleAlignmentCheckRule::ConvertUnits(const UnitSetting* from, const UnitSetting* to) {
    auto* offset = FindTyped<double>(*this, kHoleOffset);
    auto* tolerance = FindTyped<double>(*this, kTolerance);
    if (!to || !offset || !tolerance || !FindParameterInArray(kSecond)) return;
    if (LengthUnitsDiffer(from, to)) {
        for (auto* p : {offset, tolerance})
            if (!p->values.IsEmpty())
                p->values[0] = ConvertLength(p->values[0], from->LengthUnit, to->LengthUnit);
    }
    CurrentUnits = *to;
    CZebResourceScope scope;
    RebuildSummary();
}

void CZEBASMHoleAlignmentCheckRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_HOLE_ALIGNMENT);
    CZebResourceScope scope;
    RebuildSummary();
}
