// The entry points the framework resolves by name; nothing else of the module is visible.
#include <memory>

#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "module/assembly_rules_app.h"
#include "module/module_entry_points.h"
#include "module/rule_catalogue.h"
#include "module/settings_document.h"

VANTOR_MODULE_API void SetXMLDoc(ZebXMLDocument* doc) { SetSettingsDocument(doc); }

VANTOR_MODULE_API void GetAllRules(ZebArray<CZebRule*>* rules) {
    if (!GetAssemblyRulesApp() || !rules) return;
    CZebResourceScope scope;
    for (const RuleCatalogueEntry& entry : RuleCreationOrder())
        if (CZebRule* rule = entry.create()) rules->Add(rule);
}

VANTOR_MODULE_API void GetRule(ZebXMLNode* node, CZebRule** rule) {
    if (!node || !rule) return;
    CZebResourceScope scope;
    std::wstring name;
    node->GetAttributeValue(L"Name", name);
    if (!*rule) *rule = CreateRuleByName(name);
    if (*rule) (*rule)->ImportFromXML(node);
}

VANTOR_MODULE_API void DeleteRule(CZebRule** rule) {
    if (!rule || !*rule) return;
    delete *rule;
    *rule = nullptr;
}

VANTOR_MODULE_API void GetModuleName(std::wstring& text) { text = LoadLocalizedString(6015); }

VANTOR_MODULE_API void GetModuleSummary(std::wstring& text) { text = LoadLocalizedString(6016); }

VANTOR_MODULE_API void SetDBModuleList(const std::list<std::wstring>& modules) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app) return;
    app->m_databaseModules.assign(modules.begin(), modules.end());
}
