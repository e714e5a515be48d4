#include "host/settings_lint.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <locale>
#include <map>
#include <memory>
#include <pugixml.hpp>
#include <set>
#include <sstream>

#include "framework/case_fold.h"
#include "framework/param_storage.h"
#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "framework/zeb_operator.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "host/settings_file.h"

namespace {
// Line numbers from pugixml's offsets into the text it parsed.
class LineIndex {
public:
    explicit LineIndex(const std::string& text) {
        for (size_t i = 0; i < text.size(); ++i)
            if (text[i] == '\n') m_breaks.push_back(i);
    }
    long LineOf(pugi::xml_node node) const {
        const ptrdiff_t offset = node.offset_debug();
        if (offset < 0) return 0;
        return 1 + static_cast<long>(std::lower_bound(m_breaks.begin(), m_breaks.end(),
                                                      static_cast<size_t>(offset)) -
                                     m_breaks.begin());
    }

private:
    std::vector<size_t> m_breaks;
};

bool OnlySpace(const char* s) {
    for (; *s; ++s)
        if (*s != ' ' && *s != '\t' && *s != '\n' && *s != '\r') return false;
    return true;
}

// How a text reads as a number: wholly, by a leading part only, or not at all.
enum class Parsed { Exact, Partial, None };

// The module reads integers with strtol: leading blanks and a sign, then digits, the rest ignored.
Parsed ReadInt(const std::string& text, long& value) {
    const char* start = text.c_str();
    char* end = nullptr;
    errno = 0;
    const long parsed = std::strtol(start, &end, 10);
    if (end == start) return Parsed::None;
    value = parsed;
    return OnlySpace(end) && errno != ERANGE ? Parsed::Exact : Parsed::Partial;
}

// An integer the module keeps in 32 bits.
Parsed ReadInt32(const std::string& text, long& value) {
    const Parsed parsed = ReadInt(text, value);
    if (parsed == Parsed::None) return parsed;
    const long kept = static_cast<int32_t>(value);
    if (kept != value) {
        value = kept;
        return Parsed::Partial;
    }
    return parsed;
}

// Doubles are read by stream extraction in the classic locale; text it cannot read is 0.
Parsed ReadDouble(const std::string& text, double& value) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    double parsed = 0.0;
    if (!(in >> parsed)) {
        value = 0.0;
        return Parsed::None;
    }
    value = parsed;
    if (in.eof()) return Parsed::Exact;
    in >> std::ws;
    return in.eof() ? Parsed::Exact : Parsed::Partial;
}

// Doubles are written with six decimals.
std::string SixDecimals(double value) {
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.6f", value);
    return buffer;
}

