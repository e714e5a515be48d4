#include "rules/fastener_clearance_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"

namespace {
constexpr long kClearances = FastenerClearanceParams::kConditionA.id;
constexpr long kAlternative = FastenerClearanceParams::kConditionB.id;

// Settings of older versions kept (name, A, B) in condition A only; B moves to a condition B row.
void MigrateOldLayout(ZebTypedParam<ZebRow>& clearances, ZebTypedParam<ZebRow>& alternative) {
    if (clearances.values.IsEmpty() || !alternative.values.IsEmpty()) return;
    for (ZebRow& row : clearances.values) {
        if (row.size() < 3) continue;
        alternative.values.Add(ZebRow{row[0], row[2], L""});
        row.Set(2, L"");
    }
}

// Only ">=" and "RANGE" make sense for a clearance limit.
void RepairOperator(ZebTypedParam<ZebRow>& p) {
    if (p.op != ZebOp_GreaterEqual && p.op != ZebOp_Range) p.op = ZebOp_GreaterEqual;
}

}  // namespace

CZEBAssemblyFastenerClearanceRule::CZEBAssemblyFastenerClearanceRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_FASTENER_CLEARANCE,
                           .summaryId = IDS_SUMMARY_FASTENER_CLEARANCE,
                           .severity = 2,
                           .dialogImageId = 13040,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

void CZEBAssemblyFastenerClearanceRule::InitParameters() {
    AddParameters(*this, FastenerClearanceParams::kAll);
}

void CZEBAssemblyFastenerClearanceRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveAllValues(*this, kClearances);
    RemoveAllValues(*this, kAlternative);
    ImportRuleXML(this, node);
    auto* clearances = FindTyped<ZebRow>(*this, kClearances);
    auto* alternative = FindTyped<ZebRow>(*this, kAlternative);
    if (clearances && alternative) MigrateOldLayout(*clearances, *alternative);
    if (clearances) RepairOperator(*clearances);
    if (alternative) RepairOperator(*alternative);
}

ZebXMLNode* CZEBAssemblyFastenerClearanceRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyFastenerClearanceRule::ConvertUnits(const UnitSetting* from,
                                                     const UnitSetting* to) {
    if (!to) return;
    if (LengthUnitsDiffer(from, to)) {
        ConvertLengthCells(FindTyped<ZebRow>(*this, kClearances),
                           FastenerClearanceParams::kConditionA, from->LengthUnit, to->LengthUnit);
        ConvertLengthCells(FindTyped<ZebRow>(*this, kAlternative),
                           FastenerClearanceParams::kConditionB, from->LengthUnit, to->LengthUnit);
    }
    CurrentUnits = *to;
}

void CZEBAssemblyFastenerClearanceRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_FASTENER_CLEARANCE);
}
