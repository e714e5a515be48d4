#pragma once

#include <string>
#include <vector>

#include "resources/string_ids.h"
#include "rules/rule_dialog_registry.h"

class CZebRule;

// One rule class of the module: its name string id, how to make one, and the dialog its
// Configure runs (none yet for some).
struct RuleCatalogueEntry {
    ZebStringId nameId;
    CZebRule* (*create)();
    RuleDialogRunner dialog = nullptr;
};

// The twelve rule classes in the order GetAllRules creates them.
const std::vector<RuleCatalogueEntry>& RuleCreationOrder();
// The same classes in the order GetRule tries their names.
const std::vector<RuleCatalogueEntry>& RuleLookupOrder();

// A new rule whose English name equals `name`, case ignored; null when none does. Each
// candidate's English name is loaded afresh.
CZebRule* CreateRuleByName(const std::wstring& name);
