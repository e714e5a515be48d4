#pragma once

#include "host/settings_file.h"

// vantor-rules configure: the rule named by the second word of `args` (its English name, letter
// case aside, as the module matches it) configured in its dialog, and on OK the whole settings
// document written with that rule's element replaced, to -o or back to the file. Returns the exit
// status: 0 after OK, 1 after Cancel, 2 for a file that cannot be read or written, an unknown
// rule, a rule without a dialog or no display. A QApplication is made when there is none.
int ConfigureSettings(const CommandArgs& args);

enum class ConfigureResult {
    Ok,          // the element was replaced by the configured rule's
    Cancel,      // the dialog was cancelled; nothing changed
    NoDialog,    // the rule has no dialog
    NotRead,     // no rule of the module reads the element
    NotWritten,  // the element has no parent or the rule exported nothing
};

// Runs the rule's dialog modally as the framework's Configure call does; Ok after OK. A
// QApplication must exist.
ConfigureResult ConfigureRule(CZebRule& rule);

// The rule of `element` configured as the framework does it: recreated by GetRule, its dialog
// run modally, and after OK the element it exports put in place of `element`. The module's
// settings document must be the element's; a QApplication must exist.
ConfigureResult ConfigureRuleElement(const ModuleLoader& loader, ZebXMLNode* element);
