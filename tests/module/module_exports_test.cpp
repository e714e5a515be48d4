// Drives the built module only through its exported functions, as the host framework does.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "framework/module_entry_points.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"

namespace {
const char* const kEnglishCreationOrder[] = {"Hole Alignment",
                                             "Preferred Components",
                                             "Fastener Engagement Length",
                                             "Minimum Clearance Between Parts",
                                             "Interference Detection",
                                             "Fastener Accessibility",
                                             "Recommended Thread Types in Connection",
                                             "Fastener Clearance",
                                             "Bolt and Screw Rationalization",
                                             "Fastener Alignment",
                                             "Contact Material",
                                             "Slot Alignment"};

struct Module {
    void* handle = nullptr;
    SetXMLDocFn SetXMLDoc = nullptr;
    GetAllRulesFn GetAllRules = nullptr;
    GetRuleFn GetRule = nullptr;
    DeleteRuleFn DeleteRule = nullptr;
    GetModuleNameFn GetModuleName = nullptr;
    GetModuleSummaryFn GetModuleSummary = nullptr;
    SetDBModuleListFn SetDBModuleList = nullptr;
};

// Loaded once, in German, so that display names and identity names differ.
Module& Loaded() {
    static Module m = [] {
        setenv("VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res", 1);
        setenv("LANG", "de_DE.UTF-8", 1);
        unsetenv("LC_ALL");
        unsetenv("LC_MESSAGES");
        Module loaded;
        loaded.handle =
            dlopen(VANTOR_BUILD_DIR "/lib/vantor/ZEBAssemblyRules.so", RTLD_NOW | RTLD_LOCAL);
        if (!loaded.handle) return loaded;
        auto get = [&](const char* name) { return dlsym(loaded.handle, name); };
        loaded.SetXMLDoc = reinterpret_cast<SetXMLDocFn>(get("SetXMLDoc"));
        loaded.GetAllRules = reinterpret_cast<GetAllRulesFn>(get("GetAllRules"));
        loaded.GetRule = reinterpret_cast<GetRuleFn>(get("GetRule"));
        loaded.DeleteRule = reinterpret_cast<DeleteRuleFn>(get("DeleteRule"));
        loaded.GetModuleName = reinterpret_cast<GetModuleNameFn>(get("GetModuleName"));
        loaded.GetModuleSummary = reinterpret_cast<GetModuleSummaryFn>(get("GetModuleSummary"));
        loaded.SetDBModuleList = reinterpret_cast<SetDBModuleListFn>(get("SetDBModuleList"));
        return loaded;
    }();
    return m;
}

class ModuleExportsTest : public ::testing::Test {
protected:
    void SetUp() override {
        m = &Loaded();
        ASSERT_NE(m->handle, nullptr) << dlerror();
        ASSERT_TRUE(m->SetXMLDoc && m->GetAllRules && m->GetRule && m->DeleteRule &&
                    m->GetModuleName && m->GetModuleSummary && m->SetDBModuleList);
        m->SetXMLDoc(&doc);
    }
    void TearDown() override {
        if (m && m->SetXMLDoc) m->SetXMLDoc(nullptr);
    }

    // A "Rule" element named `name` placed in the settings document.
    std::unique_ptr<ZebXMLNode> RuleNamed(const std::wstring& name) {
        std::unique_ptr<ZebXMLNode> root(doc.CreateDocumentElement(L"AssemblyRules"));
        root->AddAttribute(L"Version", L"v3.5");
        root->AddAttribute(L"Unit", L"0");
        std::unique_ptr<ZebXMLNode> rule(root->AppendNode(L"Rule"));
        rule->AddAttribute(L"Name", name);
        rule->AddAttribute(L"Severity", L"4");
        return rule;
    }

    CZebRule* Get(const std::wstring& name) {
        auto node = RuleNamed(name);
        CZebRule* rule = nullptr;
        m->GetRule(node.get(), &rule);
        return rule;
    }

    Module* m = nullptr;
    ZebXMLDocument doc;
};
}  // namespace

