#include "framework/resource_library.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>

namespace {
std::wstring ResPath(const char* lang) {
    return std::wstring(VANTOR_BUILD_DIR L"/share/vantor/res/") +
           std::wstring(lang, lang + std::strlen(lang)) + L"/ZEBAssemblyRulesResu.so";
}
}  // namespace

TEST(ResourceLibrary, BothLanguagesCarryTheSameIdsAndPlaceholders) {
    std::unique_ptr<CZebResourceLibrary> en(CZebResourceLibrary::Load(ResPath("en")));
    std::unique_ptr<CZebResourceLibrary> de(CZebResourceLibrary::Load(ResPath("de")));
    ASSERT_TRUE(en && de);
    const auto ids = en->GetStringIds();
    ASSERT_GT(ids.size(), 100u);
    EXPECT_EQ(ids, de->GetStringIds());
    for (unsigned id : ids) {
        const std::wstring a = en->LoadString(id), b = de->LoadString(id);
        EXPECT_FALSE(a.empty()) << id;
        EXPECT_EQ(ZebCountPlaceholders(a), ZebCountPlaceholders(b)) << id;
    }
    bool found = true;
    EXPECT_EQ(en->LoadString(1, &found), L"");
    EXPECT_FALSE(found);
}

TEST(ResourceLibrary, ImagesArePngAndShared) {
    std::unique_ptr<CZebResourceLibrary> en(CZebResourceLibrary::Load(ResPath("en")));
    ASSERT_TRUE(en);
    for (unsigned id : {13010u, 13020u, 13030u, 13040u, 13050u, 13060u, 13070u, 13090u,
                        13100u, 13120u, 13150u, 13180u, 6014u,  6015u,  6017u,  6009u,
                        6018u,  6091u,  7095u,  8032u,  8150u,  9014u,  7010u}) {
        const unsigned char* data = nullptr;
        unsigned long size = 0;
        ASSERT_TRUE(en->LoadBitmap(id, &data, &size)) << id;
        ASSERT_GT(size, 8u);
        EXPECT_EQ(data[1], 'P');
        EXPECT_EQ(data[2], 'N');
    }
    const unsigned char* data = nullptr;
    unsigned long size = 0;
    EXPECT_FALSE(en->LoadBitmap(424242, &data, &size));
    EXPECT_EQ(CZebResourceLibrary::Load(L"/nonexistent/ZEBAssemblyRulesResu.so"), nullptr);
}

TEST(ResourceLibrary, FormattingNeverReadsPastItsArguments) {
    EXPECT_EQ(ZebFormatText(L"%s and %s", {L"a"}), L"a and ");
    EXPECT_EQ(ZebFormatText(L"%s", {L"a", L"b", L"c"}), L"a");
    EXPECT_EQ(ZebFormatText(L"100%% %d %ls %lf%", {L"1", L"x", L"2.5"}), L"100% 1 x 2.5%");
    EXPECT_EQ(ZebFormatText(L"%x %s", {L"a"}), L"%x a");
    EXPECT_EQ(ZebFormatText(L"", {}), L"");
    EXPECT_EQ(ZebCountPlaceholders(L"%s%%%s %q"), 2);
}
