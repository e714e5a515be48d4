// ZEBAssemblyEngine.so: reads a STEP assembly and evaluates the assembly rules of a settings
// document, which it gets from the module through the module's own entry points.
#include <algorithm>
#include <memory>

#include "database/service/data_helper.h"
#include "engine/assembly.h"
#include "engine/engine_api.h"
#include "engine/feature_rule_entry.h"
#include "engine/rule_checks.h"
#include "engine/rule_values.h"
#include "framework/case_fold.h"
#include "framework/settings_format.h"
#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "util/string_table.h"

namespace {
// Parameter ids the module gives the four rules; each rule is known by one of its own.
constexpr long kInterferenceAll = 6067, kInterferenceSame = 6069, kInterferenceGroups = 8073,
               kInterferenceTouching = 6070, kInterferenceVolume = 8978, kInterferenceTable = 6068;
constexpr long kClearanceGeneral = 2062, kClearancePairsSwitch = 2049, kClearancePairs = 2048,
               kClearanceSame = 2063, kClearanceTouching = 6072;
constexpr long kContactTable = 7065, kContactDistance = 7051;
constexpr long kPreferredTable = 7002;

// Turns the rule's values, written in the document's unit, into kernel millimetres.
struct Units {
    double toKernel = 1.0;
    double Length(double value) const { return value * toKernel; }
    double Volume(double value) const { return value * toKernel * toKernel * toKernel; }
};

InterferenceOptions ReadInterference(CZebRule& rule, const Units& units) {
    InterferenceOptions options;
    options.allComponents = Value<bool>(rule, kInterferenceAll).value_or(true);
    options.groups = Value<bool>(rule, kInterferenceGroups).value_or(false);
    for (const ZebRow& row : Rows(rule, kInterferenceTable))
        if (row.size() >= 2) options.table.emplace_back(row.Cell(0), row.Cell(1));
    options.sameSubassembly = Value<bool>(rule, kInterferenceSame).value_or(true);
    options.touchingInterferes = Value<bool>(rule, kInterferenceTouching).value_or(false);
    const ZebTypedParam<double>* volume = Param<double>(rule, kInterferenceVolume);
    if (volume && volume->status && volume->values.GetSize() > 0) {
        options.ignoreVolume = units.Volume(volume->values[0]);
        options.ignoreInclusive = volume->op == ZebOp_LessEqual;
    }
    std::list<std::wstring> ignored;
    if (IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
        db && db->GetInterferenceIgnoreList(ignored) == ZebDbOk)
        options.ignored.assign(ignored.begin(), ignored.end());
    return options;
}

ClearanceOptions ReadClearance(CZebRule& rule, const Units& units) {
    ClearanceOptions options;
    if (Value<double>(rule, kClearanceGeneral, 0).value_or(0.0) != 0.0)
        if (const std::optional<double> general = Value<double>(rule, kClearanceGeneral, 1))
            options.general = units.Length(*general);
    if (static_cast<long>(Value<double>(rule, kClearancePairsSwitch).value_or(0.0)) != 0)
        for (const ZebRow& row : Rows(rule, kClearancePairs))
            if (row.size() >= 3 && !row.Cell(0).empty() && !row.Cell(1).empty())
                options.pairs.push_back(
                    {row.Cell(0), row.Cell(1), units.Length(ParseLength(row.Cell(2)))});
    options.sameSubassembly =
        static_cast<long>(Value<double>(rule, kClearanceSame).value_or(1.0)) != 0;
    options.reportTouching = Value<bool>(rule, kClearanceTouching).value_or(false);
    return options;
}

// A cell's names, each ended by ";"; a material group's name stands for every material in it.
std::vector<std::wstring> MaterialSide(const std::wstring& cell, IDatabaseCollector* db,
                                       const std::list<std::wstring>& groups) {
    std::vector<std::wstring> names;
    const auto add = [&names](const std::wstring& text, size_t from, size_t to) {
        if (to > from) names.push_back(ZebFoldCase(text.substr(from, to - from)));
    };
    for (size_t start = 0, end; (end = cell.find(L';', start)) != std::wstring::npos;
         start = end + 1) {
        const std::wstring name = cell.substr(start, end - start);
        add(name, 0, name.size());
        for (const std::wstring& group : groups) {
            std::wstring materials;
            if (!ZebEqualsNoCase(group, name) ||
                db->GetGroupMaterials(group, materials, 0) != ZebDbOk)
                continue;
            size_t from = 0;
            for (size_t to; (to = materials.find(L';', from)) != std::wstring::npos; from = to + 1)
                add(materials, from, to);
            add(materials, from, materials.size());
        }
    }
    return names;
}

ContactOptions ReadContact(CZebRule& rule, const Units& units) {
    ContactOptions options;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    std::list<std::wstring> groups;
    if (db && db->GetMaterialGroups(groups, 0) != ZebDbOk) groups.clear();
    for (const ZebRow& row : Rows(rule, kContactTable))
        if (row.size() >= 2)
            options.rows.emplace_back(MaterialSide(row.Cell(0), db, groups),
                                      MaterialSide(row.Cell(1), db, groups));
    const ZebTypedParam<double>* distance = Param<double>(rule, kContactDistance);
    if (distance && distance->status && distance->values.GetSize() > 0)
        options.nearer = units.Length(distance->values[0]);
    return options;
}

std::vector<PreferredRow> ReadPreferred(CZebRule& rule) {
    std::vector<PreferredRow> rows;
    const std::optional<std::wstring> text = Value<std::wstring>(rule, kPreferredTable);
    if (!text) return rows;
    std::vector<StringTableRow> table;
    CZEBStringTableParser::Parse(*text, table);
    for (const StringTableRow& row : table)
        rows.push_back({row.Col1, row.Col2, row.Col3, row.Col4});
    return rows;
}

enum class RuleKind { None, Interference, Clearance, Contact, Preferred, Features };

RuleKind KindOf(CZebRule& rule) {
    if (rule.FindParameterInArray(kInterferenceAll)) return RuleKind::Interference;
    if (rule.FindParameterInArray(kClearanceGeneral)) return RuleKind::Clearance;
    if (rule.FindParameterInArray(kContactTable)) return RuleKind::Contact;
    if (rule.FindParameterInArray(kPreferredTable)) return RuleKind::Preferred;
    if (IsFeatureRule(rule)) return RuleKind::Features;
    return RuleKind::None;
}

std::wstring UnitSymbol(long code) {
    static const wchar_t* const symbols[] = {L"mm", L"cm", L"m",  L"in", L"ft",
                                             L"nm", L"um", L"dm", L"yd", L"mil"};
    return code >= 0 && code < 10 ? symbols[code] : L"";
}

struct RuleDeleter {
    DeleteRuleFn deleteRule;
    void operator()(CZebRule* rule) const { deleteRule(&rule); }
};
using OwnedRule = std::unique_ptr<CZebRule, RuleDeleter>;

struct PendingRule {
    OwnedRule rule;
    RuleKind kind;
    long unit;
};

bool Wanted(const CZebRule& rule, const std::vector<std::wstring>& only) {
    if (only.empty()) return true;
    for (const std::wstring& name : only)
        if (ZebEqualsNoCase(name, rule.Name) || ZebEqualsNoCase(name, rule.DisplayName))
            return true;
    return false;
}

// The rule set's switch: a rule whose life status is this is kept in the settings but not checked.
constexpr int32_t kRuleSwitchedOff = 1;

bool CollectRules(const ZebCheckRequest& request, std::vector<PendingRule>& rules,
                  std::string& error) {
    request.setXMLDoc(request.settings);
    std::unique_ptr<ZebXMLNodeList> nodes(request.settings->GetElementsByTagName(L"Rule"));
    // Per name asked for: 0 not found, 1 found switched off, 2 found and checked.
    std::vector<int> named(request.onlyRules.size(), 0);
    size_t switchedOff = 0;
    for (long i = 0; i < nodes->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> node((*nodes)[i]);
        CZebRule* made = nullptr;
        request.getRule(node.get(), &made);
        OwnedRule rule(made, RuleDeleter{request.deleteRule});
        if (!rule) continue;
        const RuleKind kind = KindOf(*rule);
        if (kind == RuleKind::None || !Wanted(*rule, request.onlyRules)) continue;
        const bool off = rule->LifeStatus == kRuleSwitchedOff;
        for (size_t k = 0; k < named.size(); ++k)
            if (ZebEqualsNoCase(request.onlyRules[k], rule->Name) ||
                ZebEqualsNoCase(request.onlyRules[k], rule->DisplayName))
                named[k] = std::max(named[k], off ? 1 : 2);
        if (off) {
            ++switchedOff;
            continue;
        }
        rules.push_back({std::move(rule), kind, ZebParentUnitAttribute(node.get())});
    }
    for (size_t k = 0; k < named.size(); ++k)
        if (named[k] != 2) {
            error = "the settings hold no rule '" + ToUtf8(request.onlyRules[k]) +
                    "' that the engine checks" + (named[k] == 1 ? " switched on" : "");
            return false;
        }
    if (rules.empty()) {
        error = "the settings hold none of the rules the engine checks";
        if (switchedOff > 0) error += " switched on";
        return false;
    }
    return true;
}
}  // namespace

