#include "host/configure_settings.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "framework/ui/rule_dlg_base.h"
#include "framework/zeb_rule.h"
#include "host/host_translations.h"
#include "host/screenshot.h"

namespace {

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

ConfigureResult ConfigureRule(CZebRule& rule) {
    CZEBRuleDlgBase::TakeLastModalResult();
    rule.Configure();
    switch (CZEBRuleDlgBase::TakeLastModalResult()) {
        case CZEBRuleDlgBase::kIdOk:
            return ConfigureResult::Ok;
        case CZEBRuleDlgBase::kIdCancel:
            return ConfigureResult::Cancel;
        default:
            return ConfigureResult::NoDialog;
    }
}

ConfigureResult ConfigureRuleElement(const ModuleLoader& loader, ZebXMLNode* element) {
    std::unique_ptr<ZebXMLNode> parent(element->GetParentNode());
    if (!parent) return ConfigureResult::NotWritten;
    CZebRule* made = RecreateRule(loader, element);
    if (!made) return ConfigureResult::NotRead;
    RuleHandle rule(loader, made);
    if (const ConfigureResult result = ConfigureRule(*rule.get()); result != ConfigureResult::Ok)
        return result;
    std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
    if (!exported || !parent->ReplaceChild(exported.get(), element))
        return ConfigureResult::NotWritten;
    return ConfigureResult::Ok;
}

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

    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 2;
    loader.SetXMLDoc(&doc);

    static int argc = 1;
    static char name[] = "vantor-rules";
    static char* argv[] = {name, nullptr};
    std::unique_ptr<QApplication> application;
    if (!QApplication::instance()) application = std::make_unique<QApplication>(argc, argv);
    InstallEditorTranslations(*QCoreApplication::instance());
    bool pictured = false;
    if (!args.screenshot.empty()) PictureNextModalDialog(args.screenshot, pictured);
    const ConfigureResult result = ConfigureRuleElement(loader, element.get());
    if (!args.screenshot.empty() && result == ConfigureResult::Cancel) {
        if (pictured) return 0;
        return Refuse("the picture of the dialog could not be written to " + args.screenshot);
    }
    switch (result) {
        case ConfigureResult::Ok:
            break;
        case ConfigureResult::Cancel:
            return 1;
        case ConfigureResult::NoDialog:
            return Refuse("the rule '" + ruleName + "' has no dialog to configure it");
        case ConfigureResult::NotRead:
            return Refuse("no rule of the module reads the rule '" + ruleName + "'");
        case ConfigureResult::NotWritten:
            return Refuse("the rule '" + ruleName + "' could not be written back");
    }
    return WriteSettingsFile(doc, args.output.empty() ? file : args.output) ? 0 : 2;
}
