// vantor-rules show: every stored rule as the module reads it back.
#include <charconv>
#include <cstdio>
#include <memory>

#include "framework/text_convert.h"
#include "framework/zeb_operator.h"
#include "framework/zeb_rule.h"
#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
const char* TypeName(int32_t type) {
    static const char* const names[] = {"int", "long", "bool", "double", "string", "opaque", "unsigned", "row"};
    return type >= 1 && type <= 8 ? names[type - 1] : "unknown";
}

std::string Text(double v) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
    return std::string(buffer, result.ptr);
}
std::string Text(int32_t v) { return std::to_string(v); }
std::string Text(long v) { return std::to_string(v); }
std::string Text(uint32_t v) { return std::to_string(v); }
std::string Text(bool v) { return v ? "true" : "false"; }
std::string Text(const std::wstring& v) { return "\"" + ToUtf8(v) + "\""; }
std::string Text(ZebOpaque) { return "(opaque)"; }
std::string Text(const ZebRow& row) {
    std::string text = "[";
    for (size_t i = 0; i < row.size(); ++i) text += (i ? " | " : "") + ToUtf8(row[i]);
    return text + "]";
}

template <class T>
std::string ValuesText(const ZebTypedParam<T>* p) {
    std::string text;
    for (const T& v : p->values) text += (text.empty() ? "" : " ") + Text(v);
    return text;
}

std::string ValuesOf(CZebParamStorage& p) {
    switch (p.GetType()) {
        case ZebType_Int: return ValuesText(p.As<int32_t>());
        case ZebType_Long: return ValuesText(p.As<long>());
        case ZebType_Bool: return ValuesText(p.As<bool>());
        case ZebType_Double: return ValuesText(p.As<double>());
        case ZebType_String: return ValuesText(p.As<std::wstring>());
        case ZebType_Opaque: return ValuesText(p.As<ZebOpaque>());
        case ZebType_Unsigned: return ValuesText(p.As<uint32_t>());
        case ZebType_Row: return ValuesText(p.As<ZebRow>());
        default: return {};
    }
}

void PrintRule(CZebRule& rule) {
    std::printf("%s\n", RuleLine(rule).c_str());
    for (CZebParamStorage* p : rule.ParamArray) {
        const ZebTypedParamBase* base = p->GetParam();
        const wchar_t* opText = ZebOperatorText(base->op);
        const std::string op = opText ? ToUtf8(opText) : std::to_string(base->op);
        std::printf("  %d\t%s\top %s\tkind %d\tstatus %d\tcriteria %d type %d\tvalues %s\n", base->id,
                    TypeName(p->GetType()), op.c_str(), base->kind, base->status ? 1 : 0,
                    base->criteriaStatus ? 1 : 0, base->criteriaType, ValuesOf(*p).c_str());
    }
}

int RunShow(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() != 1 || !args.output.empty() || args.unit) {
        std::fprintf(stderr, "vantor-rules: show needs one settings file and no -o or --unit (see vantor-rules --help)\n");
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

VANTOR_HOST_COMMAND(show, "show", "FILE [--module-dir DIR]",
                    "Reads every \"Rule\" element of FILE (at any depth) through the module and prints\n"
                    "the rule line as in list, then one line per parameter: id, value type, operator,\n"
                    "kind, status, criteria status and type, and its values or rows.",
                    &RunShow);
