#include "util/texts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <limits>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "framework/text_convert.h"
#include "framework/zeb_xml.h"
#include "tests/support/module_environment.h"
#include "util/number_text.h"

namespace {
using TextsTest = ModuleTest;
}  // namespace

TEST_F(TextsTest, NumberTextsWithAPointSeparator) {
    EXPECT_EQ(FormatNumber(0.0), L"0.0");
    EXPECT_EQ(FormatNumber(2.25), L"2.25");
    EXPECT_EQ(FormatNumber(1000.0), L"1000.0");
    EXPECT_EQ(FormatNumber(12.5), L"12.5");
    EXPECT_EQ(FormatNumber(-3.0), L"-3.0");
    EXPECT_EQ(FormatNumber(1.0 / 3.0), L"0.333333");
    EXPECT_EQ(FormatNumber(0.0000004), L"0.0");
    EXPECT_EQ(FormatFixedTrimmed(2.50), L"2.5");
    EXPECT_EQ(FormatFixedTrimmed(12.0), L"12.");
}

TEST_F(TextsTest, NumberTextsWithACommaSeparator) {
    // The runtime's conversion always writes '.', so only a text ending in the user's own
    // separator gets the "0"; the number parser reads '.' only, and values survive a round trip.
    ScopedEnv numbers("LC_NUMERIC", "de_DE.UTF-8");
    ASSERT_EQ(UserDecimalSeparator(), L",");
    EXPECT_EQ(FormatNumber(12.5), L"12.5");
    EXPECT_EQ(FormatNumber(100.0), L"100.");
    EXPECT_EQ(ParseNumber(FormatNumber(100.0)), 100.0);
    EXPECT_EQ(FormatTrimmedNumber(100.0, L","), L"100.");
    EXPECT_EQ(FormatTrimmedNumber(100.0, L"."), L"100.0");
    numbers.Set("C");
    EXPECT_EQ(UserDecimalSeparator(), L".");
    EXPECT_EQ(FormatNumber(100.0), L"100.0");
}

TEST_F(TextsTest, ParsingNumbers) {
    EXPECT_EQ(ParseNumber(L"  7.5  "), 7.5);
    EXPECT_EQ(ParseNumber(L"abc"), 0.0);
    EXPECT_EQ(ParseNumber(L"12mm"), 12.0);
    EXPECT_EQ(ParseNumber(L"-5"), 0.0);
    EXPECT_EQ(ParseNumber(L"1.2.3"), 1.2);
    EXPECT_EQ(ParseNumber(L".5"), 0.5);
    EXPECT_EQ(ParseNumber(L"."), 0.0);
    EXPECT_EQ(ParseNumber(L""), 0.0);
    EXPECT_TRUE(IsNumericText(L""));
    EXPECT_TRUE(IsNumericText(L"1.2.3"));
    EXPECT_FALSE(IsNumericText(L"1e5"));
    EXPECT_FALSE(IsNumericText(L"-1"));
    EXPECT_FALSE(IsNumericText(L" 1"));
    EXPECT_EQ(ToDouble(L"-5"), -5.0);
    EXPECT_EQ(ToDouble(L"1e5"), 100000.0);
    EXPECT_EQ(ToDouble(L" +2.5x"), 2.5);
    EXPECT_EQ(ToDouble(L"abc"), 0.0);
}

TEST_F(TextsTest, OperatorTexts) {
    EXPECT_EQ(OperatorFromText(L"range"), 1);
    EXPECT_EQ(OperatorFromText(L"RANGE"), 1);
    EXPECT_EQ(OperatorFromText(L"<="), 8);
    EXPECT_EQ(OperatorFromText(L"<"), 5);
    EXPECT_EQ(OperatorFromText(L"="), 3);
    EXPECT_EQ(OperatorFromText(L">"), 6);
    EXPECT_EQ(OperatorFromText(L">="), 7);
    EXPECT_EQ(OperatorFromText(L"=<"), 0);
    EXPECT_EQ(OperatorFromText(L""), 0);
    EXPECT_EQ(OperatorToText(1), L"RANGE");
    EXPECT_EQ(OperatorSymbol(1), L"");
    EXPECT_EQ(OperatorSymbol(7), L">=");
    EXPECT_EQ(OperatorToText(2), L"");
    EXPECT_EQ(OperatorToText(4), L"");
    EXPECT_EQ(OperatorToText(12), L"");
}

