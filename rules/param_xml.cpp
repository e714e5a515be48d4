#include "rules/param_xml.h"

#include <charconv>
#include <cstdlib>
#include <cwchar>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <vector>

#include "framework/parallel_ranges.h"
#include "framework/text_convert.h"
#include "framework/zeb_xml.h"
#include "rules/param_visit.h"

namespace {
using NodePtr = std::unique_ptr<ZebXMLNode>;
using ListPtr = std::unique_ptr<ZebXMLNodeList>;

// A table row is read back with at most this many cells, "Attribute1" to "Attribute5".
constexpr size_t kRowAttributes = 5;
// The attribute of cell `index`.
std::string RowAttributeName(size_t index) { return "Attribute" + std::to_string(index + 1); }
constexpr std::string_view kRowAttributeNames[kRowAttributes] = {
    "Attribute1", "Attribute2", "Attribute3", "Attribute4", "Attribute5"};

// How one value of the list becomes text and back. Decode returns false when the value type
// has no text form that can be read back (the value is then not appended).
template <class T>
struct ValueCodec;

template <>
struct ValueCodec<int32_t> {
    static std::wstring Text(int32_t v) { return XmlInt(v); }
    static bool Decode(const std::wstring& text, int32_t& v) {
        long parsed = 0;
        ParseXmlInt(text, parsed);
        v = static_cast<int32_t>(parsed);
        return true;
    }
};
template <>
struct ValueCodec<long> {
    static std::wstring Text(long v) { return XmlInt(v); }
    static bool Decode(const std::wstring& text, long& v) {
        v = 0;
        ParseXmlInt(text, v);
        return true;
    }
};
template <>
struct ValueCodec<bool> {
    static std::wstring Text(bool v) { return v ? L"1" : L"0"; }
    static bool Decode(const std::wstring& text, bool& v) {
        v = text != L"0";
        return true;
    }
};
template <>
struct ValueCodec<double> {
    static std::wstring Text(double v) { return XmlDouble(v); }
    static bool Decode(const std::wstring& text, double& v) {
        v = ParseXmlDouble(text);
        return true;
    }
};
template <>
struct ValueCodec<std::wstring> {
    static std::wstring Text(const std::wstring& v) { return v; }
    static bool Decode(const std::wstring& text, std::wstring& v) {
        v = text;
        return true;
    }
};
// Opaque values belong to the framework: written empty, never decoded.
template <>
struct ValueCodec<ZebOpaque> {
    static std::wstring Text(ZebOpaque) { return {}; }
    static bool Decode(const std::wstring&, ZebOpaque&) { return false; }
};
template <>
struct ValueCodec<uint32_t> {
    static std::wstring Text(uint32_t v) { return XmlInt(static_cast<long>(v)); }
    static bool Decode(const std::wstring& text, uint32_t& v) {
        long parsed = 0;
        ParseXmlInt(text, parsed);
        v = static_cast<uint32_t>(parsed);
        return true;
    }
};
// Rows only have a text form as attributes (kind 24); as plain values they are written empty
// and not read back.
template <>
struct ValueCodec<ZebRow> {
    static std::wstring Text(const ZebRow&) { return {}; }
    static bool Decode(const std::wstring&, ZebRow&) { return false; }
};

std::wstring SeverityWord(int32_t code) {
    switch (code) {
        case 1:
            return L"Warning";
        case 2:
            return L"Info";
        default:
            return L"Unknown";
    }
}

void AppendText(ZebXMLNode& parent, const std::wstring& name, const std::wstring& text) {
    NodePtr child(parent.AppendNode(name));
    child->SetNodeValue(text);
}

void WriteDeviation(ZebXMLNode& criteria, const std::wstring& name, const ZebDeviationMap& map) {
    NodePtr holder(criteria.AppendNode(name));
    for (const auto& [code, pair] : map) {
        NodePtr entry(holder->AppendNode(SeverityWord(code)));
        AppendText(*entry, L"Value", XmlDouble(pair.first));
        if (pair.second > 0) AppendText(*entry, L"Value", XmlDouble(pair.second));
    }
}

// An "Unknown" entry is not read back: only warnings and infos have a place in the map.
void ReadDeviation(ZebXMLNode& criteria, const std::wstring& name, ZebDeviationMap& map) {
    map.clear();
    NodePtr holder(criteria.SelectSingleNode(name));
    if (!holder) return;
    for (const auto& [word, code] : {std::pair{L"Warning", 1}, std::pair{L"Info", 2}}) {
        NodePtr entry(holder->SelectSingleNode(word));
        if (!entry) continue;
        ListPtr values(entry->GetNodeList(L"Value"));
        const long count = values->GetSize();
        if (count == 0) continue;
        std::pair<double, double> pair{0.0, 0.0};
        if (count <= 2) {
            NodePtr first((*values)[0]);
            pair.first = ParseXmlDouble(first->GetNodeValue());
            if (count == 2) {
                NodePtr second((*values)[1]);
                pair.second = ParseXmlDouble(second->GetNodeValue());
            }
        }
        map[code] = pair;
    }
}

// The integer text of `child`; 0 when there is none.
int ChildInt(const std::optional<ZebXMLNode>& child) {
    int value = 0;
    if (child && !child->GetNodeValueInInt(value)) value = 0;
    return value;
}

// The children of a "Parameter" element that the reader uses, found in one pass: a table's
// "Value" elements run to hundreds of thousands, and each lookup by name would walk them all.
// For "Operator", "ParameterType" and "ResultCriteria" the first of the name counts.
struct ParameterChildren {
    explicit ParameterChildren(const ZebXMLNode& parameter) {
        static constexpr std::string_view kNames[] = {"Value", "OperatorOption", "Operator",
                                                      "ParameterType", "ResultCriteria"};
        std::vector<ZebXMLNode> lists[std::size(kNames)];
        parameter.GetChildElementsByName1(kNames, std::size(kNames), lists);
        values = std::move(lists[0]);
        options = std::move(lists[1]);
        op = First(lists[2]);
        kind = First(lists[3]);
        criteria = First(lists[4]);
    }
    static std::optional<ZebXMLNode> First(const std::vector<ZebXMLNode>& list) {
        if (list.empty()) return std::nullopt;
        return list.front();
    }

