#include "util/string_table.h"

#include <gtest/gtest.h>

namespace {
using Rows = std::vector<StringTableRow>;

Rows Parsed(const std::wstring& text) {
    Rows rows;
    CZEBStringTableParser::Parse(text, rows);
    return rows;
}

const std::wstring kTab = L"<CZEB_MACRO_TAB>";
const std::wstring kEnd = L"<CZEB_MACRO_ENDLINE>";
}  // namespace

TEST(StringTable, ComposeAndParseRoundTrip) {
    const Rows rows{{L"housing.asm", L"bolt_m6.prt", L"bolt_m8.prt", L"bolt_m10.prt"},
                    {L"", L"a b", L"", L"\u00e9crou.prt"},
                    {L"", L"", L"", L""}};
    const std::wstring text = CZEBStringTableParser::Compose(rows);
    EXPECT_TRUE(text.starts_with(L"housing.asm" + kTab + L"bolt_m6.prt" + kTab + L"bolt_m8.prt" +
                                 kTab + L"bolt_m10.prt" + kEnd + kTab + L"a b" + kTab))
        << text;
    // Four empty fields: three tab tags and the end tag.
    EXPECT_EQ(text.substr(text.size() - 3 * kTab.size() - kEnd.size()), kTab + kTab + kTab + kEnd);
    EXPECT_EQ(Parsed(text), rows);
    // Parse appends to what the vector holds.
    Rows more{rows[0]};
    CZEBStringTableParser::Parse(text, more);
    EXPECT_EQ(more.size(), 4u);

    EXPECT_TRUE(Parsed(L"").empty());
    EXPECT_EQ(CZEBStringTableParser::Compose({}), L"");
}

TEST(StringTable, IncompleteRowsAreIgnored) {
    const std::wstring row = L"a" + kTab + L"b" + kTab + L"c" + kTab + L"d" + kEnd;
    EXPECT_TRUE(Parsed(L"a" + kTab + L"b" + kTab + L"c" + kTab + L"d").empty());
    EXPECT_TRUE(Parsed(L"a" + kTab + L"b" + kTab + L"c" + kEnd).empty());
    // A complete row followed by a tail without its tags.
    const Rows rows = Parsed(row + L"e" + kTab + L"f");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0], (StringTableRow{L"a", L"b", L"c", L"d"}));
    // An end tag ahead of the third tab belongs to no row: the row runs to the next end tag.
    const Rows early = Parsed(L"a" + kTab + L"b" + kEnd + kTab + L"c" + kTab + L"d" + kEnd);
    ASSERT_EQ(early.size(), 1u);
    EXPECT_EQ(early[0].Col2, L"b" + kEnd);
}

TEST(StringTable, ValidateFindsTheFirstConflictColumnThreeFirst) {
    int row = -1, column = -1;
    // Rows without a fourth column never conflict.
    EXPECT_TRUE(CZEBStringTableParser::Validate(
        {{L"", L"bolt.prt", L"nut.prt", L""}, {L"", L"nut.prt", L"bolt.prt", L""}}, row, column));

    const Rows rows{{L"", L"", L"", L"bolt.prt"},
                    {L"", L"screw.prt", L"washer.prt", L""},
                    {L"", L"bolt.prt;2", L"bolt.prt", L""}};
    EXPECT_FALSE(CZEBStringTableParser::Validate(rows, row, column));
    EXPECT_EQ(row, 2);
    EXPECT_EQ(column, 3);

    // Names compare up to their first ".prt", letter case aside; a row's own fourth column counts.
    Rows own{{L"", L"Pin.PRT", L"", L"pin.prt"}, {L"", L"nut.prt", L"", L"x.prt"}};
    EXPECT_FALSE(CZEBStringTableParser::Validate(own, row, column));
    EXPECT_EQ(row, 0);
    EXPECT_EQ(column, 2);
    own[0].Col2 = L"Bolt.prt";
    EXPECT_TRUE(CZEBStringTableParser::Validate(own, row, column));
    own[1].Col2 = L"X.PRT;2";
    EXPECT_FALSE(CZEBStringTableParser::Validate(own, row, column));
    EXPECT_EQ(row, 1);
    EXPECT_EQ(column, 2);
    // Without ".prt" the names are cut behind ".asm".
    EXPECT_FALSE(
        CZEBStringTableParser::Validate({{L"", L"", L"frame.asm/3", L"frame.asm"}}, row, column));
    EXPECT_EQ(row, 0);
    EXPECT_EQ(column, 3);
}
