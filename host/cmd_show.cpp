// vantor-rules show: every stored rule as the module reads it back.
#include <cstdio>
#include <memory>

#include "framework/zeb_rule.h"
#include "host/host_command.h"
#include "host/param_text.h"
#include "host/settings_file.h"

namespace {
void PrintRule(CZebRule& rule) {
    std::printf("%s\n", RuleLine(rule).c_str());
    for (CZebParamStorage* p : rule.ParamArray) {
        const ZebTypedParamBase* base = p->GetParam();
        std::printf("  %d\t%s\top %s\tkind %d\tstatus %d\tcriteria %d type %d\tvalues %s\n",
                    base->id, ParamTypeName(p->GetType()), ParamOperatorText(*p).c_str(),
                    base->kind, base->status ? 1 : 0, base->criteriaStatus ? 1 : 0,
                    base->criteriaType, ParamValuesText(*p).c_str());
    }
}

int RunShow(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() != 1 || !args.output.empty() || args.unit) {
        std::fprintf(stderr,
                     "vantor-rules: show needs one settings file and no -o or --unit (see "
                     "vantor-rules --help)\n");
        return 2;
    }
    ZebXMLDocument doc;
    if (!ReadSettingsFile(args.positional[0], doc)) return 2;
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 1;
    loader.SetXMLDoc(&doc);
    std::unique_ptr<ZebXMLNodeList> nodes(doc.GetElementsByTagName(L"Rule"));
    for (long i = 0; i < nodes->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> node((*nodes)[i]);
        CZebRule* made = RecreateRule(loader, node.get());
        if (!made) {
            std::fprintf(
                stderr,
                "vantor-rules: warning: no rule of the module reads the rule '%s'; not shown\n",
                RuleElementName(node.get()).c_str());
            continue;
        }
        RuleHandle rule(loader, made);
        PrintRule(*rule.get());
    }
    return 0;
}
}  // namespace

VANTOR_HOST_COMMAND(
    show, "show", "FILE [--module-dir DIR]",
    "Reads every \"Rule\" element of FILE (at any depth) through the module and prints\n"
    "the rule line as in list, then one line per parameter: id, value type, operator,\n"
    "kind, status, criteria status and type, and its values or rows.",
    &RunShow);
