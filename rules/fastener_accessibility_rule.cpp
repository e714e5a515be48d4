#include "rules/fastener_accessibility_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {
constexpr long kToolClearance = 6080;
constexpr long kSecondClearance = 6092;
constexpr long kToolSwitch = 6093;
}  // namespace

CZEBAssemblyFastenerAccessibilityRule::CZEBAssemblyFastenerAccessibilityRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_FASTENER_ACCESSIBILITY,
                           .summaryId = IDS_SUMMARY_FASTENER_ACCESSIBILITY,
                           .severity = 2,
                           .dialogImageId = 13060,
                           .summaryAsLoaded = true});
    InitParameters();
}

void CZEBAssemblyFastenerAccessibilityRule::InitParameters() {
    AddParameter(*this, ZebType_Double, kToolClearance, ZebOp_GreaterEqual, ZebParam_Value, true);
    AddParameter(*this, ZebType_Double, kSecondClearance, ZebOp_GreaterEqual, ZebParam_Value, true);
    AddParameter(*this, ZebType_Double, kToolSwitch, ZebOp_Equal, ZebParam_Value, true);
    FindTyped<double>(*this, kToolClearance)->values.Add(1.2);
    FindTyped<double>(*this, kSecondClearance)->values.Add(2.5);
    FindTyped<double>(*this, kToolSwitch)->values.Add(0.0);
}

void CZEBAssemblyFastenerAccessibilityRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveFirstValue(*this, kToolClearance);
    RemoveFirstValue(*this, kSecondClearance);
    RemoveFirstValue(*this, kToolSwitch);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyFastenerAccessibilityRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyFastenerAccessibilityRule::ConvertUnits(const UnitSetting*, const UnitSetting*) {}

void CZEBAssemblyFastenerAccessibilityRule::Configure() { RunRuleDialog(*this, IDS_RULE_FASTENER_ACCESSIBILITY); }
