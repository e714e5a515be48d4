#include "rules/fastener_engagement_len_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"

namespace {
constexpr long kLengths = FastenerEngagementParams::kLengths.id;
}

CZEBAssemblyFastenerEngagementLenRule::CZEBAssemblyFastenerEngagementLenRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_FASTENER_ENGAGEMENT_LENGTH,
                           .summaryId = IDS_SUMMARY_FASTENER_ENGAGEMENT_LENGTH,
                           .severity = 2,
                           .dialogImageId = 13030,
                           .summaryArgs = {L">="}});
    InitParameters();
}

void CZEBAssemblyFastenerEngagementLenRule::InitParameters() {
    AddParameters(*this, FastenerEngagementParams::kAll);
}

void CZEBAssemblyFastenerEngagementLenRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveAllValues(*this, kLengths);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyFastenerEngagementLenRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyFastenerEngagementLenRule::ConvertUnits(const UnitSetting* from,
                                                         const UnitSetting* to) {
    if (!to) return;
    if (LengthUnitsDiffer(from, to))
        ConvertLengthCells(FindTyped<ZebRow>(*this, kLengths), FastenerEngagementParams::kLengths,
                           from->LengthUnit, to->LengthUnit);
    CurrentUnits = *to;
}

void CZEBAssemblyFastenerEngagementLenRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_FASTENER_ENGAGEMENT_LENGTH);
}
