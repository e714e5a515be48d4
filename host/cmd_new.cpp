// vantor-rules new: a settings document with every rule at its defaults.
#include <cstdio>
#include <memory>

#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
int RunNew(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (!args.positional.empty() || args.output.empty()) {
        std::fprintf(
            stderr, "vantor-rules: new needs -o FILE and nothing else (see vantor-rules --help)\n");
        return 2;
    }
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 1;
    const int unit = args.unit.value_or(0);
    ZebXMLDocument doc;
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(doc, unit));
    loader.SetXMLDoc(&doc);

    AppendDefaultRules(loader, parent.get(), unit);
    return WriteSettingsFile(doc, args.output) ? 0 : 1;
}
}  // namespace

VANTOR_HOST_COMMAND(new_settings, "new", "-o FILE [--unit CODE] [--module-dir DIR]",
                    "Writes a new settings document holding all twelve rules at their defaults.\n"
                    "With --unit the document's unit is CODE and the default lengths, given in\n"
                    "millimetres, are converted to it.",
                    &RunNew);
