#pragma once

#include <string>
#include <vector>

// One row of a table kept in a single string parameter: the four list columns of the preferred
// components table, in order.
struct StringTableRow {
    std::wstring Col1;
    std::wstring Col2;
    std::wstring Col3;
    std::wstring Col4;

    bool operator==(const StringTableRow&) const = default;
};

// Encodes tables of text rows into one string and back, and checks the preferred components table
// for components named both as preferred and as replaced. Fields are never escaped: a field that
// holds one of the tags cannot be stored.
class CZEBStringTableParser {
public:
    static constexpr const wchar_t* kTabTag = L"<CZEB_MACRO_TAB>";
    static constexpr const wchar_t* kEndLineTag = L"<CZEB_MACRO_ENDLINE>";

    virtual ~CZEBStringTableParser() = default;

    // Appends the complete rows of `text` to `rows`; an incomplete tail is ignored.
    static void Parse(const std::wstring& text, std::vector<StringTableRow>& rows);
    static std::wstring Compose(const std::vector<StringTableRow>& rows);
    // False at the first row whose third (checked first) or second column names a component that
    // any row's fourth column names; `row` is 0-based, `column` is 2 or 3.
    static bool Validate(const std::vector<StringTableRow>& rows, int& row, int& column);
};
