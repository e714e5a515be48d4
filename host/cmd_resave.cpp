// vantor-rules resave: stored rules read and written again by the module.
#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
int RunResave(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    return RewriteSettings(args, std::nullopt);
}
}  // namespace

VANTOR_HOST_COMMAND(resave, "resave", "FILE -o OUT [--module-dir DIR]",
                    "Reads every \"Rule\" element of FILE that is not inside another through the\n"
                    "module and writes them again, in input order, into a new settings document\n"
                    "OUT whose unit is that of the first rule's parent element (rules under a\n"
                    "parent in another unit are converted). A rule the module does not know is\n"
                    "kept as it stands, with what it holds and a warning; if its values would\n"
                    "have to change unit, nothing is written.",
                    &RunResave);
