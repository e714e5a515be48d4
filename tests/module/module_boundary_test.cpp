// The module's entry points over a catalogue of failing rules: what a rule or the XML layer throws
// stays inside the module, and the host's data is left as a call that did nothing leaves it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>

#include "framework/module_entry_points.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"

namespace {
class ModuleBoundaryTest : public ::testing::Test {
protected:
    void SetUp() override {
        // Never unloaded, as a host keeps its modules: unloading would also drop the toolkit's
        // libraries this program does not link, and the leak checker of a checking build would
        // report their one-time start-up allocations as lost.
        handle = dlopen(VANTOR_BUILD_DIR "/tests/FailingRules.so",
                        RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        ASSERT_NE(handle, nullptr) << dlerror();
        getAllRules = reinterpret_cast<GetAllRulesFn>(dlsym(handle, "GetAllRules"));
        getRule = reinterpret_cast<GetRuleFn>(dlsym(handle, "GetRule"));
        deleteRule = reinterpret_cast<DeleteRuleFn>(dlsym(handle, "DeleteRule"));
        ASSERT_TRUE(getAllRules && getRule && deleteRule);
        std::unique_ptr<ZebXMLNode> root(doc.CreateDocumentElement(L"AssemblyRules"));
    }
    void TearDown() override {
        if (handle) dlclose(handle);
    }

    std::unique_ptr<ZebXMLNode> RuleNamed(const std::wstring& name) {
        std::unique_ptr<ZebXMLNode> root(doc.GetDocumentElement());
        std::unique_ptr<ZebXMLNode> rule(root->AppendNode(L"Rule"));
        rule->AddAttribute(L"Name", name);
        return rule;
    }

    void* handle = nullptr;
    GetAllRulesFn getAllRules = nullptr;
    GetRuleFn getRule = nullptr;
    DeleteRuleFn deleteRule = nullptr;
    ZebXMLDocument doc;
};
}  // namespace

TEST_F(ModuleBoundaryTest, NothingThrownInsideReachesTheHost) {
    // The rule that cannot be made is skipped; those before and after it come.
    ZebArray<CZebRule*> rules;
    ASSERT_NO_THROW(getAllRules(&rules));
    ASSERT_EQ(rules.GetSize(), 2);
    for (CZebRule* made : rules) {
        EXPECT_EQ(made->Name, L"Sound");
        deleteRule(&made);
    }

    // A rule made for a node whose import fails is not handed over.
    CZebRule* rule = nullptr;
    auto failing = RuleNamed(L"Import fails");
    ASSERT_NO_THROW(getRule(failing.get(), &rule));
    EXPECT_EQ(rule, nullptr);
    auto unmade = RuleNamed(L"Creation fails");
    ASSERT_NO_THROW(getRule(unmade.get(), &rule));
    EXPECT_EQ(rule, nullptr);

    // A rule the host passes in stays the host's.
    auto sound = RuleNamed(L"Sound");
    getRule(sound.get(), &rule);
    ASSERT_NE(rule, nullptr);
    CZebRule* const hosts = rule;
    ASSERT_NO_THROW(getRule(failing.get(), &rule));
    EXPECT_EQ(rule, hosts);
    deleteRule(&rule);
    EXPECT_EQ(rule, nullptr);
}