// The shortest text that reads back as the same double, to compare values whatever their text.
std::string ShortDouble(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string OperatorName(long code) {
    const wchar_t* text = ZebOperatorText(static_cast<int32_t>(code));
    return std::to_string(code) + (text ? " (" + ToUtf8(text) + ")" : "");
}

bool KnownOperator(long code) { return ZebOperatorText(static_cast<int32_t>(code)) != nullptr; }

// A value as text, in one form for what the file says and for what the module holds.
using ValueList = std::vector<std::string>;

std::string RowText(const ZebRow& row) {
    std::string text = "[";
    for (size_t i = 0; i < row.size(); ++i) text += (i ? " | " : "") + ToUtf8(row[i]);
    return text + "]";
}

template <class T>
void AppendTexts(const ZebTypedParam<T>& p, ValueList& out) {
    for (const T& v : p.values) {
        if constexpr (std::is_same_v<T, double>)
            out.push_back(ShortDouble(v));
        else if constexpr (std::is_same_v<T, bool>)
            out.push_back(v ? "1" : "0");
        else if constexpr (std::is_same_v<T, std::wstring>)
            out.push_back(ToUtf8(v));
        else if constexpr (std::is_same_v<T, ZebRow>)
            out.push_back(RowText(v));
        else if constexpr (std::is_same_v<T, ZebOpaque>)
            out.push_back("(opaque)");
        else
            out.push_back(std::to_string(v));
    }
}

ValueList HeldValues(CZebParamStorage& p) {
    ValueList out;
    switch (p.GetType()) {
        case ZebType_Int:
            AppendTexts(*p.As<int32_t>(), out);
            break;
        case ZebType_Long:
            AppendTexts(*p.As<long>(), out);
            break;
        case ZebType_Bool:
            AppendTexts(*p.As<bool>(), out);
            break;
        case ZebType_Double:
            AppendTexts(*p.As<double>(), out);
            break;
        case ZebType_String:
            AppendTexts(*p.As<std::wstring>(), out);
            break;
        case ZebType_Opaque:
            AppendTexts(*p.As<ZebOpaque>(), out);
            break;
        case ZebType_Unsigned:
            AppendTexts(*p.As<uint32_t>(), out);
            break;
        case ZebType_Row:
            AppendTexts(*p.As<ZebRow>(), out);
            break;
        default:
            break;
    }
    return out;
}

std::string ListText(const ValueList& values) {
    if (values.empty()) return "none";
    std::string text;
    for (const std::string& v : values) text += (text.empty() ? "" : ", ") + v;
    return text;
}

// Everything of a parameter that reading can set, to tell two reads apart.
std::string ParamState(CZebParamStorage& p) {
    const ZebTypedParamBase* b = p.GetParam();
    std::string state = std::to_string(b->op) + "/" + std::to_string(b->kind) + "/" +
                        (b->status ? "1" : "0") + "/" + (b->criteriaStatus ? "1" : "0") + "/" +
                        std::to_string(b->criteriaType) + "/";
    for (int32_t o : b->opOptions) state += std::to_string(o) + ",";
    return state + "/" + ListText(HeldValues(p));
}

std::vector<pugi::xml_node> Children(pugi::xml_node node, const char* name) {
    std::vector<pugi::xml_node> out;
    for (pugi::xml_node c = node.child(name); c; c = c.next_sibling(name)) out.push_back(c);
    return out;
}

bool InsideRule(pugi::xml_node node) {
    for (pugi::xml_node up = node.parent(); up; up = up.parent())
        if (up.type() == pugi::node_element && std::string(up.name()) == "Rule") return true;
    return false;
}

void CollectRules(pugi::xml_node node, std::vector<pugi::xml_node>& out) {
    for (pugi::xml_node c = node.first_child(); c; c = c.next_sibling()) {
        if (c.type() != pugi::node_element) continue;
        if (std::string(c.name()) == "Rule" && !InsideRule(c)) out.push_back(c);
        CollectRules(c, out);
    }
}

class Linter {
public:
    Linter(const ModuleLoader& loader, const LineIndex& lines, std::vector<LintFinding>& findings)
        : m_loader(loader), m_lines(lines), m_findings(findings) {
        ZebArray<CZebRule*> rules;
        loader.GetAllRules(&rules);
        for (CZebRule* made : rules) m_catalogue.emplace_back(loader, made);
    }

    void Unit(pugi::xml_node parent) {
        pugi::xml_attribute unit = parent.attribute("Unit");
        if (!unit) return;
        long code = 0;
        const Parsed parsed = ReadInt(unit.value(), code);
        std::string message;
        if (parsed == Parsed::None) {
            message = "\"Unit\" " + Quoted(unit.value()) +
                      " is not a number: the values are read as unit 0";
        } else if (!CZEBUnitConvertor::FindUnit(code)) {
            message = "\"Unit\" " + Quoted(unit.value()) +
                      " is no unit code the converter knows: a change of unit leaves the values as "
                      "they are";
        } else if (parsed == Parsed::Partial) {
            message =
                "\"Unit\" " + Quoted(unit.value()) + " is read as unit " + std::to_string(code);
        } else {
            return;
        }
        Add("", "", parent, message);
    }

    void Rule(pugi::xml_node element, ZebXMLNode* node) {
        const std::string name = element.attribute("Name").value();
        CZebRule* known = Known(name);
        if (!known) {
            Add(name, "", element,
                "no rule of the module has this name: the module ignores it (resave keeps it as it "
                "stands)");
            return;
        }
        const std::wstring key = ZebFoldCase(known->Name);
        if (auto first = m_seen.find(key); first != m_seen.end()) {
            Add(name, "", element,
                "the rule appears again (first on line " + std::to_string(first->second) +
                    "): each element is read and written as a rule of its own");
        } else {
            m_seen.emplace(key, m_lines.LineOf(element));
        }
        for (const char* header : {"Status", "LifeStatus", "Severity"})
            HeaderInt(name, element, header);

        // The module's own reading of the element, to check against.
        CZebRule* made = node ? RecreateRule(m_loader, node) : nullptr;
        std::unique_ptr<RuleHandle> read(made ? new RuleHandle(m_loader, made) : nullptr);

        std::set<long> upgraded;
        if (read && node) upgraded = Upgrade(name, element, node, *read->get());

        std::map<long, long> firstLine;
        for (pugi::xml_node param : Children(element, "Parameter")) {
            pugi::xml_attribute typeAttr = param.attribute("Type");
            const std::string typeText = typeAttr.value();
            long id = 0;
            const Parsed parsed = typeAttr ? ReadInt(typeText, id) : Parsed::None;
            if (parsed == Parsed::None) {
                Add(name, typeText, param,
                    std::string(typeAttr ? "\"Type\" " + Quoted(typeText) + " is not a number"
                                         : "no \"Type\"") +
                        ": the parameter is never read and is dropped on the next save");
                continue;
            }
            CZebParamStorage* own = known->FindParameterInArray(id);
            if (!own) {
                Add(name, typeText, param,
                    "the rule has no parameter " + std::to_string(id) +
                        ": it is not read and is dropped on the next save");
                continue;
            }
            if (auto first = firstLine.find(id); first != firstLine.end()) {
                Add(name, typeText, param,
                    "another \"Parameter\" of type " + std::to_string(id) + " (first on line " +
                        std::to_string(first->second) +
                        "): only the first is read, this one is dropped on the next save");
                continue;
            }
            firstLine.emplace(id, m_lines.LineOf(param));
            m_valueFinding = false;
            if (parsed == Parsed::Partial)
                Add(name, typeText, param,
                    "\"Type\" " + Quoted(typeText) + " is read as " + std::to_string(id));
            CZebParamStorage* held = read ? read->get()->FindParameterInArray(id) : nullptr;
            const ValueList fromFile = Parameter(name, typeText, param, own->GetType(), held);
            // Whatever else reading does to the values, unless a finding already explains it.
            if (!m_valueFinding && held && !upgraded.count(id)) {
                const ValueList heldValues = HeldValues(*held);
                if (heldValues != fromFile)
                    Add(name, typeText, param,
                        "reading changes the values: " + ListText(fromFile) + " become " +
                            ListText(heldValues));
            }
        }
        for (CZebParamStorage* p : known->ParamArray) {
            const long id = p->GetParam()->id;
            if (firstLine.count(id) || upgraded.count(id)) continue;
            CZebParamStorage* held = read ? read->get()->FindParameterInArray(id) : nullptr;
            Add(name, std::to_string(id), element,
                "no \"Parameter\" of type " + std::to_string(id) + ": after reading it holds " +
                    ListText(held ? HeldValues(*held) : HeldValues(*p)) +
                    ", which the next save writes");
        }
    }

private:
    void Add(const std::string& rule, const std::string& parameter, pugi::xml_node node,
             const std::string& message) {
        m_findings.push_back({rule, parameter, m_lines.LineOf(node), message});
    }
    // A finding about the values themselves.
    void AddValue(const std::string& rule, const std::string& parameter, pugi::xml_node node,
                  const std::string& message) {
        m_valueFinding = true;
        Add(rule, parameter, node, message);
    }

    CZebRule* Known(const std::string& name) {
        const std::wstring wide = FromUtf8(name);
        for (RuleHandle& rule : m_catalogue)
            if (ZebEqualsNoCase(rule->Name, wide)) return rule.get();
        return nullptr;
    }

    void HeaderInt(const std::string& rule, pugi::xml_node element, const char* header) {
        pugi::xml_attribute attr = element.attribute(header);
        long value = 0;
        const Parsed parsed = attr ? ReadInt32(attr.value(), value) : Parsed::None;
        if (parsed == Parsed::Exact) return;
        const std::string what =
            attr ? Quoted(header) + " " + Quoted(attr.value()) : "no " + Quoted(header);
        Add(rule, "", element,
            what + (parsed == Parsed::None ? " is read as -1"
                                           : " is read as " + std::to_string(value)));
    }

    // Reads the element again under a parent of this host's settings version: what differs was
    // added by the upgrade of older settings.
    std::set<long> Upgrade(const std::string& name, pugi::xml_node element, ZebXMLNode* node,
                           CZebRule& read) {
        std::set<long> changed;
        std::unique_ptr<ZebXMLNode> parent(node->GetParentNode());
        if (!parent) return changed;
        ZebXMLDocument current;
        std::unique_ptr<ZebXMLNode> holder(StartSettingsDocument(current, 0));
        std::wstring unit;
        if (parent->GetAttributeValue(L"Unit", unit)) holder->AddAttribute(L"Unit", unit);
        holder->AppendNode(node);
        std::unique_ptr<ZebXMLNodeList> copies(holder->GetNodeList(L"Rule"));
        std::unique_ptr<ZebXMLNode> copy((*copies)[0]);
        CZebRule* made = copy ? RecreateRule(m_loader, copy.get()) : nullptr;
        if (!made) return changed;
        RuleHandle again(m_loader, made);
        for (CZebParamStorage* p : read.ParamArray) {
            CZebParamStorage* other = again->FindParameterInArray(p->GetParam()->id);
            if (other && ParamState(*p) != ParamState(*other)) changed.insert(p->GetParam()->id);
        }
        if (changed.empty()) return changed;
        std::wstring currentVersion;
        holder->GetAttributeValue(L"Version", currentVersion);
        pugi::xml_attribute version = element.parent().attribute("Version");
        std::string ids;
        for (long id : changed) ids += (ids.empty() ? "" : ", ") + std::to_string(id);
        Add(name, "", element.parent(),
            (version ? "\"Version\" " + Quoted(version.value()) + " counts"
                     : std::string("no \"Version\": the settings count")) +
                " as older than " + ToUtf8(currentVersion) +
                ", so reading adds newer defaults to parameter" +
                (changed.size() > 1 ? "s " : " ") + ids);
        return changed;
    }

    // Checks one "Parameter" element against its value type and returns its values as the
    // file states them.
    ValueList Parameter(const std::string& rule, const std::string& type, pugi::xml_node param,
                        int32_t valueType, CZebParamStorage* held) {
        // Operator: 0 and 12 keep a parameter out of the written settings.
        pugi::xml_node opNode = param.child("Operator");
        long op = 0;
        Parsed opParsed = Parsed::None;
        if (opNode) {
            // Read after skipping blanks, as the framework reads an element's integer.
            std::string text = opNode.text().get();
            text.erase(0, text.find_first_not_of(" \t\r\n") == std::string::npos
                              ? text.size()
                              : text.find_first_not_of(" \t\r\n"));
            opParsed = ReadInt32(text, op);
            if (opParsed == Parsed::None) op = 0;
        }
        const long heldOp = held ? held->GetParam()->op : op;
        const std::string leftOut = ", which leaves the parameter out of the next save";
        if (heldOp != op) {
            Add(rule, type, opNode ? opNode : param,
                "operator " + (opNode ? Quoted(opNode.text().get()) : std::string("(none)")) +
                    " is read as " + OperatorName(heldOp));
        } else if (!opNode) {
            Add(rule, type, param, "no \"Operator\": read as 0" + leftOut);
        } else if (opParsed == Parsed::None) {
            Add(rule, type, opNode,
                "operator " + Quoted(opNode.text().get()) + " is not a number: read as 0" +
                    leftOut);
        } else if (op == ZebOp_None || op == ZebOp_NotWritten) {
            Add(rule, type, opNode, "operator " + std::to_string(op) + leftOut);
        } else if (!KnownOperator(op)) {
            Add(rule, type, opNode,
                "operator " + std::to_string(op) +
                    " is none of the known codes 1 (RANGE), 3 (=), 5 (<), 6 (>), 7 (>=), 8 (<=)");
        } else if (opParsed == Parsed::Partial) {
            Add(rule, type, opNode,
                "operator " + Quoted(opNode.text().get()) + " is read as " + OperatorName(op));
        }
        for (pugi::xml_node option : Children(param, "OperatorOption")) {
            long code = 0;
            const Parsed parsed = ReadInt32(option.text().get(), code);
            if (parsed != Parsed::Exact)
                Add(rule, type, option,
                    "\"OperatorOption\" " + Quoted(option.text().get()) + " is read as " +
                        std::to_string(parsed == Parsed::None ? 0 : code));
        }

        long kind = 0;
        pugi::xml_node kindNode = param.child("ParameterType");
        if (kindNode) {
            const Parsed parsed = ReadInt32(kindNode.text().get(), kind);
            if (parsed == Parsed::None) kind = 0;
            if (parsed != Parsed::Exact)
                Add(rule, type, kindNode,
                    "\"ParameterType\" " + Quoted(kindNode.text().get()) + " is read as " +
                        std::to_string(kind));
        }
        if (pugi::xml_attribute status = param.attribute("Status");
            status && std::string(status.value()) != "0" && std::string(status.value()) != "1")
            Add(rule, type, param,
                "\"Status\" " + Quoted(status.value()) +
                    " is read as enabled (only \"0\" disables)");

        ValueList values;
        const std::vector<pugi::xml_node> valueNodes = Children(param, "Value");
        const bool table = valueType == ZebType_Row && kind == ZebParam_Table;
        if ((valueType == ZebType_Row && !table) || valueType == ZebType_Opaque) {
            if (!valueNodes.empty())
                AddValue(rule, type, param,
                         std::to_string(valueNodes.size()) + " values are never read" +
                             (valueType == ZebType_Row ? " (table rows need \"ParameterType\" " +
                                                             std::to_string(ZebParam_Table) + ")"
                                                       : "") +
                             " and are dropped on the next save");
        } else {
            for (pugi::xml_node value : valueNodes)
                values.push_back(table ? Row(rule, type, value)
                                       : Value(rule, type, value, valueType));
        }
        // RANGE keeps only value counts that are a multiple of 2 or 3.
        if (held && held->GetParam()->op == ZebOp_Range) {
            const int32_t count = held->GetParam()->ValueCount();
            if (count % 3 != 0 && count % 2 != 0)
                AddValue(
                    rule, type, param,
                    "RANGE with " + std::to_string(count) + (count == 1 ? " value" : " values") +
                        " (neither a multiple of 2 nor of 3): all are dropped on the next save");
        }
        Criteria(rule, type, param.child("ResultCriteria"));
        return values;
    }

    std::string Value(const std::string& rule, const std::string& type, pugi::xml_node value,
                      int32_t valueType) {
        const std::string text = value.text().get();
        switch (valueType) {
            case ZebType_Int:
            case ZebType_Long:
            case ZebType_Unsigned: {
                long v = 0;
                const Parsed parsed =
                    valueType == ZebType_Long ? ReadInt(text, v) : ReadInt32(text, v);
                if (parsed == Parsed::None) v = 0;
                if (valueType == ZebType_Unsigned) v = static_cast<uint32_t>(v);
                if (parsed != Parsed::Exact)
                    AddValue(rule, type, value,
                             "value " + Quoted(text) + " is not an integer: read as " +
                                 std::to_string(v));
                return std::to_string(v);
            }
            case ZebType_Bool:
                if (text != "0" && text != "1")
                    AddValue(rule, type, value,
                             "value " + Quoted(text) + " is read as 1 (true): only \"0\" is false");
                return text == "0" ? "0" : "1";
            case ZebType_Double: {
                double v = 0.0;
                const Parsed parsed = ReadDouble(text, v);
                if (parsed != Parsed::Exact) {
                    AddValue(
                        rule, type, value,
                        "value " + Quoted(text) + " is not a number: read as " + SixDecimals(v));
                } else {
                    double back = 0.0;
                    ReadDouble(SixDecimals(v), back);
                    if (back != v)
                        AddValue(rule, type, value,
                                 "value " + Quoted(text) +
                                     " has more than six decimals: written back as " +
                                     SixDecimals(v));
                }
                return ShortDouble(v);
            }
            default:
                return text;
        }
    }

    // A table row: the cells "Attribute1" to "Attribute5" that are present, in that order.
    std::string Row(const std::string& rule, const std::string& type, pugi::xml_node value) {
        ZebRow row;
        int last = 0;
        std::vector<std::string> problems;
        for (int a = 1; a <= 5; ++a) {
            pugi::xml_attribute cell = value.attribute(("Attribute" + std::to_string(a)).c_str());
            if (!cell) continue;
            if (a != last + 1)
                problems.push_back("\"Attribute" + std::to_string(last + 1) +
                                   "\" is missing, so the later cells move left");
            last = a;
            row.push_back(FromUtf8(cell.value()));
        }
        std::vector<std::string> beyond, other;
        int count = 0;
        for (pugi::xml_attribute attr : value.attributes()) {
            ++count;
            const std::string attrName = attr.name();
            long index = 0;
            if (attrName.rfind("Attribute", 0) == 0 &&
                ReadInt(attrName.substr(9), index) == Parsed::Exact &&
                std::to_string(index) == attrName.substr(9) && index >= 1) {
                if (index > 5) beyond.push_back(attrName);
            } else {
                other.push_back(attrName);
            }
        }
        if (!beyond.empty()) {
            std::string names;
            for (const std::string& n : beyond) names += (names.empty() ? "" : ", ") + n;
            problems.push_back("row of " + std::to_string(count) +
                               " attributes: only five are read, " + names +
                               (beyond.size() > 1 ? " are" : " is") + " dropped");
        }
        for (const std::string& n : other)
            problems.push_back("attribute " + Quoted(n) + " is not read");
        if (row.empty()) problems.push_back("the row has no cells and is dropped on the next save");
        if (!problems.empty()) {
            std::string message;
            for (const std::string& p : problems) message += (message.empty() ? "" : "; ") + p;
            AddValue(rule, type, value, message);
        }
        return RowText(row);
    }

    void Criteria(const std::string& rule, const std::string& type, pugi::xml_node criteria) {
        if (!criteria) return;
        if (pugi::xml_attribute status = criteria.attribute("Status");
            status && std::string(status.value()) != "0" && std::string(status.value()) != "1")
            Add(rule, type, criteria,
                "criteria \"Status\" " + Quoted(status.value()) +
                    " is read as on (only \"0\" is off)");
        if (pugi::xml_attribute kind = criteria.attribute("CriteriaType")) {
            long v = 0;
            const Parsed parsed = ReadInt32(kind.value(), v);
            if (parsed != Parsed::Exact)
                Add(rule, type, criteria,
                    "\"CriteriaType\" " + Quoted(kind.value()) + " is read as " +
                        std::to_string(parsed == Parsed::None ? 0 : v));
        }
        for (const char* map : {"PercentDeviation", "AbsoluteDeviation", "AbsoluteValue"}) {
            pugi::xml_node holder = criteria.child(map);
            for (pugi::xml_node entry = holder.first_child(); entry; entry = entry.next_sibling()) {
                if (entry.type() != pugi::node_element) continue;
                const std::string word = entry.name();
                if (word != "Warning" && word != "Info") {
                    Add(rule, type, entry,
                        Quoted(word) + " in " + Quoted(map) +
                            " is not read back (only Warning and Info are)");
                    continue;
                }
                const std::vector<pugi::xml_node> values = Children(entry, "Value");
                if (values.size() > 2) {
                    Add(rule, type, entry,
                        std::to_string(values.size()) + " values under " + Quoted(word) +
                            " are read as 0 and 0 (at most two are read)");
                    continue;
                }
                for (pugi::xml_node v : values) {
                    double d = 0.0;
                    if (ReadDouble(v.text().get(), d) != Parsed::Exact)
                        Add(rule, type, v,
                            "value " + Quoted(v.text().get()) + " is not a number: read as " +
                                SixDecimals(d));
                }
            }
        }
    }

    const ModuleLoader& m_loader;
    const LineIndex& m_lines;
    std::vector<LintFinding>& m_findings;
    std::vector<RuleHandle> m_catalogue;
    std::map<std::wstring, long> m_seen;
    bool m_valueFinding = false;
};

bool ReadBytes(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}
}  // namespace

