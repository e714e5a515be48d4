#include "host/configure_settings.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "framework/ui/rule_dlg_base.h"
#include "framework/zeb_rule.h"

namespace {
bool HasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value) return true;
    return false;
}

// The first "Rule" element whose name is `name`, letter case aside; null when none is.
std::unique_ptr<ZebXMLNode> FindRuleElement(ZebXMLDocument& doc, const std::wstring& name) {
    std::unique_ptr<ZebXMLNodeList> rules(doc.GetElementsByTagName(L"Rule"));
    for (long i = 0; i < rules->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> node((*rules)[i]);
        std::wstring stored;
        if (node->GetAttributeValue(L"Name", stored) && ZebEqualsNoCase(stored, name)) return node;
    }
    return nullptr;
}

int Refuse(const std::string& message) {
    std::fprintf(stderr, "vantor-rules: %s\n", message.c_str());
    return 2;
}
}  // namespace

int ConfigureSettings(const CommandArgs& args) {
    if (args.positional.size() != 2 || args.unit)
        return Refuse("configure needs a settings file and a rule name (see vantor-rules --help)");
    const std::string& file = args.positional[0];
    const std::string& ruleName = args.positional[1];
    if (!HasDisplay()) return Refuse("configure shows the rule's dialog and needs a display");
    ZebXMLDocument doc;
    if (!ReadSettingsFile(file, doc)) return 2;
    std::unique_ptr<ZebXMLNode> element = FindRuleElement(doc, FromUtf8(ruleName));
    if (!element) return Refuse(file + " holds no rule named '" + ruleName + "'");
    std::unique_ptr<ZebXMLNode> parent(element->GetParentNode());
    if (!parent) return Refuse(file + ": the rule '" + ruleName + "' has no parent element");

    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 2;
    loader.SetXMLDoc(&doc);
    CZebRule* made = RecreateRule(loader, element.get());
    if (!made) return Refuse("no rule of the module reads the rule '" + ruleName + "'");
    RuleHandle rule(loader, made);

    static int argc = 1;
    static char name[] = "vantor-rules";
    static char* argv[] = {name, nullptr};
    std::unique_ptr<QApplication> application;
    if (!QApplication::instance()) application = std::make_unique<QApplication>(argc, argv);
    CZEBRuleDlgBase::TakeLastModalResult();
    rule->Configure();
    switch (CZEBRuleDlgBase::TakeLastModalResult()) {
    case CZEBRuleDlgBase::kIdOk: break;
    case CZEBRuleDlgBase::kIdCancel: return 1;
    default: return Refuse("the rule '" + ruleName + "' has no dialog to configure it");
    }
    std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
    if (!exported || !parent->ReplaceChild(exported.get(), element.get()))
        return Refuse("the rule '" + ruleName + "' could not be written back");
    return WriteSettingsFile(doc, args.output.empty() ? file : args.output) ? 0 : 2;
}
