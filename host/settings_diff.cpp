#include "host/settings_diff.h"

#include <cctype>
#include <cstdlib>
#include <map>
#include <memory>

#include "framework/case_fold.h"
#include "framework/settings_format.h"
#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "framework/zeb_operator.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "host/settings_file.h"

namespace {
using Row = std::vector<std::string>;

struct ParamData {
    std::string id;
    std::string op, status, kind, criteria, criteriaType, options, deviations;
    bool table = false;
    std::vector<std::string> values;  // plain values, as written
    std::vector<Row> rows;            // table rows, as written
};

struct RuleData {
    std::string name;
    bool known = true;
    std::map<std::string, std::string> header;  // Status, LifeStatus, Severity
    std::vector<ParamData> params;
    std::string raw;  // a rule the module does not read, as it stands
};

// One document as the module writes it in `unit`.
struct Normalized {
    ZebXMLDocument doc;
    std::vector<RuleData> rules;
};

std::string Attr(ZebXMLNode& node, const wchar_t* name) {
    std::wstring value;
    node.GetAttributeValue(name, value);
    return ToUtf8(value);
}

std::string ChildText(ZebXMLNode& node, const wchar_t* name) {
    std::unique_ptr<ZebXMLNode> child(node.SelectSingleNode(name));
    return child ? ToUtf8(child->GetNodeValue()) : std::string();
}

std::string Serialize(ZebXMLNode& node) {
    std::string text = "<" + ToUtf8(node.GetName());
    for (const auto& [name, value] : node.GetAttributes())
        text += " " + ToUtf8(name) + "=\"" + ToUtf8(value) + "\"";
    text += ">" + ToUtf8(node.GetNodeValue());
    std::unique_ptr<ZebXMLNodeList> children(node.GetChildElements());
    for (long i = 0; i < children->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> child((*children)[i]);
        text += Serialize(*child);
    }
    return text + "</>";
}

ParamData ReadParam(ZebXMLNode& node) {
    ParamData p;
    p.id = Attr(node, L"Type");
    p.status = Attr(node, L"Status");
    p.op = ChildText(node, L"Operator");
    p.kind = ChildText(node, L"ParameterType");
    p.table = p.kind == "24";
    std::unique_ptr<ZebXMLNodeList> options(node.GetNodeList(L"OperatorOption"));
    for (long i = 0; i < options->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> option((*options)[i]);
        p.options += (i ? "," : "") + ToUtf8(option->GetNodeValue());
    }
    std::unique_ptr<ZebXMLNodeList> values(node.GetNodeList(L"Value"));
    for (long i = 0; i < values->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> value((*values)[i]);
        if (p.table) {
            Row row;
            for (const auto& attribute : value->GetAttributes())
                row.push_back(ToUtf8(attribute.second));
            p.rows.push_back(std::move(row));
        } else {
            p.values.push_back(ToUtf8(value->GetNodeValue()));
        }
    }
    if (std::unique_ptr<ZebXMLNode> criteria(node.SelectSingleNode(L"ResultCriteria")); criteria) {
        p.criteria = Attr(*criteria, L"Status");
        p.criteriaType = Attr(*criteria, L"CriteriaType");
        std::unique_ptr<ZebXMLNodeList> maps(criteria->GetChildElements());
        for (long i = 0; i < maps->GetSize(); ++i) {
            std::unique_ptr<ZebXMLNode> map((*maps)[i]);
            p.deviations += Serialize(*map);
        }
    }
    return p;
}

// As RewriteRules, without its messages: every rule read by the module, converted from its
// parent's unit into `unit` and written again; a rule the module does not read stays as it is.
void Normalize(const ModuleLoader& loader, ZebXMLDocument& input, int unit, Normalized& out) {
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(out.doc, unit));
    loader.SetXMLDoc(&out.doc);
    std::vector<bool> known;
    for (const std::unique_ptr<ZebXMLNode>& node : SettingsRuleElements(input)) {
        CZebRule* made = RecreateRule(loader, node.get());
        if (!made) {
            parent->AppendNode(node.get());
            known.push_back(false);
            continue;
        }
        RuleHandle rule(loader, made);
        const UnitSetting from{ZebParentUnitAttribute(node.get()), 0};
        const UnitSetting to{unit, 0};
        rule->ConvertUnits(&from, &to);
        std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
        if (!exported) exported.reset(out.doc.CreateNode(L"Rule"));
        parent->AppendNode(exported.get());
        known.push_back(true);
    }
    loader.SetXMLDoc(nullptr);
    std::unique_ptr<ZebXMLNodeList> written(parent->GetChildElements());
    for (long i = 0; i < written->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> node((*written)[i]);
        RuleData rule;
        rule.name = Attr(*node, L"Name");
        rule.known = known[static_cast<size_t>(i)];
        if (!rule.known) {
            rule.raw = Serialize(*node);
        } else {
            for (const wchar_t* h : {L"Status", L"LifeStatus", L"Severity"})
                rule.header[ToUtf8(h)] = Attr(*node, h);
            std::unique_ptr<ZebXMLNodeList> params(node->GetNodeList(L"Parameter"));
            for (long j = 0; j < params->GetSize(); ++j) {
                std::unique_ptr<ZebXMLNode> param((*params)[j]);
                rule.params.push_back(ReadParam(*param));
            }
        }
        out.rules.push_back(std::move(rule));
    }
}

