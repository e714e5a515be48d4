#include "rules/rule_dialog_registry.h"

#include <map>

#include "app/assembly_rules_app.h"
#include "framework/zeb_rule.h"
#include "util/texts.h"

namespace {
std::map<ZebStringId, RuleDialogRunner>& Runners() {
    static std::map<ZebStringId, RuleDialogRunner> runners;
    return runners;
}
}  // namespace

void RegisterRuleDialog(ZebStringId ruleName, RuleDialogRunner runner) {
    Runners()[ruleName] = runner;
}

bool RunRuleDialog(CZebRule& rule, ZebStringId ruleName) {
    const auto found = Runners().find(ruleName);
    if (found == Runners().end() || !found->second) return false;
    CZebResourceScope scope;
    found->second(rule, GetUnitText(rule.CurrentUnits.LengthUnit));
    return true;
}
