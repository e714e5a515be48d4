// vantor-rules list: the module's rules in the order it creates them.
#include <cstdio>

#include "framework/zeb_rule.h"
#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
int RunList(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (!args.positional.empty() || !args.output.empty() || args.unit) {
        std::fprintf(stderr,
                     "vantor-rules: list takes only --module-dir (see vantor-rules --help)\n");
        return 2;
    }
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 1;
    ZebArray<CZebRule*> rules;
    loader.GetAllRules(&rules);
    for (CZebRule* made : rules) {
        RuleHandle rule(loader, made);
        std::printf("%s\n", RuleLine(*rule.get()).c_str());
    }
    return 0;
}
}  // namespace

VANTOR_HOST_COMMAND(list, "list", "[--module-dir DIR]",
                    "Every rule of the module in creation order, one line each:\n"
                    "identity name, display name, severity and summary, separated by tabs.",
                    &RunList);
