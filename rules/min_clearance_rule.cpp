#include "rules/min_clearance_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"
#include "util/number_text.h"
#include "util/texts.h"

namespace {
// 2062 holds (switch, general clearance); 2049 switches the part-pair list 2048.
constexpr long kGeneral = 2062;
constexpr long kPairSwitch = 2049;
constexpr long kPairs = 2048;
// The dialog's option pair (1.0 first option, 0.0 second) and its check box; the two switches
// after them are stored but not shown.
constexpr long kOptionChoice = 2063;
constexpr long kOptionSwitch = 6072;
constexpr long kNotShownSwitchA = 6073;
constexpr long kNotShownSwitchB = 8095;
constexpr long kOthers[] = {kOptionChoice, kOptionSwitch, kNotShownSwitchA, kNotShownSwitchB};

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
    AddParameter(*this, ZebType_Double, kGeneral, ZebOp_GreaterEqual, ZebParam_Value, true);
    AddParameter(*this, ZebType_Double, kPairSwitch, ZebOp_Equal, ZebParam_Value, true);
    AddParameter(*this, ZebType_Row, kPairs, ZebOp_Equal, ZebParam_Table, true);
    AddParameter(*this, ZebType_Double, kOptionChoice, ZebOp_GreaterEqual, ZebParam_Value, true);
    for (long id : {kOptionSwitch, kNotShownSwitchA, kNotShownSwitchB})
        AddParameter(*this, ZebType_Bool, id, ZebOp_Equal, ZebParam_Switch, true);
    auto* general = FindTyped<double>(*this, kGeneral);
    general->values.Add(1.0);
    general->values.Add(0.1);
    FindTyped<double>(*this, kPairSwitch)->values.Add(0.0);
    FindTyped<double>(*this, kOptionChoice)->values.Add(1.0);
    FindTyped<bool>(*this, kOptionSwitch)->values.Add(false);
    FindTyped<bool>(*this, kNotShownSwitchA)->values.Add(true);
    FindTyped<bool>(*this, kNotShownSwitchB)->values.Add(false);
    IsPopulated = true;
    Summary = GeneralClearanceSummary();
}

std::wstring CZEBAssemblyMinClearanceBetPartsRule::GeneralClearanceSummary() {
    const double clearance = ValueAt(FindTyped<double>(*this, kGeneral), 1);
    return ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE), {L">=", FormatTrimmedNumber(clearance, L"."),
                                                     GetUnitText(CurrentUnits.LengthUnit)});
}

void CZEBAssemblyMinClearanceBetPartsRule::RebuildSummary() {
    std::wstring text;
    if (SwitchIsOn(ValueAt(FindTyped<double>(*this, kGeneral), 0))) text = GeneralClearanceSummary();
    if (SwitchIsOn(ValueAt(FindTyped<double>(*this, kPairSwitch), 0))) text += LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS);
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

void CZEBAssemblyMinClearanceBetPartsRule::ConvertUnits(const UnitSetting* from, const UnitSetting* to) {
    auto* general = FindTyped<double>(*this, kGeneral);
    if (!to || !general) return;
    if (LengthUnitsDiffer(from, to)) {
        if (general->values.GetSize() > 1)
            general->values[1] = ConvertLength(general->values[1], from->LengthUnit, to->LengthUnit);
        auto* pairs = FindTyped<ZebRow>(*this, kPairs);
        if (!pairs) return;
        ConvertLengthCells(pairs, {2}, from->LengthUnit, to->LengthUnit);
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
