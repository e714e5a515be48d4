#include "rules/bolt_screw_rationalization_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {
constexpr long kSameHead = BoltScrewParams::kSameHead.id;
constexpr long kSameMaterial = BoltScrewParams::kSameMaterial.id;
constexpr long kLengthStep = BoltScrewParams::kLengthStep.id;
constexpr long kDiameterStep = BoltScrewParams::kDiameterStep.id;
}  // namespace

CZEBAssemblyBoltScrewRationalizationRule::CZEBAssemblyBoltScrewRationalizationRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_BOLT_SCREW_RATIONALIZATION,
                           .summaryId = IDS_SUMMARY_BOLT_SCREW_RATIONALIZATION,
                           .severity = 2,
                           .dialogImageId = 13180,
                           .summaryAsLoaded = true,
                           .setStatus = false});
    InitParameters();
}

void CZEBAssemblyBoltScrewRationalizationRule::InitParameters() {
    AddParameters(*this, BoltScrewParams::kAll);
    IsPopulated = true;
}

void CZEBAssemblyBoltScrewRationalizationRule::RebuildSummary() {
    CZebParamStorage* head = FindParameterInArray(kSameHead);
    CZebParamStorage* material = FindParameterInArray(kSameMaterial);
    CZebParamStorage* length = FindParameterInArray(kLengthStep);
    CZebParamStorage* diameter = FindParameterInArray(kDiameterStep);
    if (!head || !material || !length || !diameter) return;
    std::wstring text = L"Bolts & Screws can be rationalized based on same diameter";
    if (head->GetParam()->status) text += L", same head type";
    if (material->GetParam()->status) text += L", same material";
    if (length->GetParam()->criteriaStatus)
        text += L", same length or difference between consecutive lengths";
    if (diameter->GetParam()->criteriaStatus) text += L", difference between consecutive diameters";
    Summary = text + L".";
}

// Switch parameters hold no default value, so only the two steps are replaced.
void CZEBAssemblyBoltScrewRationalizationRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveFirstValue(*this, kLengthStep);
    RemoveFirstValue(*this, kDiameterStep);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyBoltScrewRationalizationRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

bool CZEBAssemblyBoltScrewRationalizationRule::IsApplicable(void*) { return false; }

void CZEBAssemblyBoltScrewRationalizationRule::ConvertUnits(const UnitSetting*,
                                                            const UnitSetting*) {}

void CZEBAssemblyBoltScrewRationalizationRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_BOLT_SCREW_RATIONALIZATION);
    RebuildSummary();
}
