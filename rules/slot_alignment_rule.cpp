#include "rules/slot_alignment_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/alignment_support.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"
#include "rules/rule_units.h"
#include "util/texts.h"

namespace {
constexpr long kOffset = SlotAlignmentParams::kOffset.id;
constexpr long kSecondOffset = SlotAlignmentParams::kSecondOffset.id;
constexpr long kFirstSwitch = SlotAlignmentParams::kDirection.id;
constexpr long kSecondSwitch = SlotAlignmentParams::kWidth.id;
// Settings older than this lack the two switches.
constexpr double kSwitchVersion = 3.5;
}  // namespace

CZEBASMSlotAlignmentCheckRule::CZEBASMSlotAlignmentCheckRule(ZebStringId nameId,
                                                             ZebStringId summaryId,
                                                             int32_t dialogImageId) {
    FillRuleRecord(*this, {.nameId = nameId,
                           .summaryId = summaryId,
                           .severity = 1,
                           .dialogImageId = dialogImageId,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

void CZEBASMSlotAlignmentCheckRule::InitParameters() {
    AddParameters(*this, SlotAlignmentParams::kAll);
    IsPopulated = true;
}

void CZEBASMSlotAlignmentCheckRule::RebuildSummary() {
    RebuildOffsetSummary(*this, kOffset, IDS_SUMMARY_SLOT_ALIGNMENT);
}

long CZEBASMSlotAlignmentCheckRule::Evaluate(void*, void*, void*) { return -3; }

void CZEBASMSlotAlignmentCheckRule::ImportFromXML(ZebXMLNode* node) {
    if (!node) return;
    RemoveFirstValue(*this, kOffset);
    RemoveFirstValue(*this, kSecondOffset);
    RemoveFirstValue(*this, kSecondSwitch);
    RemoveFirstValue(*this, kFirstSwitch);
    ImportRuleXML(this, node);
    if (ParentVersionWithoutV(node) < kSwitchVersion) {
        if (auto* p = FindTyped<bool>(*this, kSecondSwitch)) p->values.Add(false);
        if (auto* p = FindTyped<bool>(*this, kFirstSwitch)) p->values.Add(false);
    }
    RebuildSummary();
}

ZebXMLNode* CZEBASMSlotAlignmentCheckRule::ExportToXML() {
    ZebXMLNode* node = ExportRuleXML(this);
    AddDatabaseAttributes(*this, node);
    RebuildSummary();
    return node;
}

void CZEBASMSlotAlignmentCheckRule::ConvertUnits(const UnitSetting* from, const UnitSetting* to) {
    auto* offset = FindTyped<double>(*this, kOffset);
    auto* second = FindTyped<double>(*this, kSecondOffset);
    if (!to || !offset || !second) return;
    if (LengthUnitsDiffer(from, to)) {
        for (auto* p : {offset, second})
            if (!p->values.IsEmpty())
                p->values[0] = ConvertLength(p->values[0], from->LengthUnit, to->LengthUnit);
    }
    CurrentUnits = *to;
    CZebResourceScope scope;
    RebuildSummary();
}

void CZEBASMSlotAlignmentCheckRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_SLOT_ALIGNMENT);
    CZebResourceScope scope;
    RebuildSummary();
}
