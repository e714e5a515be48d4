#include "util/texts.h"

#include <langinfo.h>
#include <locale.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cwctype>

#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/zeb_xml.h"
#include "module/assembly_rules_app.h"

namespace {
struct OperatorText {
    int code;
    const wchar_t* text;
};
const OperatorText kOperators[] = {{8, L"<="}, {5, L"<"}, {3, L"="}, {6, L">"}, {7, L">="}, {1, L"RANGE"}};

const unsigned kSeverityIds[] = {6008, 6009, 6010, 6011, 6012};

struct UnitText {
    int code;
    unsigned stringId;
};
const UnitText kUnitTexts[] = {{0, 6033}, {1, 6039}, {2, 6040}, {3, 6043}, {4, 2044},
                               {6, 6036}, {7, 6037}, {8, 6038}, {9, 6042}, {10, 6041}};

bool EqualsNoCase(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(a[i]) != std::towlower(b[i])) return false;
    return true;
}

// Parses the decimal double at the start of `utf8`; 0.0 when there is none.
double LeadingDouble(const std::string& utf8) {
    const char* first = utf8.data();
    const char* last = first + utf8.size();
    if (first != last && *first == '+') ++first;
    double value = 0.0;
    const auto result = std::from_chars(first, last, value);
    return result.ec == std::errc() ? value : 0.0;
}
}  // namespace

int OperatorFromText(const std::wstring& text) {
    for (const OperatorText& op : kOperators)
        if (EqualsNoCase(text, op.text)) return op.code;
    return 0;
}

std::wstring OperatorToText(int code) {
    for (const OperatorText& op : kOperators)
        if (op.code == code) return op.text;
    return {};
}

std::wstring OperatorSymbol(int code) { return code == 1 ? std::wstring() : OperatorToText(code); }

int SeverityComboIndex(int code) { return code >= 1 && code <= 5 ? code - 1 : -1; }

int SeverityFromName(const std::wstring& name) {
    CZebResourceScope scope;
    for (int i = 0; i < 5; ++i)
        if (ZebLoadString(kSeverityIds[i]) == name) return i + 1;
    return 0;
}

void FillSeverityNames(std::list<std::wstring>& names) {
    names.clear();
    CZebResourceScope scope;
    for (unsigned id : kSeverityIds) names.push_back(ZebLoadString(id));
}

std::wstring GetUnitText(int code) {
    for (const UnitText& unit : kUnitTexts)
        if (unit.code == code) return LoadLocalizedString(unit.stringId);
    return {};
}

int GetUnitAttribute(ZebXMLNode* node) {
    if (!node) return 0;
    ZebXMLNode* parent = node->GetParentNode();
    if (!parent) return 0;
    std::wstring text;
    int unit = 0;
    if (parent->GetAttributeValue(L"Unit", text)) unit = std::wcstol(text.c_str(), nullptr, 10);
    delete parent;
    return unit;
}

std::wstring FormatFixedTrimmed(double value) {
    // Always the C runtime's own "%lf" with '.', whatever locale the process runs in.
    char buffer[400];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
    std::string text(buffer, result.ptr);
    while (!text.empty() && text.back() == '0') text.pop_back();
    return FromUtf8(text);
}

std::wstring FormatTrimmedNumber(double value, const std::wstring& separator) {
    std::wstring text = FormatFixedTrimmed(value);
    if (!separator.empty() && text.size() >= separator.size() &&
        text.compare(text.size() - separator.size(), separator.size(), separator) == 0)
        text += L"0";
    return text;
}

std::wstring UserDecimalSeparator() {
    // Cached per locale setting; FormatNumber runs for every cell of large tables.
    static std::string cachedKey = "\x01";
    static std::wstring cachedSeparator = L".";
    std::string key;
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        const char* value = std::getenv(name);
        key += value ? value : "";
        key += '\n';
    }
    if (key == cachedKey) return cachedSeparator;
    std::wstring separator = L".";
    if (locale_t locale = newlocale(LC_NUMERIC_MASK, "", static_cast<locale_t>(0))) {
        const char* radix = nl_langinfo_l(RADIXCHAR, locale);
        if (radix && *radix) separator = FromUtf8(std::string(radix).substr(0, 5));
        freelocale(locale);
    }
    cachedKey = key;
    cachedSeparator = separator;
    return separator;
}

std::wstring FormatNumber(double value) { return FormatTrimmedNumber(value, UserDecimalSeparator()); }

std::wstring TrimBlanks(const std::wstring& text) {
    size_t first = 0, last = text.size();
    while (first < last && std::iswspace(text[first])) ++first;
    while (last > first && std::iswspace(text[last - 1])) --last;
    return text.substr(first, last - first);
}

double ParseNumber(const std::wstring& text) {
    const std::wstring trimmed = TrimBlanks(text);
    const size_t run = trimmed.find_first_not_of(L".0123456789");
    return LeadingDouble(ToUtf8(trimmed.substr(0, run)));
}

bool IsNumericText(const std::wstring& text) {
    return text.find_first_not_of(L".0123456789") == std::wstring::npos;
}

double ToDouble(const std::wstring& text) {
    size_t first = 0;
    while (first < text.size() && std::iswspace(text[first])) ++first;
    return LeadingDouble(ToUtf8(text.substr(first)));
}
