// vantor-rules diff: two settings files compared rule by rule, as the module reads them.
#include <cstdio>

#include "host/host_command.h"
#include "host/settings_diff.h"
#include "host/settings_file.h"

namespace {
int RunDiff(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() != 2 || !args.output.empty() || args.unit) {
        std::fprintf(stderr,
                     "vantor-rules: diff needs two settings files and no -o or --unit (see "
                     "vantor-rules --help)\n");
        return 2;
    }
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 2;
    std::vector<std::string> lines;
    std::string error;
    if (!DiffSettings(loader, args.positional[0], args.positional[1], lines, error)) {
        std::fprintf(stderr, "vantor-rules: %s\n", error.c_str());
        return 2;
    }
    for (const std::string& line : lines) std::printf("%s\n", line.c_str());
    return lines.empty() ? 0 : 1;
}
}  // namespace

VANTOR_HOST_COMMAND(
    diff, "diff", "OLD NEW [--module-dir DIR]",
    "Compares two settings documents as the module reads them, after bringing NEW\n"
    "into OLD's unit as convert does, and prints one line per difference: the unit,\n"
    "rules added (+) or removed (-), a rule's severity or status, a parameter's\n"
    "operator, status, result criteria or values, and table rows added, removed or\n"
    "changed (rows are matched by their first cell). Values are shown in OLD's unit.\n"
    "Exit status 0 when equal, 1 when different, 2 when a file cannot be read.",
    &RunDiff);
