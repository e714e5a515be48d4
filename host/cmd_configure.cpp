// vantor-rules configure: one stored rule configured in its dialog.
#include "host/configure_settings.h"
#include "host/host_command.h"

namespace {
int RunConfigure(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    return ConfigureSettings(args);
}
}  // namespace

VANTOR_HOST_COMMAND(
    configure, "configure", "FILE RULE [-o OUT] [--screenshot PNG] [--module-dir DIR]",
    "Opens the dialog of the rule named RULE (its English name, letter case aside)\n"
    "in the settings document FILE. After OK the whole document is written, with that\n"
    "rule's element replaced and every other element as it was, to OUT or back to\n"
    "FILE; Cancel writes nothing. Exit 0 after OK, 1 after Cancel, 2 for a file that\n"
    "cannot be read or written, a rule the file or the module does not have, a rule\n"
    "without a dialog, or no display. With --screenshot the dialog is drawn into\n"
    "the PNG file and closed as by Cancel, and nothing is written (exit 0 once the\n"
    "picture is written).",
    &RunConfigure);
