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
                    "Reads every \"Rule\" element of FILE through the module and writes them again,\n"
                    "in input order, into a new settings document OUT whose unit is that of the\n"
                    "first rule's parent element (rules under a parent in another unit are\n"
                    "converted). A rule the module does not know is kept as it stands, with a\n"
                    "warning; if its values would have to change unit, nothing is written.",
                    &RunResave);
