#include "host/settings_file.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <thread>

#include "framework/settings_format.h"
#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "framework/zeb_rule.h"

namespace {
// Written so that nothing is upgraded when the module reads the file back.
constexpr const wchar_t* kSettingsVersion = L"v3.5";

bool ParseUnit(const std::string& text, int& unit) {
    char* end = nullptr;
    const long code = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || !CZEBUnitConvertor::FindUnit(code)) return false;
    unit = static_cast<int>(code);
    return true;
}
}  // namespace

bool ParseCommandArgs(const std::vector<std::string>& args, CommandArgs& parsed) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& word = args[i];
        const bool takesValue =
            word == "-o" || word == "--unit" || word == "--module-dir" || word == "--screenshot";
        if (!takesValue) {
            if (word.size() > 1 && word[0] == '-') {
                std::fprintf(stderr,
                             "vantor-rules: unknown option '%s' (see vantor-rules --help)\n",
                             word.c_str());
                return false;
            }
            parsed.positional.push_back(word);
            continue;
        }
        if (i + 1 >= args.size()) {
            std::fprintf(stderr, "vantor-rules: option %s needs a value\n", word.c_str());
            return false;
        }
        const std::string& value = args[++i];
        if (word == "-o") {
            parsed.output = value;
        } else if (word == "--module-dir") {
            parsed.moduleDir = value;
        } else if (word == "--screenshot") {
            parsed.screenshot = value;
        } else {
            int unit = 0;
            if (!ParseUnit(value, unit)) {
                std::fprintf(stderr,
                             "vantor-rules: '%s' is not a unit code (see vantor-rules units)\n",
                             value.c_str());
                return false;
            }
            parsed.unit = unit;
        }
    }
    return true;
}

bool HasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value) return true;
    return false;
}

bool LoadModule(ModuleLoader& loader, const CommandArgs& args) {
    std::string error;
    if (loader.Load(ModuleLoader::ModuleFolder(args.moduleDir), error)) {
        if (!loader.DatabaseModuleError().empty())
            std::fprintf(stderr, "vantor-rules: warning: %s; the rules see no database\n",
                         loader.DatabaseModuleError().c_str());
        return true;
    }
    std::fprintf(stderr, "vantor-rules: %s\n", error.c_str());
    return false;
}

bool LoadSettingsFile(const std::string& path, ZebXMLDocument& doc, std::string& message) {
    std::wstring error;
    if (doc.LoadFile(FromUtf8(path), error)) return true;
    message = path + ": " + ToUtf8(error);
    return false;
}

bool ReadSettingsFile(const std::string& path, ZebXMLDocument& doc) {
    std::string message;
    if (LoadSettingsFile(path, doc, message)) return true;
    std::fprintf(stderr, "vantor-rules: %s\n", message.c_str());
    return false;
}

ZebXMLNode* StartSettingsDocument(ZebXMLDocument& doc, int unit) {
    std::unique_ptr<ZebXMLNode> root(doc.CreateDocumentElement(L"VantorSettings"));
    ZebXMLNode* rules = root->AppendNode(L"AssemblyRules");
    rules->AddAttribute(L"Version", kSettingsVersion);
    rules->AddAttribute(L"Unit", std::to_wstring(unit));
    return rules;
}

bool SaveSettingsFile(const ZebXMLDocument& doc, const std::string& path, std::string& message) {
    std::wstring error;
    if (doc.SaveFile(FromUtf8(path), error)) return true;
    message = ToUtf8(error);
    return false;
}

bool WriteSettingsFile(const ZebXMLDocument& doc, const std::string& path) {
    std::string message;
    if (SaveSettingsFile(doc, path, message)) return true;
    std::fprintf(stderr, "vantor-rules: %s\n", message.c_str());
    return false;
}

