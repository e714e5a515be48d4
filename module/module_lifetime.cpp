// The application object lives as long as the module is loaded.
#include "module/assembly_rules_app.h"

namespace {
struct ModuleLifetime {
    ModuleLifetime() { StartAssemblyRulesApp(); }
    ~ModuleLifetime() { StopAssemblyRulesApp(); }
} g_lifetime;
}  // namespace
