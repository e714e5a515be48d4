#include "app/assembly_rules_app.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "tests/support/module_environment.h"

namespace {
const std::wstring kResRoot = VANTOR_BUILD_DIR L"/share/vantor/res";

std::wstring TextOf(const char* lang, unsigned id) {
    std::unique_ptr<CZebResourceLibrary> lib(CZebResourceLibrary::Load(
        kResRoot + L"/" + std::wstring(lang, lang + 2) + L"/ZEBAssemblyRulesResu.so"));
    return lib ? lib->LoadString(id) : L"<missing library>";
}

// Each test starts the application object itself, in the environment it sets.
class AppTest : public ::testing::Test {
protected:
    void SetUp() override {
        StopAssemblyRulesApp();
        ZebSetResourceHandle(nullptr);
    }
    void TearDown() override { StopAssemblyRulesApp(); }

    ScopedEnv resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv all{"LC_ALL", nullptr};
    ScopedEnv messages{"LC_MESSAGES", nullptr};
    ScopedEnv lang{"LANG", "en_US.UTF-8"};
};

void ThrowInsideScope() {
    CZebResourceScope scope;
    throw std::runtime_error("in scope");
}

std::wstring ReturnEarlyInsideScope(bool early) {
    CZebResourceScope scope;
    if (early) return ZebLoadString(6015);
    return L"";
}
}  // namespace

TEST_F(AppTest, WithoutALocalizedFolderEnglishServesBothRoles) {
    lang.Set("fr_FR.UTF-8");
    EXPECT_EQ(GetAssemblyRulesApp(), nullptr);
    ASSERT_TRUE(StartAssemblyRulesApp());
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    ASSERT_NE(app, nullptr);
    ASSERT_NE(app->m_localizedLibrary, nullptr);
    ASSERT_NE(app->m_defaultLibrary, nullptr);
    EXPECT_EQ(app->m_resourceFolder, kResRoot + L"/en");
    EXPECT_EQ(app->m_helpFilePath, kResRoot + L"/en/vantor.html");
    EXPECT_EQ(LoadLocalizedString(IDS_MODULE_NAME), TextOf("en", 6015));
    EXPECT_EQ(ZebGetResourceHandle(), app->m_localizedLibrary.get());
    StopAssemblyRulesApp();
    EXPECT_EQ(GetAssemblyRulesApp(), nullptr);
    EXPECT_EQ(ZebGetResourceHandle(), nullptr);
}

TEST_F(AppTest, DefaultStringsStayEnglishWhileScopesGiveTheUsersLanguage) {
    lang.Set("de_DE.UTF-8");
    ASSERT_TRUE(StartAssemblyRulesApp());
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    EXPECT_EQ(app->m_resourceFolder, kResRoot + L"/de");
    EXPECT_EQ(app->m_helpFilePath, kResRoot + L"/de/vantor.html");
    const std::wstring english = TextOf("en", 6027), german = TextOf("de", 6027);
    ASSERT_NE(english, german);
    EXPECT_EQ(app->LoadDefaultString(IDS_RULE_HOLE_ALIGNMENT), english);
    EXPECT_EQ(ZebGetResourceHandle(), app->m_localizedLibrary.get());  // restored afterwards
    {
        CZebResourceScope scope;
        EXPECT_EQ(ZebLoadString(6027), german);
    }
    EXPECT_EQ(LoadLocalizedString(IDS_RULE_HOLE_ALIGNMENT), german);
}

TEST_F(AppTest, ScopesRestoreOnEveryWayOut) {
    lang.Set("de_DE.UTF-8");
    ASSERT_TRUE(StartAssemblyRulesApp());
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    ZebSetResourceHandle(app->m_defaultLibrary.get());
    EXPECT_EQ(ReturnEarlyInsideScope(true), TextOf("de", 6015));
    EXPECT_EQ(ZebGetResourceHandle(), app->m_defaultLibrary.get());
    EXPECT_THROW(ThrowInsideScope(), std::runtime_error);
    EXPECT_EQ(ZebGetResourceHandle(), app->m_defaultLibrary.get());
    // with nothing current before, the localized library stays current
    ZebSetResourceHandle(nullptr);
    ReturnEarlyInsideScope(false);
    EXPECT_EQ(ZebGetResourceHandle(), app->m_localizedLibrary.get());
}

TEST_F(AppTest, NoLibrariesAtAllLeaveTheCurrentHandleAlone) {
    resources.Set("/nonexistent/res");
    ASSERT_TRUE(StartAssemblyRulesApp());
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    EXPECT_EQ(app->m_localizedLibrary, nullptr);
    EXPECT_EQ(app->m_defaultLibrary, nullptr);
    EXPECT_EQ(LoadLocalizedString(IDS_MODULE_NAME), L"");
    app->m_databaseModules.push_back(L"/x/ZEBDatabaseu.so");
    StopAssemblyRulesApp();
    EXPECT_EQ(GetAssemblyRulesApp(), nullptr);
}