void AppendDefaultRules(const ModuleLoader& loader, ZebXMLNode* parent, int unit) {
    ZebArray<CZebRule*> rules;
    loader.GetAllRules(&rules);
    // Defaults are millimetres; a document in another unit gets them converted.
    for (CZebRule* made : rules) {
        RuleHandle rule(loader, made);
        GiveRuleUnits(*rule.get(), 0, unit);
        std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
        if (exported) parent->AppendNode(exported.get());
    }
}

void GiveRuleUnits(CZebRule& rule, int valuesUnit, int documentUnit) {
    // Rules that read no unit of their own would otherwise name millimetres in their summaries
    // and dialogs whatever unit their values are in. A rule already in the document's unit is
    // left alone: a change of unit may rebuild its summary.
    if (valuesUnit == documentUnit && rule.CurrentUnits.LengthUnit == documentUnit) return;
    const UnitSetting from{valuesUnit, rule.CurrentUnits.SecondUnit};
    const UnitSetting to{documentUnit, rule.CurrentUnits.SecondUnit};
    rule.ConvertUnits(&from, &to);
}

CZebRule* RecreateRule(const ModuleLoader& loader, ZebXMLNode* node) {
    CZebRule* made = nullptr;
    loader.GetRule(node, &made);
    if (made) {
        const int unit = ZebParentUnitAttribute(node);
        GiveRuleUnits(*made, unit, unit);
    }
    return made;
}

std::string RuleElementName(ZebXMLNode* node) {
    std::wstring name;
    node->GetAttributeValue(L"Name", name);
    return ToUtf8(name);
}

bool RuleHasSwitch(const CZebRule& rule) {
    return rule.LifeStatus == kLifeStatusInUse || rule.LifeStatus == kLifeStatusSwitchedOff;
}

bool RuleInUse(const CZebRule& rule) { return rule.LifeStatus != kLifeStatusSwitchedOff; }

std::string RuleLine(const CZebRule& rule) {
    return ToUtf8(rule.Name) + "\t" + ToUtf8(rule.DisplayName) + "\t" +
           std::to_string(rule.Severity) + "\t" + ToUtf8(rule.Summary);
}

int RewriteSettings(const CommandArgs& args, std::optional<int> toUnit) {
    if (args.positional.size() != 1 || args.output.empty()) {
        std::fprintf(stderr,
                     "vantor-rules: give one settings file and -o OUT (see vantor-rules --help)\n");
        return 2;
    }
    ZebXMLDocument input;
    if (!ReadSettingsFile(args.positional[0], input)) return 2;
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 1;
    return RewriteAndWrite(loader, input, toUnit, args.output) ? 0 : 1;
}

namespace {
// A unit as people name it: "inch (in)"; the code only for a code no unit has.
std::string UnitWords(int code) {
    const ZebLengthUnit* unit = CZEBUnitConvertor::FindUnit(code);
    return unit ? std::string(unit->name) + " (" + unit->symbol + ")"
                : "unit code " + std::to_string(code);
}
}  // namespace

std::string UnconvertibleRule(const std::string& name, int from, int to) {
    return "no rule of the module reads the rule '" + name +
           "', so its values cannot be converted from " + UnitWords(from) + " to " + UnitWords(to);
}

std::vector<std::unique_ptr<ZebXMLNode>> SettingsRuleElements(ZebXMLDocument& doc) {
    // A "Rule" element inside another belongs to that element: it is kept with it as it stands,
    // or dropped with whatever else the module does not write. Read as a rule of its own, every
    // rewrite would add one more copy of it. So nothing below a "Rule" is searched, which also
    // keeps a large table out of the walk. The walk keeps its own stack: a damaged document may
    // nest elements deeper than calls can go.
    std::vector<std::unique_ptr<ZebXMLNode>> rules;
    std::unique_ptr<ZebXMLNode> root(doc.GetDocumentElement());
    if (!root) return rules;
    if (root->GetName() == L"Rule") {
        rules.push_back(std::move(root));
        return rules;
    }
    struct Level {
        std::unique_ptr<ZebXMLNodeList> children;
        long next = 0;
    };
    std::vector<Level> stack;
    stack.push_back({std::unique_ptr<ZebXMLNodeList>(root->GetChildElements())});
    while (!stack.empty()) {
        Level& level = stack.back();
        if (level.next == level.children->GetSize()) {
            stack.pop_back();
            continue;
        }
        std::unique_ptr<ZebXMLNode> node((*level.children)[level.next++]);
        if (node->GetName() == L"Rule")
            rules.push_back(std::move(node));
        else
            stack.push_back({std::unique_ptr<ZebXMLNodeList>(node->GetChildElements())});
    }
    return rules;
}

