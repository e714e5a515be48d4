#include "rules/interference_detection_rule.h"

#include "app/assembly_rules_app.h"
#include "framework/unit_convertor.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {
constexpr long kSwitches[] = {InterferenceParams::kCheckAll.id, InterferenceParams::kFirstOption.id,
                              InterferenceParams::kGroups.id, InterferenceParams::kSecondOption.id};
constexpr long kVolumeLimit = InterferenceParams::kVolumeLimit.id;
constexpr long kComponentPairs = InterferenceParams::kComponents.id;
}  // namespace

CZEBAssemblyInterferenceDetectionRule::CZEBAssemblyInterferenceDetectionRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_INTERFERENCE_DETECTION,
                           .summaryId = IDS_SUMMARY_INTERFERENCE_DETECTION,
                           .severity = 1,
                           .dialogImageId = 13050});
    InitParameters();
}

void CZEBAssemblyInterferenceDetectionRule::InitParameters() {
    AddParameters(*this, InterferenceParams::kAll);
    IsPopulated = true;
}

void CZEBAssemblyInterferenceDetectionRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    for (long id : kSwitches) RemoveFirstValue(*this, id);
    // The framework keeps its own component pairs while the rule status word is set.
    if (RuleStatusWord == 0) RemoveAllValues(*this, kComponentPairs);
    RemoveFirstValue(*this, kVolumeLimit);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyInterferenceDetectionRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyInterferenceDetectionRule::ConvertUnits(const UnitSetting* from,
                                                         const UnitSetting* to) {
    if (!to) return;
    CurrentUnits = *to;
    auto* volume = FindTyped<double>(*this, kVolumeLimit);
    if (!from || from->LengthUnit == to->LengthUnit || !volume || volume->values.IsEmpty()) return;
    volume->values[0] = CZEBUnitConvertor::ConversionFromOneUnitToAnotherForVolume(
        volume->values[0], 1, from->LengthUnit, to->LengthUnit);
}

void CZEBAssemblyInterferenceDetectionRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_INTERFERENCE_DETECTION);
}
