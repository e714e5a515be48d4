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
constexpr long kHoleOffset = 7800;
constexpr long kSecond = 7092;
constexpr long kThird = 7094;
constexpr long kTolerance = 9084;
constexpr double kDefaultOffset = 0.5;
constexpr double kDefaultTolerance = 0.1;
// Settings older than this lack the criteria defaults of 7800, 7092 and 7094.
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
    for (long id : {kHoleOffset, kSecond, kThird, kTolerance})
        AddParameter(*this, ZebType_Double, id, ZebOp_LessEqual, ZebParam_Value, true);
    auto* offset = FindTyped<double>(*this, kHoleOffset);
    offset->values.Add(kDefaultOffset);
    offset->criteriaStatus = true;
    FindTyped<double>(*this, kSecond)->criteriaStatus = false;
    FindTyped<double>(*this, kThird)->criteriaStatus = false;
    FindTyped<double>(*this, kTolerance)->values.Add(kDefaultTolerance);
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
        tolerance->values.Add(unit != 0 ? ConvertLength(kDefaultTolerance, 0, unit) : kDefaultTolerance);
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
            if (!p->values.IsEmpty()) p->values[0] = ConvertLength(p->values[0], from->LengthUnit, to->LengthUnit);
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