bool RewriteRules(const ModuleLoader& loader, ZebXMLDocument& input, std::optional<int> toUnit,
                  ZebXMLDocument& output, std::vector<RuleHandle>* spent) {
    std::vector<std::unique_ptr<ZebXMLNode>> ruleNodes = SettingsRuleElements(input);
    // convert hands every rule the change of unit, as the framework does; resave only those
    // whose parent is in another unit than the new document.
    const bool converting = toUnit.has_value();
    if (!toUnit) toUnit = ZebParentUnitAttribute(ruleNodes.empty() ? nullptr : ruleNodes[0].get());
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(output, *toUnit));
    loader.SetXMLDoc(&output);

    // Every rule is read before any is written, and the input is dropped in between: a large
    // table is then held as the input or as the rule's values and its copy, never all three.
    struct ReadRule {
        std::optional<RuleHandle> rule;
        UnitSetting from;
        std::unique_ptr<ZebXMLNode> place;  // where its copy goes, among the kept elements
    };
    std::vector<ReadRule> read;
    const UnitSetting to{*toUnit, 0};
    for (const std::unique_ptr<ZebXMLNode>& node : ruleNodes) {
        const UnitSetting from{ZebParentUnitAttribute(node.get()), 0};
        CZebRule* made = RecreateRule(loader, node.get());
        if (!made) {
            const std::string name = RuleElementName(node.get());
            if (from.LengthUnit != to.LengthUnit) {
                std::fprintf(stderr, "vantor-rules: %s; nothing was written\n",
                             UnconvertibleRule(name, from.LengthUnit, to.LengthUnit).c_str());
                return false;
            }
            std::fprintf(stderr,
                         "vantor-rules: warning: no rule of the module reads the rule '%s'; it is "
                         "kept as it stands\n",
                         name.c_str());
            parent->AppendNode(node.get());
            continue;
        }
        ReadRule& entry = read.emplace_back();
        entry.rule.emplace(loader, made);
        entry.from = from;
        entry.place.reset(parent->AppendNode(L"Rule"));
    }
    ruleNodes.clear();
    input.Clear();

    for (ReadRule& entry : read) {
        if (converting || entry.from.LengthUnit != to.LengthUnit)
            (*entry.rule)->ConvertUnits(&entry.from, &to);
        std::unique_ptr<ZebXMLNode> exported((*entry.rule)->ExportToXML());
        if (exported)
            parent->ReplaceChild(exported.get(), entry.place.get());
        else
            parent->RemoveChild(entry.place.get());
        if (spent) spent->push_back(std::move(*entry.rule));
        entry.rule.reset();  // its values go before the next rule is written, unless handed over
    }
    return true;
}

bool RewriteAndWrite(const ModuleLoader& loader, ZebXMLDocument& input, std::optional<int> toUnit,
                     const std::string& path) {
    ZebXMLDocument output;
    std::vector<RuleHandle> spent;
    if (!RewriteRules(loader, input, toUnit, output, &spent)) return false;
    std::optional<std::jthread> release;  // joined on every way out
    try {
        release.emplace([&spent] { spent.clear(); });
    } catch (const std::system_error&) {
        spent.clear();  // no thread to be had: let go of here instead
    }
    return WriteSettingsFile(output, path);
}
