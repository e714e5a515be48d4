// A catalogue of rules that fail, built with the module's own entry points into a second module,
// to show that nothing thrown inside the module reaches the host.
#include <stdexcept>

#include "framework/zeb_rule.h"
#include "module/rule_catalogue.h"

namespace {
struct SoundRule : CZebRule {
    SoundRule() { Name = L"Sound"; }
};

struct RuleWhoseImportFails : CZebRule {
    RuleWhoseImportFails() { Name = L"Import fails"; }
    void ImportFromXML(ZebXMLNode*) override { throw std::runtime_error("a damaged parameter"); }
};

CZebRule* MakeSound() { return new SoundRule; }
CZebRule* MakeFailing() { throw std::runtime_error("no memory left for the rule"); }
CZebRule* MakeImportFails() { return new RuleWhoseImportFails; }
}  // namespace

const std::vector<RuleCatalogueEntry>& RuleCreationOrder() {
    static const std::vector<RuleCatalogueEntry> order{{IDS_RULE_HOLE_ALIGNMENT, &MakeSound},
                                                       {IDS_RULE_SLOT_ALIGNMENT, &MakeFailing},
                                                       {IDS_RULE_CONTACT_MATERIAL, &MakeSound}};
    return order;
}

const std::vector<RuleCatalogueEntry>& RuleLookupOrder() { return RuleCreationOrder(); }

CZebRule* CreateRuleByName(const std::wstring& name) {
    if (name == L"Sound") return MakeSound();
    if (name == L"Import fails") return MakeImportFails();
    if (name == L"Creation fails") return MakeFailing();
    return nullptr;
}
