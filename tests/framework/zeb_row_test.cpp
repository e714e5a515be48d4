#include "framework/zeb_row.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/parallel_ranges.h"
#include "framework/text_convert.h"

namespace {
using Cells = std::vector<std::wstring>;

Cells CellsOf(const ZebRow& row) { return Cells(row.begin(), row.end()); }

// Every cell through both read paths: the view up to the cell's end and the L'\0'-terminated text.
void ExpectCells(const ZebRow& row, const Cells& expected) {
    ASSERT_EQ(row.size(), expected.size());
    EXPECT_EQ(row.empty(), expected.empty());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(row[i], expected[i]) << "cell " << i;
        EXPECT_EQ(row.Cell(i), expected[i]) << "cell " << i;
        EXPECT_EQ(std::wstring(row.CellText(i)), expected[i].c_str()) << "cell " << i;
    }
    EXPECT_EQ(CellsOf(row), expected);
}
}  // namespace

TEST(ZebRow, EmptyCellsAreCellsAndNoCellsIsTheEmptyRow) {
    static_assert(sizeof(ZebRow) == sizeof(void*));
    ExpectCells(ZebRow{}, {});
    ExpectCells(ZebRow{L""}, {L""});
    ExpectCells(ZebRow{L"", L"", L""}, {L"", L"", L""});
    ExpectCells(ZebRow{L"M6", L"", L"2.5"}, {L"M6", L"", L"2.5"});
    EXPECT_NE(ZebRow{}, ZebRow{L""});
    EXPECT_NE(ZebRow{L""}, (ZebRow{L"", L""}));

    ZebRow row;
    row.push_back(L"");
    row.push_back(L"M8");
    ExpectCells(row, {L"", L"M8"});
    row.resize(4);
    ExpectCells(row, {L"", L"M8", L"", L""});
    row.resize(2);
    ExpectCells(row, {L"", L"M8"});
    row.resize(0);
    EXPECT_EQ(row, ZebRow{});
    row = ZebRow{L"a", L"b"};
    row.clear();
    EXPECT_TRUE(row.empty());
    row.push_back(L"again");
    ExpectCells(row, {L"again"});
}

TEST(ZebRow, BuildsFromRangesOfWideTexts) {
    const Cells cells{L"M10", L"", L"4.25"};
    ExpectCells(ZebRow(cells), cells);
    ExpectCells(ZebRow(cells.begin() + 1, cells.end()), {L"", L"4.25"});
    const std::vector<std::wstring_view> views{L"x", L"yz"};
    ExpectCells(ZebRow(views), {L"x", L"yz"});
    ExpectCells(ZebRow(std::vector<std::wstring>{}), {});
}

TEST(ZebRow, SetReplacesOneCellAndKeepsTheOthers) {
    const Cells start{L"M6", L"1.5", L"2.5"};
    // Longer, shorter, the same length and empty, in each place.
    for (const std::wstring& text : {std::wstring(L"FASTENER 100123"), std::wstring(L"7"),
                                     std::wstring(L"9.9"), std::wstring()}) {
        for (size_t i = 0; i < start.size(); ++i) {
            ZebRow row(start);
            row.Set(i, text);
            Cells expected = start;
            expected[i] = text;
            ExpectCells(row, expected);
        }
    }
    ZebRow row(start);
    EXPECT_THROW(row.Set(3, L"x"), std::out_of_range);
    EXPECT_THROW(ZebRow{}.Set(0, L"x"), std::out_of_range);
    ExpectCells(row, start);
}

TEST(ZebRow, TakesItsOwnCellsAsNewText) {
    ZebRow row{L"M6", L"1.5", L"2.50"};
    row.Set(0, row[2]);  // longer: a new block is built from the old one
    ExpectCells(row, {L"2.50", L"1.5", L"2.50"});
    row.Set(1, row[2].substr(1));  // same length: replaced where it stands
    ExpectCells(row, {L"2.50", L".50", L"2.50"});
    row.Set(2, row[2].substr(1, 2));  // a part of the cell itself
    ExpectCells(row, {L"2.50", L".50", L".5"});
    row.push_back(row[0]);
    ExpectCells(row, {L"2.50", L".50", L".5", L"2.50"});
}

TEST(ZebRow, CopiesAreIndependentAndMovesLeaveAnEmptyRow) {
    static_assert(std::is_nothrow_move_constructible_v<ZebRow>);
    static_assert(std::is_nothrow_move_assignable_v<ZebRow>);
    ZebRow original{L"M8X123-ISO4017", L"3.500000", L"5.250000"};
    ZebRow copy(original);
    copy.Set(1, L"0.137795");
    copy.push_back(L"x");
    ExpectCells(original, {L"M8X123-ISO4017", L"3.500000", L"5.250000"});
    ExpectCells(copy, {L"M8X123-ISO4017", L"0.137795", L"5.250000", L"x"});

    ZebRow assigned{L"old"};
    assigned = original;
    EXPECT_EQ(assigned, original);
    assigned = ZebRow{};
    EXPECT_TRUE(assigned.empty());

    ZebRow moved(std::move(copy));
    EXPECT_TRUE(copy.empty());  // NOLINT(bugprone-use-after-move): a moved-from row is empty
    EXPECT_EQ(moved.size(), 4u);
    ZebRow target{L"a"};
    target = std::move(moved);
    EXPECT_TRUE(moved.empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target[3], L"x");

    ZebRow& alias = original;
    original = alias;
    ExpectCells(original, {L"M8X123-ISO4017", L"3.500000", L"5.250000"});
    original = std::move(alias);
    ExpectCells(original, {L"M8X123-ISO4017", L"3.500000", L"5.250000"});
}