extern "C" __attribute__((visibility("default"))) int ZebCheckAssembly(
    const ZebCheckRequest& request, ZebCheckReport& report, std::string& error) {
    if (!request.settings || !request.setXMLDoc || !request.getRule || !request.deleteRule) {
        error = "no settings document or rule module given";
        return ZebCheckBadInput;
    }
    const auto progress = [&](double done, const std::wstring& stage) {
        if (request.progress) request.progress(done, stage);
    };
    std::vector<PendingRule> rules;
    if (!CollectRules(request, rules, error)) return ZebCheckBadInput;
    const long unit = rules.front().unit;
    const ZebLengthUnit* known = CZEBUnitConvertor::FindUnit(unit);
    if (!known) {
        error = "the settings use length unit " + std::to_string(unit) + ", which has no size";
        return ZebCheckBadInput;
    }
    progress(0.0, L"reading the assembly");
    Assembly assembly;
    if (!ReadStepAssembly(request.assemblyPath, assembly, error)) return ZebCheckBadInput;
    if (assembly.parts.size() < 2) {
        error = request.assemblyPath +
                ": the assembly has one part only; there is nothing to check between parts";
        return ZebCheckBadInput;
    }
    report.assembly = assembly.file;
    report.unit = unit;
    for (const AssemblyPart& part : assembly.parts)
        report.parts.push_back({part.path, part.product, part.material});

    FeatureCache features(assembly);
    constexpr double kReading = 0.1;
    const double share = (1.0 - kReading) / static_cast<double>(rules.size());
    for (size_t r = 0; r < rules.size(); ++r) {
        CZebRule& rule = *rules[r].rule;
        const Units units{
            CZEBUnitConvertor::ConversionFromOneUnitToAnother(1.0, 1, rules[r].unit, 0)};
        CheckContext context;
        context.rule = rule.Name;
        context.severity = rule.Severity;
        context.toReport = 1e6 / known->nanometres;
        context.unitText = UnitSymbol(unit);
        context.threads = request.threads;
        context.cancel = request.cancel;
        const double base = kReading + share * static_cast<double>(r);
        context.progress = [&](double done) { progress(base + share * done, rule.DisplayName); };
        progress(base, rule.DisplayName);
        report.rules.push_back(rule.Name);
        bool complete = true;
        switch (rules[r].kind) {
            case RuleKind::Interference:
                complete = CheckInterference(assembly, ReadInterference(rule, units), context,
                                             report.findings);
                break;
            case RuleKind::Clearance:
                complete =
                    CheckClearance(assembly, ReadClearance(rule, units), context, report.findings);
                break;
            case RuleKind::Contact:
                complete = CheckContactMaterial(assembly, ReadContact(rule, units), context,
                                                report.findings);
                break;
            case RuleKind::Preferred:
                CheckPreferredComponents(assembly, ReadPreferred(rule), context, report.findings);
                break;
            case RuleKind::Features:
                complete =
                    CheckFeatureRule(rule, units.toKernel, features, context, report.findings);
                break;
            case RuleKind::None:
                break;
        }
        if (!complete || (request.cancel && request.cancel->load())) return ZebCheckCancelled;
    }
    progress(1.0, L"done");
    return ZebCheckDone;
}
