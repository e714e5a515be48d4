// The module's entry points over a catalogue of failing rules: what a rule or the XML layer throws
// stays inside the module, and the host's data is left as a call that did nothing leaves it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "framework/module_entry_points.h"
#include "framework/text_convert.h"
#include "framework/ui_message.h"
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

namespace {
class RecordingSink : public IZebMessageSink {
public:
    int ShowMessage(const std::wstring&, const std::wstring& text, ZebMsgIcon,
                    ZebMsgButtons) override {
        texts.push_back(text);
        return ZebIdOk;
    }
    std::vector<std::wstring> texts;
};
}  // namespace

// The host calls a rule's methods directly too; each keeps its failure inside the module and
// answers as its signature allows, worker threads' failures included.
TEST_F(ModuleBoundaryTest, RuleMethodsKeepTheirFailuresInside) {
    const auto made = [&](const std::wstring& method) {
        CZebRule* rule = nullptr;
        auto node = RuleNamed(L"Fails in " + method);
        getRule(node.get(), &rule);
        EXPECT_NE(rule, nullptr);
        return rule;
    };
    const UnitSetting mm{0, 0}, inch{1, 0};

    // Sound methods still answer: the guard changes nothing when nothing fails.
    CZebRule* sound = made(L"nothing");
    ASSERT_NE(sound, nullptr);
    sound->ConvertUnits(&mm, &inch);
    EXPECT_EQ(sound->CurrentUnits.LengthUnit, 1);
    std::unique_ptr<ZebXMLNode> written(sound->ExportToXML());
    EXPECT_NE(written, nullptr);
    EXPECT_TRUE(sound->IsApplicable(nullptr));
    EXPECT_EQ(sound->Evaluate(nullptr, nullptr, nullptr), 0);
    deleteRule(&sound);

    // A conversion that fails on a worker thread, out of memory, leaves values in doubt: the
    // rule refuses to be written rather than write them in the wrong unit.
    CZebRule* converting = made(L"ConvertUnits");
    ASSERT_NE(converting, nullptr);
    ASSERT_NO_THROW(converting->ConvertUnits(&mm, &inch));
    std::unique_ptr<ZebXMLNode> unconverted;
    ASSERT_NO_THROW(unconverted.reset(converting->ExportToXML()));
    EXPECT_EQ(unconverted, nullptr);
    // Read again, it is sound again.
    auto again = RuleNamed(L"Fails in ConvertUnits");
    getRule(again.get(), &converting);
    written.reset(converting->ExportToXML());
    EXPECT_NE(written, nullptr);
    deleteRule(&converting);

    // Writing that fails on the thread that prints the rows gives no element.
    CZebRule* exporting = made(L"ExportToXML");
    ASSERT_NE(exporting, nullptr);
    std::unique_ptr<ZebXMLNode> partial;
    ASSERT_NO_THROW(partial.reset(exporting->ExportToXML()));
    EXPECT_EQ(partial, nullptr);
    deleteRule(&exporting);

    // A dialog that fails puts back what it changed and tells the user.
    RecordingSink sink;
    IZebMessageSink* previous = SetZebMessageSink(&sink);
    CZebRule* configuring = made(L"Configure");
    ASSERT_NE(configuring, nullptr);
    const std::wstring summary = configuring->Summary;
    ASSERT_NO_THROW(configuring->Configure());
    SetZebMessageSink(previous);
    EXPECT_EQ(configuring->Summary, summary);
    ASSERT_EQ(sink.texts.size(), 1u);
    EXPECT_NE(sink.texts[0].find(L"Fails in Configure"), std::wstring::npos);
    EXPECT_NE(sink.texts[0].find(L"the rule's own fault"), std::wstring::npos);
    deleteRule(&configuring);

    // The rest answer as a rule that did nothing, or failed, would.
    const auto check = [&](const std::wstring& method,
                           const std::function<void(CZebRule&)>& answers) {
        SCOPED_TRACE(ToUtf8(method));
        CZebRule* rule = made(method);
        ASSERT_NE(rule, nullptr);
        ASSERT_NO_THROW(answers(*rule));
        deleteRule(&rule);
    };
    check(L"Evaluate", [](CZebRule& r) { EXPECT_NE(r.Evaluate(nullptr, nullptr, nullptr), 0); });
    check(L"IsApplicable", [](CZebRule& r) { EXPECT_FALSE(r.IsApplicable(nullptr)); });
    check(L"Import", [](CZebRule& r) { EXPECT_NE(r.Import(nullptr, nullptr, nullptr), 0); });
    check(L"ClearState", [](CZebRule& r) { r.ClearState(); });
    check(L"InitParameters", [](CZebRule& r) {
        r.InitParameters();
        const std::unique_ptr<ZebXMLNode> unwritten(r.ExportToXML());
        EXPECT_EQ(unwritten, nullptr);
    });
}