TEST_F(ModuleExportsTest, OnlyTheEntryPointsAreVisible) {
    EXPECT_EQ(dlsym(m->handle, "_Z19GetAssemblyRulesAppv"), nullptr);
    EXPECT_EQ(dlsym(m->handle, "_Z13ImportRuleXMLP8CZebRuleP10ZebXMLNode"), nullptr);
    std::wstring name, summary;
    m->GetModuleName(name);
    m->GetModuleSummary(summary);
    EXPECT_EQ(name, L"Baugruppenregeln");
    EXPECT_FALSE(summary.empty());
    EXPECT_NE(summary, name);
}

TEST_F(ModuleExportsTest, AllRulesAreAppendedInCreationOrder) {
    ZebArray<CZebRule*> rules;
    auto* existing = new CZebRule();
    existing->Name = L"existing";
    rules.Add(existing);
    m->GetAllRules(&rules);
    ASSERT_EQ(rules.GetSize(), 13);
    EXPECT_EQ(rules[0], existing);
    for (int i = 0; i < 12; ++i) {
        const std::string expected = kEnglishCreationOrder[i];
        EXPECT_EQ(rules[i + 1]->Name, std::wstring(expected.begin(), expected.end())) << i;
        EXPECT_NE(rules[i + 1]->DisplayName, rules[i + 1]->Name) << i;  // German display names
    }
    for (CZebRule*& rule : rules) m->DeleteRule(&rule);
    EXPECT_EQ(rules[5], nullptr);
}

TEST_F(ModuleExportsTest, GetRuleByEnglishNameIgnoringCase) {
    CZebRule* upper = Get(L"FASTENER CLEARANCE");
    ASSERT_NE(upper, nullptr);
    EXPECT_EQ(upper->DisplayName, L"Freiraum um Verbindungselemente");
    EXPECT_EQ(upper->Name, L"FASTENER CLEARANCE");  // the stored name is read back as written
    EXPECT_EQ(upper->Severity, 4);
    m->DeleteRule(&upper);
    EXPECT_EQ(upper, nullptr);

    EXPECT_EQ(Get(L"Freiraum um Verbindungselemente"), nullptr);
    EXPECT_EQ(Get(L"No Such Rule"), nullptr);
    EXPECT_EQ(Get(L""), nullptr);

    CZebRule* slot = Get(L"slot alignment");
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(slot->DialogImageId, 13090);
    // A rule handed in is imported into, not replaced.
    auto node = RuleNamed(L"Hole Alignment");
    CZebRule* same = slot;
    m->GetRule(node.get(), &same);
    EXPECT_EQ(same, slot);
    EXPECT_EQ(same->Name, L"Hole Alignment");
    m->DeleteRule(&slot);

    CZebRule* untouched = nullptr;
    m->GetRule(nullptr, &untouched);
    EXPECT_EQ(untouched, nullptr);
    CZebRule* none = nullptr;
    m->DeleteRule(&none);
    EXPECT_EQ(none, nullptr);
}

TEST_F(ModuleExportsTest, SettingsDocumentAndDatabaseModules) {
    CZebRule* hole = Get(L"hole alignment");
    ASSERT_NE(hole, nullptr);
    m->SetXMLDoc(nullptr);
    EXPECT_EQ(hole->ExportToXML(), nullptr);

    m->SetXMLDoc(&doc);
    m->SetDBModuleList({L"/opt/vantor/lib/vantor/ZEBDatabaseu.so"});
    std::unique_ptr<ZebXMLNode> node(hole->ExportToXML());
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->GetOwnerDocument(), &doc);
    std::wstring database;
    EXPECT_TRUE(node->GetAttributeValue(L"SelectedDatabase", database));
    EXPECT_EQ(database, L"ZEBDatabaseu");

    m->SetDBModuleList({});
    node.reset(hole->ExportToXML());
    EXPECT_TRUE(node->GetAttributeValue(L"SelectedDatabase", database));
    EXPECT_EQ(database, L"");
    m->DeleteRule(&hole);
}
