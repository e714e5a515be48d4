#include "rules/recomm_thread_connection_rule.h"

#include "app/assembly_rules_app.h"
#include "rules/rule_dialog_registry.h"
#include "rules/rule_record.h"

namespace {
constexpr long kThreadPairs = RecommThreadParams::kThreadPairs.id;
}  // namespace

CZEBAssemblyRecommThreadConnectionRule::CZEBAssemblyRecommThreadConnectionRule() {
    FillRuleRecord(*this, {.nameId = IDS_RULE_RECOMM_THREAD_TYPES,
                           .summaryId = IDS_SUMMARY_RECOMM_THREAD_TYPES,
                           .severity = 2,
                           .dialogImageId = 13120,
                           .summaryArgs = {L"", L"", L""}});
    InitParameters();
}

void CZEBAssemblyRecommThreadConnectionRule::InitParameters() {
    AddParameters(*this, RecommThreadParams::kAll);
}

// The thread sizes are not cleared first: stored rows are added to the ones held.
void CZEBAssemblyRecommThreadConnectionRule::ImportFromXML(ZebXMLNode* node) {
    CZebResourceScope scope;
    RemoveAllValues(*this, kThreadPairs);
    ImportRuleXML(this, node);
}

ZebXMLNode* CZEBAssemblyRecommThreadConnectionRule::ExportToXML() {
    CZebResourceScope scope;
    return ExportRuleXML(this);
}

void CZEBAssemblyRecommThreadConnectionRule::ConvertUnits(const UnitSetting*,
                                                          const UnitSetting* to) {
    if (to) CurrentUnits = *to;
}

long CZEBAssemblyRecommThreadConnectionRule::Import(ZebXMLDocument*, ZebXMLNode*, void*) {
    return 0;
}

void CZEBAssemblyRecommThreadConnectionRule::Configure() {
    RunRuleDialog(*this, IDS_RULE_RECOMM_THREAD_TYPES);
}
