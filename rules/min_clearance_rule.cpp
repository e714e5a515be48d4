#include "rules/min_clearance_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"
#include "util/number_text.h"
#include "util/texts.h"

namespace {
// The general clearance holds (switch, clearance); the pairs switch turns the part-pair list on.
constexpr long kGeneral = MinClearanceParams::kGeneral.id;
constexpr long kPairSwitch = MinClearanceParams::kPairsSwitch.id;
constexpr long kPairs = MinClearanceParams::kPairs.id;
constexpr long kOthers[] = {MinClearanceParams::kSameSubassembly.id,
                            MinClearanceParams::kTouching.id, MinClearanceParams::kHiddenSwitchA.id,
                            MinClearanceParams::kHiddenSwitchB.id};

double ValueAt(const ZebTypedParam<double>* p, int32_t index) {
    return p && p->values.GetSize() > index ? p->values[index] : 0.0;
}
}  // namespace

CZEBAssemblyMinClearanceBetPartsRule::CZEBAssemblyMinClearanceBetPartsRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_MIN_CLEARANCE,
                           .summaryId = IDS_SUMMARY_MIN_CLEARANCE,
                           .severity = 1,
                           .dialogImageId = 13020,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

void CZEBAssemblyMinClearanceBetPartsRule::InitParameters() {
    AddParameters(*this, MinClearanceParams::kAll);
    IsPopulated = true;
    Summary = GeneralClearanceSummary();
}

std::wstring CZEBAssemblyMinClearanceBetPartsRule::GeneralClearanceSummary() {
    const double clearance = ValueAt(FindTyped<double>(*this, kGeneral), 1);
    return ZebFormatText(
        LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
        {L">=", FormatTrimmedNumber(clearance, L"."), GetUnitText(CurrentUnits.LengthUnit)});
}

void CZEBAssemblyMinClearanceBetPartsRule::RebuildSummary() {
    std::wstring text;
    if (SwitchIsOn(ValueAt(FindTyped<double>(*this, kGeneral), 0)))
        text = GeneralClearanceSummary();
    if (SwitchIsOn(ValueAt(FindTyped<double>(*this, kPairSwitch), 0)))
        text += LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS);
    Summary = text;
}

void CZEBAssemblyMinClearanceBetPartsRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveAllValues(*this, kGeneral);
    RemoveFirstValue(*this, kPairSwitch);
    if (RuleStatusWord == 0) RemoveAllValues(*this, kPairs);
    for (long id : kOthers) RemoveFirstValue(*this, id);
    ImportRuleXML(this, node);
    CurrentUnits.LengthUnit = GetUnitAttribute(node);
    RebuildSummary();
}

ZebXMLNode* CZEBAssemblyMinClearanceBetPartsRule::ExportToXML() {
    CZebResourceScope scope;
    ZebXMLNode* node = ExportRuleXML(this);
    RebuildSummary();
    return node;
}

void CZEBAssemblyMinClearanceBetPartsRule::ConvertUnits(const UnitSetting* from,
                                                        const UnitSetting* to) {
    auto* general = FindTyped<double>(*this, kGeneral);
    if (!to || !general) return;
    if (LengthUnitsDiffer(from, to)) {
        if (general->values.GetSize() > 1)
            general->values[1] =
                ConvertLength(general->values[1], from->LengthUnit, to->LengthUnit);
        auto* pairs = FindTyped<ZebRow>(*this, kPairs);
        if (!pairs) return;
        ConvertLengthCells(pairs, MinClearanceParams::kPairs, from->LengthUnit, to->LengthUnit);
    }
    CurrentUnits = *to;
    CZebResourceScope scope;
    Summary = GeneralClearanceSummary();
}

void CZEBAssemblyMinClearanceBetPartsRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_MIN_CLEARANCE);
    CZebResourceScope scope;
    RebuildSummary();
}