TEST_F(TextsTest, SeverityAndUnitTexts) {
    EXPECT_EQ(SeverityComboIndex(0), -1);
    EXPECT_EQ(SeverityComboIndex(6), -1);
    EXPECT_EQ(SeverityComboIndex(1), 0);
    EXPECT_EQ(SeverityComboIndex(5), 4);
    std::list<std::wstring> names{L"stale"};
    FillSeverityNames(names);
    ASSERT_EQ(names.size(), 5u);
    int code = 1;
    for (const std::wstring& name : names) {
        EXPECT_FALSE(name.empty());
        EXPECT_EQ(SeverityFromName(name), code++);
    }
    std::wstring upper = names.front();
    for (wchar_t& c : upper) c = std::towupper(c);
    if (upper != names.front()) {
        EXPECT_EQ(SeverityFromName(upper), 0);
    }
    EXPECT_EQ(SeverityFromName(L""), 0);

    EXPECT_EQ(GetUnitText(5), L"");
    EXPECT_EQ(GetUnitText(11), L"");
    EXPECT_EQ(GetUnitText(-1), L"");
    EXPECT_EQ(GetUnitText(0), LoadLocalizedString(IDS_UNIT_MILLIMETRE));
    EXPECT_EQ(GetUnitText(4), LoadLocalizedString(IDS_UNIT_FOOT));
    for (int unit : {0, 1, 2, 3, 4, 6, 7, 8, 9, 10})
        EXPECT_FALSE(GetUnitText(unit).empty()) << unit;
}

TEST_F(TextsTest, UnitAttributeOfTheParentElement) {
    ZebXMLDocument doc;
    std::wstring error;
    ASSERT_TRUE(
        doc.LoadXML("<S><A Unit=\"2\"><Rule/></A><B Unit=\"12\"><Rule/></B><C><Rule/></C><D "
                    "Unit=\"mm\"><Rule/></D></S>",
                    error));
    std::unique_ptr<ZebXMLNodeList> rules(doc.GetElementsByTagName(L"Rule"));
    const int expected[] = {2, 12, 0, 0};
    for (long i = 0; i < rules->GetSize(); ++i) {
        std::unique_ptr<ZebXMLNode> rule((*rules)[i]);
        EXPECT_EQ(GetUnitAttribute(rule.get()), expected[i]) << i;
    }
    EXPECT_EQ(GetUnitAttribute(nullptr), 0);
    std::unique_ptr<ZebXMLNode> top(doc.GetDocumentElement());
    EXPECT_EQ(GetUnitAttribute(top.get()), 0);
}

// Table cells are written through a conversion of their own; it must give exactly the text of
// the general one (six decimals of the exact binary value, ties to even) for every value: exact
// ties, neighbours of every millionth, random values of every size below and around its limit,
// subnormals, signs and what is no number.
TEST(NumberTexts, CellTextsAreExactlyTheGeneralConversion) {
    const auto reference = [](double value) {
        char buffer[400];
        const char* end =
            std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6).ptr;
        while (end != buffer && end[-1] == '0') --end;
        return std::wstring(static_cast<const char*>(buffer), end);
    };
    size_t checked = 0;
    const auto check = [&](double value) {
        for (double v : {value, -value}) {
            ASSERT_EQ(FormatFixedTrimmed(v), reference(v)) << std::hexfloat << v;
            ++checked;
        }
    };
    for (int k = 0; k < 200000; ++k) check(k / 128.0);  // odd k: exactly half a millionth over
    for (int k = 0; k < 200000; ++k) {
        const double millionths = k * 1e-6 + (k % 7) * 0.25;
        check(millionths);
        check(std::nextafter(millionths, 0.0));
        check(std::nextafter(millionths, 1e13));
        check(millionths + 5e-7);
        check(std::nextafter(millionths + 5e-7, 0.0));
    }
    std::mt19937_64 random(20261124);
    for (int i = 0; i < 400000; ++i) {
        // Any sign, mantissa and exponent from subnormal up to a little past 10^12.
        const uint64_t bits = (random() & ((uint64_t(1) << 52) - 1)) | (random() % 1070 << 52);
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        check(value);
    }
    for (double value :
         {0.0, 1e12, std::nextafter(1e12, 0.0), 999999999999.9999995, 5e-7, 4.9999999999999998e-7,
          std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::min(),
          std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN(), 25.4, 3.5 / 25.4, 0.1 + 0.2})
        check(value);
    EXPECT_GT(checked, 3000000u);
}