bool LintSettings(const ModuleLoader& loader, const std::string& path,
                  std::vector<LintFinding>& findings, std::string& error) {
    ZebXMLDocument doc;
    if (!LoadSettingsFile(path, doc, error)) return false;
    std::string text;
    pugi::xml_document lined;
    if (!ReadBytes(path, text) ||
        !lined.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_comments,
                           pugi::encoding_utf8)) {
        error = path + ": cannot be read again";
        return false;
    }
    const LineIndex lines(text);
    std::vector<pugi::xml_node> elements;
    CollectRules(lined, elements);
    std::vector<std::unique_ptr<ZebXMLNode>> nodes = SettingsRuleElements(doc);
    // Both parses see the same elements; should they ever not, lint without the module's reading.
    const bool paired = nodes.size() == elements.size();

    Linter linter(loader, lines, findings);
    std::vector<pugi::xml_node> parents;
    for (pugi::xml_node element : elements)
        if (std::find(parents.begin(), parents.end(), element.parent()) == parents.end())
            parents.push_back(element.parent());
    for (pugi::xml_node parent : parents)
        if (parent.type() == pugi::node_element) linter.Unit(parent);
    for (size_t i = 0; i < elements.size(); ++i)
        linter.Rule(elements[i], paired ? nodes[i].get() : nullptr);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const LintFinding& a, const LintFinding& b) { return a.line < b.line; });
    return true;
}

std::string LintFindingsText(const std::string& path, const std::vector<LintFinding>& findings) {
    std::string text;
    for (const LintFinding& f : findings) {
        text += path + ":" + std::to_string(f.line) + ": ";
        if (!f.rule.empty()) text += "rule " + Quoted(f.rule) + (f.parameter.empty() ? ": " : " ");
        if (!f.parameter.empty()) text += "parameter " + f.parameter + ": ";
        text += f.message + "\n";
    }
    return text;
}

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (c < 0x20) {
                    char buffer[8];
                    std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
                    out += buffer;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

std::string LintFindingsJson(const std::vector<LintFinding>& findings) {
    std::string out = "[";
    for (size_t i = 0; i < findings.size(); ++i) {
        const LintFinding& f = findings[i];
        out += i ? ",\n " : "\n ";
        out += "{\"rule\": " + (f.rule.empty() ? std::string("null") : JsonString(f.rule)) +
               ", \"parameter\": " +
               (f.parameter.empty() ? std::string("null") : JsonString(f.parameter)) +
               ", \"line\": " + std::to_string(f.line) + ", \"message\": " + JsonString(f.message) +
               "}";
    }
    return out + (findings.empty() ? "]\n" : "\n]\n");
}