std::string UnitName(int code) {
    const ZebLengthUnit* unit = CZEBUnitConvertor::FindUnit(code);
    return std::to_string(code) + (unit ? " (" + std::string(unit->name) + ")" : " (unknown)");
}

std::string OperatorText(const std::string& code) {
    const wchar_t* text = ZebOperatorText(std::atoi(code.c_str()));
    return text ? ToUtf8(text) : code;
}

std::string RowText(const Row& row) {
    std::string text = "[";
    for (size_t i = 0; i < row.size(); ++i) text += (i ? " | " : "") + row[i];
    return text + "]";
}

std::string ValuesText(const std::vector<std::string>& values) {
    if (values.empty()) return "(none)";
    std::string text;
    for (const std::string& v : values) text += (text.empty() ? "" : " ") + v;
    return text;
}

// Rules and rows are matched by a key and its occurrence: the second "M8" row of OLD meets the
// second "M8" row of NEW.
template <class Item, class KeyOf>
std::vector<std::string> OccurrenceKeys(const std::vector<Item>& items, KeyOf keyOf) {
    std::map<std::string, int> seen;
    std::vector<std::string> keys;
    for (const Item& item : items) {
        const std::string key = keyOf(item);
        keys.push_back(key + "\x1f" + std::to_string(seen[key]++));
    }
    return keys;
}

int Find(const std::vector<std::string>& keys, const std::string& key) {
    for (size_t i = 0; i < keys.size(); ++i)
        if (keys[i] == key) return static_cast<int>(i);
    return -1;
}

class Differ {
public:
    Differ(const Normalized& oldShown, const Normalized& oldInNew, const Normalized& newShown,
           const Normalized& newWritten, std::vector<std::string>& lines)
        : m_oldShown(oldShown),
          m_oldInNew(oldInNew),
          m_newShown(newShown),
          m_newWritten(newWritten),
          m_lines(lines) {}

    void Rules() {
        auto key = [](const RuleData& r) { return ToUtf8(ZebFoldCase(FromUtf8(r.name))); };
        const auto oldKeys = OccurrenceKeys(m_oldShown.rules, key);
        const auto newKeys = OccurrenceKeys(m_newShown.rules, key);
        for (size_t i = 0; i < oldKeys.size(); ++i) {
            const int j = Find(newKeys, oldKeys[i]);
            if (j < 0) {
                m_lines.push_back("- rule \"" + m_oldShown.rules[i].name + "\"");
                continue;
            }
            Rule(i, static_cast<size_t>(j));
        }
        for (size_t j = 0; j < newKeys.size(); ++j)
            if (Find(oldKeys, newKeys[j]) < 0)
                m_lines.push_back("+ rule \"" + m_newShown.rules[j].name + "\"");
    }

private:
    void Rule(size_t i, size_t j) {
        const RuleData& a = m_oldInNew.rules[i];
        const RuleData& b = m_newWritten.rules[j];
        const std::string prefix = "rule \"" + m_oldShown.rules[i].name + "\"";
        if (!a.known || !b.known) {
            if (a.known != b.known || m_oldShown.rules[i].raw != m_newShown.rules[j].raw)
                m_lines.push_back(
                    prefix +
                    ": changed (no rule of the module reads it, so it is compared as written)");
            return;
        }
        for (const char* h : {"Severity", "Status", "LifeStatus"}) {
            const std::string& from = a.header.at(h);
            const std::string& to = b.header.at(h);
            if (from != to)
                m_lines.push_back(prefix + ": " + Lower(h) + " " + HeaderText(h, from) + " -> " +
                                  HeaderText(h, to));
        }
        auto key = [](const ParamData& p) { return p.id; };
        const auto oldKeys = OccurrenceKeys(a.params, key);
        const auto newKeys = OccurrenceKeys(b.params, key);
        for (size_t p = 0; p < oldKeys.size(); ++p) {
            const int q = Find(newKeys, oldKeys[p]);
            if (q < 0) {
                m_lines.push_back(prefix + ": - parameter " + a.params[p].id);
                continue;
            }
            Param(prefix + " parameter " + a.params[p].id, m_oldShown.rules[i].params[p],
                  a.params[p], m_newShown.rules[j].params[static_cast<size_t>(q)],
                  b.params[static_cast<size_t>(q)]);
        }
        for (size_t q = 0; q < newKeys.size(); ++q)
            if (Find(oldKeys, newKeys[q]) < 0)
                m_lines.push_back(prefix + ": + parameter " + b.params[q].id);
    }

