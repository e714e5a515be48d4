#include "rules/fastener_alignment_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"
#include "util/number_text.h"
#include "util/texts.h"

namespace {
constexpr long kOffset = FastenerAlignmentParams::kOffset.id;
constexpr long kOperatorHolder = 8011;
constexpr long kSummarySwitch = 8021;
}  // namespace

CZEBAssemblyFastenerAlignmentRule::CZEBAssemblyFastenerAlignmentRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_FASTENER_ALIGNMENT,
                           .summaryId = IDS_SUMMARY_FASTENER_ALIGNMENT,
                           .severity = 2,
                           .dialogImageId = 13150,
                           .summaryAsLoaded = true});
    InitParameters();
}

void CZEBAssemblyFastenerAlignmentRule::InitParameters() {
    AddParameters(*this, FastenerAlignmentParams::kAll);
    IsPopulated = true;
    UpdateSummary();
}

void CZEBAssemblyFastenerAlignmentRule::UpdateSummary() {
    CZebParamStorage* holder = FindParameterInArray(kOperatorHolder);
    auto* summarySwitch = FindTyped<double>(*this, kSummarySwitch);
    auto* offset = FindTyped<double>(*this, kOffset);
    if (!holder || !summarySwitch || summarySwitch->values.IsEmpty() || !offset) return;
    if (!SwitchIsOn(summarySwitch->values[0])) {
        Summary = LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT);
        return;
    }
    const std::wstring value =
        offset->values.IsEmpty() ? L"" : FormatTrimmedNumber(offset->values[0], L".");
    Summary = ZebFormatText(
        LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT_LIMIT),
        {OperatorToText(holder->GetParam()->op), value, GetUnitText(CurrentUnits.LengthUnit)});
}

void CZEBAssemblyFastenerAlignmentRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveFirstValue(*this, kOffset);
    ImportRuleXML(this, node);
    CurrentUnits.LengthUnit = GetUnitAttribute(node);
}

ZebXMLNode* CZEBAssemblyFastenerAlignmentRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyFastenerAlignmentRule::ConvertUnits(const UnitSetting* from,
                                                     const UnitSetting* to) {
    auto* offset = FindTyped<double>(*this, kOffset);
    if (!to || !offset || offset->values.IsEmpty()) return;
    if (LengthUnitsDiffer(from, to))
        offset->values[0] = ConvertLength(offset->values[0], from->LengthUnit, to->LengthUnit);
    CurrentUnits = *to;
    UpdateSummary();
}

void CZEBAssemblyFastenerAlignmentRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_FASTENER_ALIGNMENT);
    CZebResourceScope scope;
    UpdateSummary();
}
