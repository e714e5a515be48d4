// The application object lives as long as the module is loaded.
#include "app/assembly_rules_app.h"
#include "module/entry_guard.h"

namespace {
struct ModuleLifetime {
    ModuleLifetime() {
        RunGuarded("loading the module", [] { StartAssemblyRulesApp(); });
    }
    ~ModuleLifetime() {
        RunGuarded("unloading the module", [] { StopAssemblyRulesApp(); });
    }
} g_lifetime;
}  // namespace