    std::vector<ZebXMLNode> values, options;
    std::optional<ZebXMLNode> op, kind, criteria;
};

template <class T>
ZebXMLNode* WriteTyped(ZebXMLDocument* doc, ZebTypedParam<T>& p) {
    if (p.op == ZebOp_Range) {
        const int32_t count = p.values.GetSize();
        if (count % 3 != 0 && count % 2 != 0) p.values.RemoveAll();
    }
    auto* node = doc->CreateNode(L"Parameter");
    node->AddAttribute(L"Name", p.name);
    node->AddAttribute(L"Type", XmlInt(p.id));
    node->AddAttribute(L"Status", p.status ? L"1" : L"0");
    AppendText(*node, L"Operator", XmlInt(p.op));
    for (int32_t option : p.opOptions) AppendText(*node, L"OperatorOption", XmlInt(option));
    AppendText(*node, L"ParameterType", XmlInt(p.kind));
    if constexpr (std::is_same_v<T, ZebRow>) {
        if (p.kind == ZebParam_Table) {
            node->AppendElements1("Value", static_cast<size_t>(p.values.GetSize()),
                                  [&](size_t index, ZebXMLElementText& text) {
                                      const ZebRow& row = p.values[static_cast<int32_t>(index)];
                                      if (row.empty()) return;
                                      text.BeginElement();
                                      for (size_t i = 0; i < row.size(); ++i) {
                                          if (i < kRowAttributes)
                                              text.Attribute(kRowAttributeNames[i], row[i]);
                                          else
                                              text.Attribute(RowAttributeName(i), row[i]);
                                      }
                                      text.EndElement();
                                  });
        } else {
            for (const ZebRow& row : p.values)
                AppendText(*node, L"Value", ValueCodec<T>::Text(row));
        }
    } else {
        for (const T& v : p.values) AppendText(*node, L"Value", ValueCodec<T>::Text(v));
    }
    NodePtr criteria(node->AppendNode(L"ResultCriteria"));
    criteria->AddAttribute(L"Status", p.criteriaStatus ? L"1" : L"0");
    criteria->AddAttribute(L"CriteriaType", XmlInt(p.criteriaType));
    WriteDeviation(*criteria, L"PercentDeviation", p.percentDeviation);
    WriteDeviation(*criteria, L"AbsoluteDeviation", p.absoluteDeviation);
    WriteDeviation(*criteria, L"AbsoluteValue", p.absoluteValue);
    AppendText(*node, L"Remarks", p.remarks);
    return node;
}

NodePtr FindParameterNode(ZebXMLNode* ruleNode, int32_t id) {
    ListPtr list(ruleNode->GetNodeList(L"Parameter"));
    for (long i = 0; i < list->GetSize(); ++i) {
        NodePtr node((*list)[i]);
        std::wstring text;
        long type = 0;
        if (node->GetAttributeValue(L"Type", text) && ParseXmlInt(text, type) && type == id)
            return node;
    }
    return nullptr;
}

// The values of "Value" elements' texts, leaving out those the type cannot read back.
template <class T>
void AddDecodedValues(const std::vector<ZebXMLNode>& values, ZebArray<T>& out) {
    for (const ZebXMLNode& value : values) {
        T decoded{};
        if (ValueCodec<T>::Decode(value.GetNodeValue(), decoded)) out.Add(decoded);
    }
}

// A table row from the attributes "Attribute1" to "Attribute5" of a "Value" element, in that
// order; absent ones are left out.
ZebRow ReadTableRow(const ZebXMLNode& value) {
    // The cells' UTF-8 texts are gathered first so that the row is built once.
    const char* texts[kRowAttributes];
    value.GetAttributeTexts1(kRowAttributeNames, kRowAttributes, texts);
    std::string_view cells[kRowAttributes];
    size_t count = 0;
    for (const char* text : texts)
        if (text) cells[count++] = text;
    return ZebRow::FromUtf8(cells, count);
}

// Tables reach hundreds of thousands of rows: they are built in ranges at once, then added in
// order.
void AddTableRows(const std::vector<ZebXMLNode>& values, ZebArray<ZebRow>& rows) {
    std::vector<ZebRow> built(values.size());
    ZebForRanges(values.size(), [&](size_t begin, size_t end) {
        // Read once into this thread's own variables: the caller's stack is written meanwhile.
        const ZebXMLNode* const source = values.data();
        ZebRow* const target = built.data();
        for (size_t i = begin; i < end; ++i) target[i] = ReadTableRow(source[i]);
    });
    rows.AddMoved(built.data(), static_cast<int32_t>(built.size()));
}

template <class T>
void ReadTyped(ZebXMLNode* ruleNode, ZebTypedParam<T>& p) {
    NodePtr node = FindParameterNode(ruleNode, p.id);
    if (!node) return;
    ParameterChildren children(*node);
    p.op = ChildInt(children.op);
    if (!children.options.empty()) {
        p.opOptions.RemoveAll();
        for (const ZebXMLNode& option : children.options) {
            long code = 0;
            ParseXmlInt(option.GetNodeValue(), code);
            p.opOptions.Add(static_cast<int32_t>(code));
        }
    }
    p.kind = ChildInt(children.kind);
    std::wstring status;
    p.status = !(node->GetAttributeValue(L"Status", status) && status == L"0");

    if constexpr (std::is_same_v<T, ZebRow>) {
        if (p.kind == ZebParam_Table)
            AddTableRows(children.values, p.values);
        else
            AddDecodedValues(children.values, p.values);
    } else {
        AddDecodedValues(children.values, p.values);
    }

    if (!children.criteria) return;
    ZebXMLNode& criteria = *children.criteria;
    std::wstring text;
    p.criteriaStatus = !(criteria.GetAttributeValue(L"Status", text) && text == L"0");
    long type = 0;
    text.clear();
    if (criteria.GetAttributeValue(L"CriteriaType", text)) ParseXmlInt(text, type);
    p.criteriaType = static_cast<int32_t>(type);
    ReadDeviation(criteria, L"PercentDeviation", p.percentDeviation);
    ReadDeviation(criteria, L"AbsoluteDeviation", p.absoluteDeviation);
    ReadDeviation(criteria, L"AbsoluteValue", p.absoluteValue);
}

}  // namespace

std::wstring XmlInt(long value) { return std::to_wstring(value); }

std::wstring XmlDouble(double value) {
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
    return FromUtf8(std::string_view(buffer, result.ptr - buffer));
}

bool ParseXmlInt(const std::wstring& text, long& value) {
    const wchar_t* start = text.c_str();
    wchar_t* end = nullptr;
    const long parsed = std::wcstol(start, &end, 10);
    if (end == start) return false;
    value = parsed;
    return true;
}

double ParseXmlDouble(const std::wstring& text) {
    std::istringstream in(ToUtf8(text));
    in.imbue(std::locale::classic());
    double value = 0.0;
    if (!(in >> value)) return 0.0;
    return value;
}

ZebXMLNode* WriteParameterXML(ZebXMLDocument* doc, CZebParamStorage& param) {
    ZebXMLNode* node = nullptr;
    VisitTyped(param, [&](auto& typed) { node = WriteTyped(doc, typed); });
    return node;
}

bool ReadParameterXML(ZebXMLNode* ruleNode, CZebParamStorage& param) {
    return VisitTyped(param, [&](auto& typed) { ReadTyped(ruleNode, typed); });
}