TEST(ZebRow, EqualityComparesCellsNotTheirJoinedText) {
    EXPECT_EQ((ZebRow{L"a", L"bc"}), (ZebRow{L"a", L"bc"}));
    EXPECT_NE((ZebRow{L"a", L"bc"}), (ZebRow{L"ab", L"c"}));
    EXPECT_NE((ZebRow{L"a", L"b"}), (ZebRow{L"a", L"c"}));
    EXPECT_NE((ZebRow{L"a", L""}), (ZebRow{L"a"}));
    // Rows built in different ways hold the same cells.
    ZebRow grown;
    grown.push_back(L"a");
    grown.push_back(L"xx");
    grown.Set(1, L"bc");
    EXPECT_EQ(grown, (ZebRow{L"a", L"bc"}));
}

// A cell keeps an embedded L'\0' (the XML writer, which cannot carry it, stops there).
TEST(ZebRow, EmbeddedNulStaysInsideItsCell) {
    const std::wstring withNul(L"ab\0cd", 5);
    ZebRow row{withNul, L"e"};
    ASSERT_EQ(row.size(), 2u);
    EXPECT_EQ(row[0], withNul);
    EXPECT_EQ(row[1], L"e");
    EXPECT_EQ(std::wstring(row.CellText(0)), L"ab");
    EXPECT_NE(row, (ZebRow{L"ab", L"e"}));
    row.Set(1, L"ef");
    EXPECT_EQ(row[0], withNul);
}

TEST(ZebRow, FromUtf8ConvertsEachCellAsTextConversionDoes) {
    const std::string_view cells[] = {"Mutter DIN 934 \xE2\x80\x93 Stahl", "\xF0\x9F\x98\x80", "",
                                      "M8X123-ISO4017"};
    const ZebRow row = ZebRow::FromUtf8(cells, 4);
    ExpectCells(row, {L"Mutter DIN 934 \u2013 Stahl", L"\U0001F600", L"", L"M8X123-ISO4017"});
    // Fewer characters than bytes: the copy and the comparison see only the cells.
    EXPECT_EQ(row, (ZebRow{L"Mutter DIN 934 \u2013 Stahl", L"\U0001F600", L"", L"M8X123-ISO4017"}));
    EXPECT_EQ(ZebRow(row), row);
    EXPECT_EQ(ZebRow::FromUtf8(cells, 0), ZebRow{});

    // Broken sequences: each bad byte or cut sequence is one U+FFFD, as everywhere else.
    const std::pair<std::string_view, std::wstring_view> broken[] = {
        {"\xC3", L"\uFFFD"},  // cut two-byte sequence
        {"a\x80"
         "b",
         L"a\uFFFDb"},                    // lone continuation byte
        {"\xE2\x82", L"\uFFFD\uFFFD"},    // cut three-byte sequence
        {"\xE2\x82(", L"\uFFFD\uFFFD("},  // cut by an ASCII byte
        {"\xC0\xAF", L"\uFFFD"},          // overlong
        {"\xED\xA0\x80", L"\uFFFD"},      // surrogate
        {"\xF4\x90\x80\x80", L"\uFFFD"},  // beyond U+10FFFF
        {"\xFF"
         "x\xC3\xA4",
         L"\uFFFDx\u00E4"},  // invalid lead byte, then valid text
    };
    std::vector<std::string_view> texts;
    Cells expected;
    for (const auto& [utf8, wide] : broken) {
        texts.push_back(utf8);
        expected.emplace_back(wide);
        EXPECT_EQ(FromUtf8(utf8), wide);
    }
    ExpectCells(ZebRow::FromUtf8(texts.data(), texts.size()), expected);
}

TEST(ZebRow, CellsAppendAsUtf8ToAReusedBuffer) {
    const ZebRow row{L"Mutter DIN 934 \u2013 Stahl", L"\U0001F600", L"", L"M8"};
    std::string buffer = "kept:";
    for (std::wstring_view cell : row) AppendUtf8(buffer, cell);
    EXPECT_EQ(buffer, "kept:Mutter DIN 934 \xE2\x80\x93 Stahl\xF0\x9F\x98\x80M8");
    buffer.clear();
    AppendUtf8(buffer, row[3]);
    EXPECT_EQ(buffer, ToUtf8(L"M8"));
}

// Rows are made on several threads at once and freed on another, in any order, across many of
// the chunks their blocks are cut from, with long cells that get blocks of their own among them:
// every row keeps its cells until it is freed, and a row made after the others were freed is
// whole too.
TEST(ZebRow, RowsMadeOnManyThreadsLiveUntilTheyAreFreedWherever) {
    const size_t count = 4 * kMinRowsPerRange + 17;
    const auto cellsOf = [](size_t i) -> Cells {
        Cells cells{L"M" + std::to_wstring(i) + L"-ISO4017", std::to_wstring(i % 97) + L".5", L""};
        if (i % 5000 == 3)
            cells.push_back(std::wstring(12000 + i % 7, static_cast<wchar_t>(L'a' + i % 26)));
        return cells;
    };
    std::vector<ZebRow> rows(count);
    ZebForRanges(count, [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) rows[i] = ZebRow(cellsOf(i));
    });
    // Every other row goes first, from another thread; the rest stay whole meanwhile.
    std::thread([&] {
        for (size_t i = 0; i < count; i += 2) rows[i] = ZebRow();
    }).join();
    for (size_t i = 1; i < count; i += 2) ASSERT_EQ(CellsOf(rows[i]), cellsOf(i)) << "row " << i;
    std::vector<ZebRow> copies(rows.begin(), rows.end());
    rows.clear();
    for (size_t i = 1; i < count; i += 2) ASSERT_EQ(CellsOf(copies[i]), cellsOf(i)) << "copy " << i;
    copies.clear();
    ExpectCells(ZebRow(cellsOf(3)), cellsOf(3));
}
