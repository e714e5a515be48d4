#include "util/number_text.h"

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <iterator>

#include "framework/text_convert.h"

namespace {
// Parses the decimal double at the start of `utf8`; 0.0 when there is none.
double LeadingDouble(std::string_view utf8) {
    const char* first = utf8.data();
    const char* last = first + utf8.size();
    if (first != last && *first == '+') ++first;
    double value = 0.0;
    const auto result = std::from_chars(first, last, value);
    return result.ec == std::errc() ? value : 0.0;
}
}  // namespace

// "%lf" of the value: six decimals of its exact binary value, rounded half to even, with '.'
// whatever the process's locale, as std::to_chars writes it. The lengths of a table are far below
// 10^12, and for those it is worked out here in whole numbers, at a fraction of the general
// conversion's cost: the value is m * 2^e exactly, so the six decimals are m * 10^6 / 2^-e rounded.
// Returns the end of the text.
static char* FixedSix(double value, char* buffer, char* last) {
    if (!std::isfinite(value) || std::fabs(value) >= 1e12)
        return std::to_chars(buffer, last, value, std::chars_format::fixed, 6).ptr;
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const int biased = static_cast<int>((bits >> 52) & 0x7FF);
    uint64_t mantissa = bits & ((uint64_t(1) << 52) - 1);
    if (biased != 0) mantissa |= uint64_t(1) << 52;
    // Below 10^12 the exponent is negative: every such value has a fraction of 52 or more bits.
    const int shift = biased != 0 ? 1075 - biased : 1074;
    const unsigned __int128 scaled = static_cast<unsigned __int128>(mantissa) * 1000000u;
    uint64_t millionths = 0;
    // scaled < 2^73: from 128 bits on it is below half of 2^shift and rounds to 0.
    if (shift < 128) {
        millionths = static_cast<uint64_t>(scaled >> shift);
        const unsigned __int128 rest = scaled & ((static_cast<unsigned __int128>(1) << shift) - 1);
        const unsigned __int128 half = static_cast<unsigned __int128>(1) << (shift - 1);
        if (rest > half || (rest == half && (millionths & 1))) ++millionths;
    }
    char* out = buffer;
    if (bits >> 63) *out++ = '-';
    out = std::to_chars(out, last, millionths / 1000000).ptr;
    *out++ = '.';
    // The six decimals as three pairs, which do not wait for each other.
    static constexpr char kPairs[] =
        "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
        "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
        "8081828384858687888990919293949596979899";
    const auto fraction = static_cast<uint32_t>(millionths % 1000000);
    std::memcpy(out, kPairs + 2 * (fraction / 10000), 2);
    std::memcpy(out + 2, kPairs + 2 * (fraction / 100 % 100), 2);
    std::memcpy(out + 4, kPairs + 2 * (fraction % 100), 2);
    return out + 6;
}

// Number texts run for every cell of large tables: they are made in buffers of their own.
// "%lf" of the value with '.' whatever the process's locale, trailing zeros removed: its length.
static size_t FixedTrimmed(double value, char (&buffer)[NumberTextWriter::kMaxLength]) {
    const char* end = FixedSix(value, buffer, buffer + sizeof buffer);
    while (end != buffer && end[-1] == '0') --end;
    return static_cast<size_t>(end - buffer);
}

std::wstring FormatFixedTrimmed(double value) {
    char buffer[NumberTextWriter::kMaxLength];
    return std::wstring(buffer, buffer + FixedTrimmed(value, buffer));  // digits, '-' and '.' only
}

std::wstring FormatTrimmedNumber(double value, const std::wstring& separator) {
    return std::wstring(NumberTextWriter(separator).Format(value));
}

std::wstring_view NumberTextWriter::Format(double value) {
    char narrow[kMaxLength];
    size_t length = FixedTrimmed(value, narrow);
    std::copy(narrow, narrow + length, m_text);
    // The separator is one character in every locale but a few.
    const bool endsWithSeparator =
        m_separator.size() == 1
            ? length > 0 && m_text[length - 1] == m_separator[0]
            : !m_separator.empty() && std::wstring_view(m_text, length).ends_with(m_separator);
    if (endsWithSeparator) m_text[length++] = L'0';
    return std::wstring_view(m_text, length);
}

