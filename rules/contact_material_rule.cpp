#include "rules/contact_material_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"

namespace {
constexpr long kMaterialPairs = ContactMaterialParams::kPairs.id;
constexpr long kDistance = ContactMaterialParams::kDistance.id;
}  // namespace

CZEBAssemblyCheckContactMaterialRule::CZEBAssemblyCheckContactMaterialRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_CONTACT_MATERIAL,
                           .summaryId = IDS_SUMMARY_CONTACT_MATERIAL,
                           .severity = 2,
                           .dialogImageId = 13100,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

// The rule counts as populated only once settings or the dialog have filled it.
void CZEBAssemblyCheckContactMaterialRule::InitParameters() {
    AddParameters(*this, ContactMaterialParams::kAll);
}

void CZEBAssemblyCheckContactMaterialRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveAllValues(*this, kMaterialPairs);
    RemoveFirstValue(*this, kDistance);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyCheckContactMaterialRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyCheckContactMaterialRule::ConvertUnits(const UnitSetting* from,
                                                        const UnitSetting* to) {
    if (!to) return;
    auto* distance = FindTyped<double>(*this, kDistance);
    if (distance && !distance->values.IsEmpty() && LengthUnitsDiffer(from, to))
        distance->values[0] = ConvertLength(distance->values[0], from->LengthUnit, to->LengthUnit);
    CurrentUnits = *to;
}

long CZEBAssemblyCheckContactMaterialRule::Import(ZebXMLDocument*, ZebXMLNode*, void*) { return 0; }

void CZEBAssemblyCheckContactMaterialRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_CONTACT_MATERIAL);
}
