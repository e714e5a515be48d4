#pragma once

#include <string>

#include "resources/string_ids.h"

class CZebRule;

// How a rule's Configure reaches its dialog while the rules stay below the dialogs: the module
// registers one runner per rule name when it starts, and Configure runs the one of its rule.
using RuleDialogRunner = void (*)(CZebRule& rule, const std::wstring& unitText);

void RegisterRuleDialog(ZebStringId ruleName, RuleDialogRunner runner);

// Runs the dialog registered for `ruleName` in a resource scope, with the text of the rule's
// current length unit for its unit label. False, and nothing shown, when none is registered.
bool RunRuleDialog(CZebRule& rule, ZebStringId ruleName);
