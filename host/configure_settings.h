#pragma once

#include "host/settings_file.h"

// vantor-rules configure: the rule named by the second word of `args` (its English name, letter
// case aside, as the module matches it) configured in its dialog, and on OK the whole settings
// document written with that rule's element replaced, to -o or back to the file. Returns the exit
// status: 0 after OK, 1 after Cancel, 2 for a file that cannot be read or written, an unknown
// rule, a rule without a dialog or no display. A QApplication is made when there is none.
int ConfigureSettings(const CommandArgs& args);
