#include "framework/case_fold.h"

#include <gtest/gtest.h>

#include <clocale>

#include "framework/zeb_operator.h"

// Names that differ only in letter case are one name, umlauts and accents included, whatever the
// process locale (tests run in the "C" locale, which folds only ASCII by itself).
TEST(CaseFold, OneRuleForEveryLetter) {
    ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    EXPECT_TRUE(ZebEqualsNoCase(L"STÄHLE", L"Stähle"));
    EXPECT_TRUE(ZebEqualsNoCase(L"ISO 4017 m8", L"ISO 4017 M8"));
    EXPECT_TRUE(ZebEqualsNoCase(L"ÉCROU Ø8", L"écrou ø8"));
    EXPECT_FALSE(ZebEqualsNoCase(L"Stähle", L"Stahle"));
    EXPECT_FALSE(ZebEqualsNoCase(L"M8", L"M8 "));
    EXPECT_TRUE(ZebEqualsNoCase(L"", L""));
    EXPECT_EQ(ZebFoldCase(L"STÄHLE Ø"), L"stähle ø");
    EXPECT_EQ(ZebUpperCase(L"iso 4017 m8 stähle ø"), L"ISO 4017 M8 STÄHLE Ø");

    EXPECT_EQ(ZebOperatorFromText(L"range"), 1);
    EXPECT_EQ(ZebOperatorFromText(L">="), 7);
    EXPECT_EQ(ZebOperatorFromText(L"=>"), 0);
    EXPECT_STREQ(ZebOperatorText(8), L"<=");
    EXPECT_EQ(ZebOperatorText(2), nullptr);
}
