// vantor-rules convert: stored rules converted to another unit.
#include <cstdio>

#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
int RunConvert(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (!args.unit) {
        std::fprintf(stderr, "vantor-rules: convert needs --unit CODE (see vantor-rules units)\n");
        return 2;
    }
    return RewriteSettings(args, args.unit);
}
}  // namespace

VANTOR_HOST_COMMAND(convert, "convert", "FILE --unit CODE -o OUT [--module-dir DIR]",
                    "As resave, but each rule's values are converted from the unit of its parent\n"
                    "element to CODE before it is written; OUT's unit is CODE.",
                    &RunConvert);
