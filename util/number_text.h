#pragma once

#include <string>
#include <string_view>
#include <utility>

// The texts of numbers in edit fields, table cells and imported spreadsheets. None needs the
// module's resources.

// Display text of a number: six decimals, trailing zeros removed, "0" after a trailing decimal
// separator of the user's locale.
std::wstring FormatNumber(double value);
// The leading run of digits and points after trimming; 0.0 when there is none. No sign.
double ParseNumber(std::wstring_view text);
bool IsNumericText(const std::wstring& text);

// Why a text typed or imported as a value could not be read.
enum class NumberTextFault {
    None,
    Empty,
    Negative,   // a value that must not be below zero
    NotNumber,  // letters, several separators, digit grouping
    Ambiguous,  // "1,500" where ',' may group thousands
};

// A value as the user wrote it: read with the user's decimal separator; the other one of '.' and
// ',' is taken as the decimal separator only where it cannot group thousands (not one to three
// digits before it, the first not 0, and exactly three after). The program's own number text
// (FormatNumber) always reads. `text` is the value's text with '.' as its separator, the form the
// rules store.
struct NumberEntry {
    NumberTextFault fault = NumberTextFault::None;
    double value = 0.0;
    std::wstring text;
    bool Ok() const { return fault == NumberTextFault::None; }
};
NumberEntry ReadNumberEntry(std::wstring_view text, std::wstring_view separator);
NumberEntry ReadNumberEntry(std::wstring_view text);
double ToDouble(const std::wstring& text);

// "%lf" of the value (always with '.') with every trailing '0' removed.
std::wstring FormatFixedTrimmed(double value);
// FormatFixedTrimmed, then "0" appended when the text ends with `separator`.
std::wstring FormatTrimmedNumber(double value, const std::wstring& separator);
// The user's decimal separator (radix character of the LC_NUMERIC locale), "." when unknown.
std::wstring UserDecimalSeparator();

// FormatTrimmedNumber for the cells of a large table: no string per number. Each text is valid
// until the next Format.
class NumberTextWriter {
public:
    static constexpr size_t kMaxLength = 400;  // the longest fixed text of a double, and more
    explicit NumberTextWriter(std::wstring separator) : m_separator(std::move(separator)) {}
    std::wstring_view Format(double value);

private:
    std::wstring m_separator;
    wchar_t m_text[kMaxLength + 1];
};
// Text without white space at both ends.
std::wstring TrimBlanks(const std::wstring& text);
