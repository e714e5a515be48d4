// vantor-rules lint: what the module would change, default or drop in a settings file.
#include <cstdio>

#include "host/host_command.h"
#include "host/settings_file.h"
#include "host/settings_lint.h"

namespace {
int RunLint(const std::vector<std::string>& words) {
    std::vector<std::string> rest;
    bool json = false;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] != "--format") {
            rest.push_back(words[i]);
            continue;
        }
        if (i + 1 >= words.size() || (words[i + 1] != "json" && words[i + 1] != "text")) {
            std::fprintf(stderr, "vantor-rules: --format takes json or text\n");
            return 2;
        }
        json = words[++i] == "json";
    }
    CommandArgs args;
    if (!ParseCommandArgs(rest, args)) return 2;
    if (args.positional.size() != 1 || !args.output.empty() || args.unit) {
        std::fprintf(stderr,
                     "vantor-rules: lint needs one settings file and no -o or --unit (see "
                     "vantor-rules --help)\n");
        return 2;
    }
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 2;
    std::vector<LintFinding> findings;
    std::string error;
    if (!LintSettings(loader, args.positional[0], findings, error)) {
        std::fprintf(stderr, "vantor-rules: %s\n", error.c_str());
        return 2;
    }
    const std::string text =
        json ? LintFindingsJson(findings) : LintFindingsText(args.positional[0], findings);
    std::fputs(text.c_str(), stdout);
    return findings.empty() ? 0 : 1;
}
}  // namespace

VANTOR_HOST_COMMAND(
    lint, "lint", "FILE [--format text|json] [--module-dir DIR]",
    "Reads FILE as the module does and prints one line per thing the module would\n"
    "change, default or drop on reading it or on its next save: unknown or repeated\n"
    "rules and parameters, values that are not of their parameter's type, table rows\n"
    "of more than five cells, RANGE value counts that are dropped, old settings that\n"
    "are upgraded, unknown units and operators, parameters without an operator.\n"
    "Each line names the file, the line, the rule and the parameter. --format json\n"
    "prints an array of {rule, parameter, line, message}. Exit status 0 when there is\n"
    "nothing to report, 1 with findings, 2 when FILE cannot be read.",
    &RunLint);
