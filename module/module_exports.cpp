// The entry points the framework resolves by name; nothing else of the module is visible.
#include <memory>

#include "app/assembly_rules_app.h"
#include "app/settings_document.h"
#include "framework/module_entry_points.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "module/entry_guard.h"
#include "module/guarded_rule.h"
#include "module/rule_catalogue.h"

VANTOR_MODULE_API void SetXMLDoc(ZebXMLDocument* doc) { SetSettingsDocument(doc); }

// A rule whose creation fails is skipped; the rules made before it stay appended.
VANTOR_MODULE_API void GetAllRules(ZebArray<CZebRule*>* rules) {
    if (!GetAssemblyRulesApp() || !rules) return;
    CZebResourceScope scope;
    for (const RuleCatalogueEntry& entry : RuleCreationOrder()) {
        RunGuarded("GetAllRules", [&] {
            std::unique_ptr<CZebRule> rule(entry.create());
            if (rule) rules->Add(rule.get());
            rule.release();
        });
    }
}

// A rule made here whose import fails is destroyed again, so the host gets none. A rule the host
// passed in stays its own, read as far as the import came, and refuses to be written.
VANTOR_MODULE_API void GetRule(ZebXMLNode* node, CZebRule** rule) {
    if (!node || !rule) return;
    CZebResourceScope scope;
    std::unique_ptr<CZebRule> made;
    bool read = false;
    RunGuarded("GetRule", [&] {
        std::wstring name;
        node->GetAttributeValue(L"Name", name);
        if (!*rule) made.reset(CreateRuleByName(name));
        if (CZebRule* target = made ? made.get() : *rule) {
            target->ImportFromXML(node);
            read = !IsRuleSpoiled(*target);
        }
    });
    if (read && made) *rule = made.release();
}

VANTOR_MODULE_API void DeleteRule(CZebRule** rule) {
    if (!rule || !*rule) return;
    delete *rule;
    *rule = nullptr;
}

// The text stays as it was when its string cannot be loaded.
VANTOR_MODULE_API void GetModuleName(std::wstring& text) {
    RunGuarded("GetModuleName", [&] { text = LoadLocalizedString(IDS_MODULE_NAME); });
}

VANTOR_MODULE_API void GetModuleSummary(std::wstring& text) {
    RunGuarded("GetModuleSummary", [&] { text = LoadLocalizedString(IDS_MODULE_SUMMARY); });
}

// The list is replaced whole or left as it was.
VANTOR_MODULE_API void SetDBModuleList(const std::list<std::wstring>& modules) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app) return;
    RunGuarded("SetDBModuleList", [&] {
        std::list<std::wstring> copy(modules.begin(), modules.end());
        app->m_databaseModules.swap(copy);
    });
}
