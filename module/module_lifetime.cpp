// The application object lives as long as the module is loaded.
#include "app/assembly_rules_app.h"
#include "module/entry_guard.h"
#include "module/rule_catalogue.h"

namespace {
void StartModule() {
    StartAssemblyRulesApp();
    // A rule's Configure finds its dialog through the registry.
    for (const RuleCatalogueEntry& entry : RuleCreationOrder())
        if (entry.dialog) RegisterRuleDialog(entry.nameId, entry.dialog);
}

struct ModuleLifetime {
    ModuleLifetime() {
        RunGuarded("loading the module", [] { StartModule(); });
    }
    ~ModuleLifetime() {
        RunGuarded("unloading the module", [] { StopAssemblyRulesApp(); });
    }
} g_lifetime;
}  // namespace
