#include "rules/pref_comp_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {
constexpr long kTable = PrefCompParams::kTable.id;
}

CZEBAssemblyCheckPrefCompRule::CZEBAssemblyCheckPrefCompRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_PREFERRED_COMPONENTS,
                           .summaryId = IDS_SUMMARY_PREFERRED_COMPONENTS,
                           .severity = 2,
                           .dialogImageId = 13070,
                           .summaryAsLoaded = true});
    InitParameters();
}

void CZEBAssemblyCheckPrefCompRule::InitParameters() {
    AddParameters(*this, PrefCompParams::kAll);
    IsPopulated = true;
}

void CZEBAssemblyCheckPrefCompRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveFirstValue(*this, kTable);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyCheckPrefCompRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

// Component names carry no lengths; not even the units are recorded.
void CZEBAssemblyCheckPrefCompRule::ConvertUnits(const UnitSetting*, const UnitSetting*) {}

void CZEBAssemblyCheckPrefCompRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_PREFERRED_COMPONENTS);
}