    static std::string HeaderText(const std::string& header, const std::string& value) {
        if (header != "LifeStatus") return value;
        if (value == std::to_string(kLifeStatusInUse)) return "in use";
        if (value == std::to_string(kLifeStatusSwitchedOff)) return "switched off";
        return value;
    }

    static std::string Lower(std::string text) {
        if (text == "LifeStatus") return "life status";
        for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return text;
    }

    // `oldShown` and `newShown` are in OLD's unit; `oldInNew` and `newWritten` in NEW's, to
    // compare.
    void Param(const std::string& prefix, const ParamData& oldShown, const ParamData& oldInNew,
               const ParamData& newShown, const ParamData& newWritten) {
        auto change = [&](const std::string& what, const std::string& from, const std::string& to) {
            if (from != to) m_lines.push_back(prefix + ": " + what + " " + from + " -> " + to);
        };
        auto onOff = [](const std::string& flag) {
            return flag == "0" ? std::string("off") : std::string("on");
        };
        change("operator", OperatorText(oldInNew.op), OperatorText(newWritten.op));
        if (oldInNew.status != newWritten.status)
            change("status", oldInNew.status == "0" ? "disabled" : "enabled",
                   newWritten.status == "0" ? "disabled" : "enabled");
        if (oldInNew.criteria != newWritten.criteria)
            change("criteria", onOff(oldInNew.criteria), onOff(newWritten.criteria));
        change("criteria type", oldInNew.criteriaType, newWritten.criteriaType);
        change("kind", oldInNew.kind, newWritten.kind);
        change("operator options", oldInNew.options, newWritten.options);
        if (oldInNew.deviations != newWritten.deviations)
            m_lines.push_back(prefix + ": result criteria deviations changed");
        if (oldInNew.table != newWritten.table) return;
        if (!oldInNew.table) {
            // Equal when either document converted into the other's unit writes the other's values.
            if (oldInNew.values != newWritten.values && oldShown.values != newShown.values)
                m_lines.push_back(prefix + ": values " + ValuesText(oldShown.values) + " -> " +
                                  ValuesText(newShown.values));
            return;
        }
        auto first = [](const Row& row) { return row.empty() ? std::string() : row[0]; };
        const auto oldKeys = OccurrenceKeys(oldInNew.rows, first);
        const auto newKeys = OccurrenceKeys(newWritten.rows, first);
        for (size_t r = 0; r < oldKeys.size(); ++r) {
            const int s = Find(newKeys, oldKeys[r]);
            if (s < 0) {
                m_lines.push_back(prefix + ": - row " + RowText(oldShown.rows[r]));
            } else if (oldInNew.rows[r] != newWritten.rows[static_cast<size_t>(s)] &&
                       oldShown.rows[r] != newShown.rows[static_cast<size_t>(s)]) {
                m_lines.push_back(prefix + ": row \"" + first(oldShown.rows[r]) + "\" " +
                                  RowText(oldShown.rows[r]) + " -> " +
                                  RowText(newShown.rows[static_cast<size_t>(s)]));
            }
        }
        for (size_t s = 0; s < newKeys.size(); ++s)
            if (Find(oldKeys, newKeys[s]) < 0)
                m_lines.push_back(prefix + ": + row " + RowText(newShown.rows[s]));
    }

    const Normalized& m_oldShown;
    const Normalized& m_oldInNew;
    const Normalized& m_newShown;
    const Normalized& m_newWritten;
    std::vector<std::string>& m_lines;
};

int DocumentUnit(ZebXMLDocument& doc) {
    const auto rules = SettingsRuleElements(doc);
    return ZebParentUnitAttribute(rules.empty() ? nullptr : rules[0].get());
}
}  // namespace

bool DiffSettings(const ModuleLoader& loader, const std::string& oldPath,
                  const std::string& newPath, std::vector<std::string>& lines, std::string& error) {
    ZebXMLDocument oldDoc, newDoc;
    if (!LoadSettingsFile(oldPath, oldDoc, error) || !LoadSettingsFile(newPath, newDoc, error))
        return false;
    const int oldUnit = DocumentUnit(oldDoc);
    const int newUnit = DocumentUnit(newDoc);
    Normalized oldShown, oldInNew, newShown, newWritten;
    Normalize(loader, oldDoc, oldUnit, oldShown);
    Normalize(loader, oldDoc, newUnit, oldInNew);
    Normalize(loader, newDoc, oldUnit, newShown);
    Normalize(loader, newDoc, newUnit, newWritten);
    Differ(oldShown, oldInNew, newShown, newWritten, lines).Rules();
    // A change of unit alone changes no setting; next to other changes it says in which unit
    // NEW's values are stored.
    if (!lines.empty() && oldUnit != newUnit)
        lines.insert(lines.begin(), "unit: " + UnitName(oldUnit) + " -> " + UnitName(newUnit));
    return true;
}
