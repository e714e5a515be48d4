#include "rules/fastener_accessibility_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {}  // namespace

CZEBAssemblyFastenerAccessibilityRule::CZEBAssemblyFastenerAccessibilityRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_FASTENER_ACCESSIBILITY,
                           .summaryId = IDS_SUMMARY_FASTENER_ACCESSIBILITY,
                           .severity = 2,
                           .dialogImageId = 13060,
                           .summaryAsLoaded = true});
    InitParameters();
}

void CZEBAssemblyFastenerAccessibilityRule::InitParameters() {
    AddParameters(*this, FastenerAccessibilityParams::kAll);
}

void CZEBAssemblyFastenerAccessibilityRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    for (const ParamSpec& p : FastenerAccessibilityParams::kAll) RemoveFirstValue(*this, p.id);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyFastenerAccessibilityRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyFastenerAccessibilityRule::ConvertUnits(const UnitSetting*, const UnitSetting*) {}

void CZEBAssemblyFastenerAccessibilityRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_FASTENER_ACCESSIBILITY);
}