// Table cells are read through a reading of their own for plain decimals; it must give exactly
// what the general reading gives (the correctly rounded value of the run of digits and points,
// up to its second point) for every text: random runs, runs around the limits of whole numbers
// and of decimals, long runs, blanks before and other text after.
TEST(NumberTexts, CellNumbersAreExactlyTheGeneralReading) {
    const auto reference = [](const std::wstring& text) {
        size_t first = 0;
        while (first < text.size() && std::iswspace(text[first])) ++first;
        std::string run;
        for (size_t i = first; i < text.size() && run.size() < 64; ++i) {
            if (text[i] != L'.' && (text[i] < L'0' || text[i] > L'9')) break;
            run += static_cast<char>(text[i]);
        }
        double value = 0.0;
        const auto result = std::from_chars(run.data(), run.data() + run.size(), value);
        return result.ec == std::errc() ? value : 0.0;
    };
    size_t checked = 0;
    const auto check = [&](const std::wstring& text) {
        const double expected = reference(text);
        const double read = ParseNumber(text);
        ASSERT_EQ(std::memcmp(&read, &expected, sizeof read), 0)
            << ToUtf8(text) << ": " << std::hexfloat << read << " against " << expected;
        ++checked;
    };
    std::mt19937_64 random(20261124);
    const std::wstring alphabet = L"0123456789012345678901234567890123456789.";
    for (int i = 0; i < 300000; ++i) {
        std::wstring text;
        const size_t length = random() % (i % 100 == 0 ? 90 : 26);
        for (size_t k = 0; k < length; ++k) text += alphabet[random() % alphabet.size()];
        check(text);
    }
    for (int i = 0; i < 100000; ++i) {
        // Values as tables hold them: a few whole digits and up to eight decimals.
        const double value = static_cast<double>(random() % 100000000) / 1e6;
        char buffer[64];
        const char* end = std::to_chars(buffer, buffer + sizeof buffer, value,
                                        std::chars_format::fixed, static_cast<int>(random() % 9))
                              .ptr;
        check(std::wstring(static_cast<const char*>(buffer), end));
    }
    for (const wchar_t* text : {L"",
                                L".",
                                L"..",
                                L"5.",
                                L".5",
                                L"1.2.3",
                                L"  \t2.5mm",
                                L"9007199254740991",
                                L"9007199254740992",
                                L"9007199254740993",
                                L"900719925474099.3",
                                L"0.0000000000000000000001",
                                L"0.00000000000000000000001",
                                L"1.0000000000000000000000",
                                L"00000000000000000000000000123.5",
                                L"3.499993",
                                L"0.137795",
                                L"123456789012345678901234567890",
                                L"1e5",
                                L"-3.5",
                                L"+3.5"})
        check(text);
    EXPECT_GT(checked, 400000u);
}

TEST_F(TextsTest, EnteredNumbersReadWithEitherSeparatorOrAreRefusedWithTheReason) {
    struct Case {
        const wchar_t* text;
        const wchar_t* separator;
        NumberTextFault fault;
        double value;
        const wchar_t* stored;
    };
    const Case cases[] = {
        {L"0,5", L".", NumberTextFault::None, 0.5, L"0.5"},
        {L" 0,125 ", L".", NumberTextFault::None, 0.125, L"0.125"},
        {L"1,5", L".", NumberTextFault::None, 1.5, L"1.5"},
        {L"0,5", L",", NumberTextFault::None, 0.5, L"0.5"},
        {L"0.5", L",", NumberTextFault::None, 0.5, L"0.5"},
        {L"1,500", L",", NumberTextFault::None, 1.5, L"1.500"},
        {L"12", L".", NumberTextFault::None, 12.0, L"12"},
        // The program's own text of a value reads in every locale.
        {L"12.125", L",", NumberTextFault::None, 12.125, L"12.125"},
        {L"100.", L",", NumberTextFault::None, 100.0, L"100."},
        {L"1,500", L".", NumberTextFault::Ambiguous, 0, L""},
        {L"1.500", L",", NumberTextFault::Ambiguous, 0, L""},
        {L"-1", L".", NumberTextFault::Negative, 0, L""},
        {L"-0,5", L",", NumberTextFault::Negative, 0, L""},
        {L"abc", L".", NumberTextFault::NotNumber, 0, L""},
        {L"12mm", L".", NumberTextFault::NotNumber, 0, L""},
        {L"1.2.3", L".", NumberTextFault::NotNumber, 0, L""},
        {L"1,234.5", L".", NumberTextFault::NotNumber, 0, L""},
        {L",", L".", NumberTextFault::NotNumber, 0, L""},
        {L"  ", L".", NumberTextFault::Empty, 0, L""},
    };
    for (const Case& c : cases) {
        const NumberEntry entry = ReadNumberEntry(c.text, c.separator);
        SCOPED_TRACE(ToUtf8(std::wstring(c.text) + L" with " + c.separator));
        EXPECT_EQ(entry.fault, c.fault);
        if (!entry.Ok()) continue;
        EXPECT_EQ(entry.value, c.value);
        EXPECT_EQ(entry.text, c.stored);
    }
}

TEST(NumberTexts, TheSeparatorIsReadSafelyFromSeveralThreads) {
    // A conversion formats cells on worker threads; the race check sees any shared cache.
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&wrong] {
            for (int i = 0; i < 2000; ++i)
                if (FormatNumber(0.5) != L"0.5" && FormatNumber(0.5) != L"0,5") ++wrong;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong.load(), 0);
}