std::wstring UserDecimalSeparator() {
    // Cached per locale setting; FormatNumber runs for every cell of large tables, also on the
    // worker threads of a conversion, so each thread keeps its own cache.
    thread_local std::string cachedKey = "\x01";
    thread_local std::wstring cachedSeparator = L".";
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

std::wstring FormatNumber(double value) {
    return FormatTrimmedNumber(value, UserDecimalSeparator());
}

std::wstring TrimBlanks(const std::wstring& text) {
    size_t first = 0, last = text.size();
    while (first < last && std::iswspace(text[first])) ++first;
    while (last > first && std::iswspace(text[last - 1])) --last;
    return text.substr(first, last - first);
}

// The value of a run of digits with at most one point whose digits make a whole number below
// 2^53 and that has at most 22 of them after the point: that number divided by a power of ten,
// both exact, so the one rounding of the division gives the correctly rounded value, as
// std::from_chars does. False for every other run (then std::from_chars reads it), also for one
// without digits.
static bool ReadPlainDecimal(std::string_view run, double& value) {
    static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr uint64_t kExact = uint64_t(1) << 53;
    uint64_t whole = 0;
    size_t digits = 0, decimals = 0;
    bool point = false;
    for (char c : run) {
        if (c == '.') {
            if (point) break;  // a second point ends the number
            point = true;
            continue;
        }
        whole = whole * 10 + static_cast<uint64_t>(c - '0');
        if (whole >= kExact) return false;
        ++digits;
        decimals += point;
    }
    if (digits == 0 || decimals >= std::size(kPowersOfTen)) return false;
    value = static_cast<double>(whole) / kPowersOfTen[decimals];
    return true;
}

double ParseNumber(std::wstring_view text) {
    size_t first = 0;
    while (first < text.size() && std::iswspace(text[first])) ++first;
    char run[64];
    size_t length = 0;
    for (size_t i = first; i < text.size() && length < sizeof run; ++i) {
        const wchar_t c = text[i];
        if (c != L'.' && (c < L'0' || c > L'9')) break;
        run[length++] = static_cast<char>(c);
    }
    // A run longer than the buffer is no number a table holds; read what the buffer took.
    double value = 0.0;
    if (ReadPlainDecimal(std::string_view(run, length), value)) return value;
    return LeadingDouble(std::string_view(run, length));
}

namespace {
bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// "1,500" or "12.125": the form of a number with one group of thousands.
bool LooksGrouped(std::wstring_view text, size_t separatorAt) {
    const size_t before = separatorAt, after = text.size() - separatorAt - 1;
    return before >= 1 && before <= 3 && text[0] != L'0' && after == 3;
}
}  // namespace

NumberEntry ReadNumberEntry(std::wstring_view text, std::wstring_view separator) {
    NumberEntry entry;
    size_t first = 0, last = text.size();
    while (first < last && std::iswspace(text[first])) ++first;
    while (last > first && std::iswspace(text[last - 1])) --last;
    const std::wstring_view trimmed = text.substr(first, last - first);
    if (trimmed.empty()) {
        entry.fault = NumberTextFault::Empty;
        return entry;
    }
    const bool negative = trimmed[0] == L'-';
    const std::wstring_view body = negative ? trimmed.substr(1) : trimmed;
    // Only one-character separators are told apart; any other reads as '.'.
    const wchar_t own = separator.size() == 1 ? separator[0] : L'.';
    const wchar_t other = own == L',' ? L'.' : L',';
    size_t digits = 0, owns = 0, others = 0, otherAt = 0;
    for (size_t i = 0; i < body.size(); ++i) {
        const wchar_t c = body[i];
        if (IsDigit(c))
            ++digits;
        else if (c == own)
            ++owns;
        else if (c == other)
            ++others, otherAt = i;
        else
            digits = 0, owns = 2;  // anything else is no number
    }
    if (digits == 0 || owns + others > 1) {
        entry.fault = NumberTextFault::NotNumber;
        return entry;
    }
    std::wstring canonical(body);
    for (wchar_t& c : canonical)
        if (c == own || c == other) c = L'.';
    std::string narrow(canonical.begin(), canonical.end());
    if (!ReadPlainDecimal(narrow, entry.value)) entry.value = LeadingDouble(narrow);
    if (others == 1 && LooksGrouped(body, otherAt) &&
        !(other == L'.' && FormatNumber(entry.value) == body)) {
        entry.fault = NumberTextFault::Ambiguous;
        return entry;
    }
    if (negative && entry.value != 0.0) {
        entry.fault = NumberTextFault::Negative;
        return entry;
    }
    entry.text = std::move(canonical);
    return entry;
}

NumberEntry ReadNumberEntry(std::wstring_view text) {
    return ReadNumberEntry(text, UserDecimalSeparator());
}

bool IsNumericText(const std::wstring& text) {
    return text.find_first_not_of(L".0123456789") == std::wstring::npos;
}

double ToDouble(const std::wstring& text) {
    size_t first = 0;
    while (first < text.size() && std::iswspace(text[first])) ++first;
    return LeadingDouble(ToUtf8(text.substr(first)));
}
