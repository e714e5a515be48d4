#include <clocale>

#include "framework/text_convert.h"
#include "rules/fastener_accessibility_rule.h"
#include "rules/rule_record.h"
#include "tests/rules/rule_test_support.h"

namespace {
// A rule with whatever parameters a test needs, using the common writer and reader only.
class TestRule : public CZebRule {
public:
    void ImportFromXML(ZebXMLNode* node) override { ImportRuleXML(this, node); }
    ZebXMLNode* ExportToXML() override { return ExportRuleXML(this); }
};

std::vector<std::unique_ptr<ZebXMLNode>> Children(ZebXMLNode& node, const std::wstring& name) {
    std::unique_ptr<ZebXMLNodeList> list(node.GetNodeList(name));
    std::vector<std::unique_ptr<ZebXMLNode>> out;
    for (long i = 0; i < list->GetSize(); ++i) out.emplace_back((*list)[i]);
    return out;
}

using RuleXmlTest = RuleTest;
}  // namespace

TEST_F(RuleXmlTest, ExportedRuleAsExactText) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    rule.RuleModuleFileName = L"C:\\Vantor\\bin\\ZEBAssemblyRules.dll";
    rule.LifeStatus = 4;
    Param<double>(rule, 6080).percentDeviation[1] = {2.5, 0.0};
    Param<double>(rule, 6080).percentDeviation[2] = {1.0, 3.0};
    Param<double>(rule, 6092).opOptions.Add(7);
    Param<double>(rule, 6092).opOptions.Add(8);
    rule.FindParameterInArray(6093)->GetParam()->op = ZebOp_NotWritten;
    std::unique_ptr<ZebXMLNode> node(rule.ExportToXML());
    ASSERT_NE(node, nullptr);
    ZebXMLDocument doc;
    std::unique_ptr<ZebXMLNode> root(doc.CreateDocumentElement(L"AssemblyRules"));
    root->AppendNode(node.get());
    const std::string expected = R"(<?xml version="1.0" encoding="UTF-8"?>
<AssemblyRules>
  <Rule Name="Fastener Accessibility" Status="0" LifeStatus="4" Summary="@SUMMARY@" Module="ZEBAssemblyRulesValidator" RuleModule="" RuleModuleFileName="ZEBAssemblyRules.dll" Severity="2" RuleCategory="10">
    <Parameter Name="" Type="6080" Status="1">
      <Operator>7</Operator>
      <ParameterType>1</ParameterType>
      <Value>1.200000</Value>
      <ResultCriteria Status="0" CriteriaType="0">
        <PercentDeviation>
          <Warning>
            <Value>2.500000</Value>
          </Warning>
          <Info>
            <Value>1.000000</Value>
            <Value>3.000000</Value>
          </Info>
        </PercentDeviation>
        <AbsoluteDeviation />
        <AbsoluteValue />
      </ResultCriteria>
      <Remarks />
    </Parameter>
    <Parameter Name="" Type="6092" Status="1">
      <Operator>7</Operator>
      <OperatorOption>7</OperatorOption>
      <OperatorOption>8</OperatorOption>
      <ParameterType>1</ParameterType>
      <Value>2.500000</Value>
      <ResultCriteria Status="0" CriteriaType="0">
        <PercentDeviation />
        <AbsoluteDeviation />
        <AbsoluteValue />
      </ResultCriteria>
      <Remarks />
    </Parameter>
  </Rule>
</AssemblyRules>
)";
    std::string text = expected;
    text.replace(text.find("@SUMMARY@"), 9,
                 ToUtf8(LoadLocalizedString(IDS_SUMMARY_FASTENER_ACCESSIBILITY)));
    EXPECT_EQ(doc.GetXML(), text);
}

TEST_F(RuleXmlTest, HeaderRoundTripAndFileNameCut) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    rule.Status = 3;
    rule.LifeStatus = 7;
    rule.Severity = 5;
    rule.RuleModule = L"AsmRules";
    rule.Module = L"OtherValidator";
    rule.RuleModuleFileName = L"/opt/vantor/lib/ZEBAssemblyRules.so";
    auto stored = Stored(rule);
    EXPECT_EQ(Attr(*stored, L"RuleModuleFileName"), L"ZEBAssemblyRules.so");
    std::vector<std::wstring> names;
    for (const auto& [name, value] : stored->GetAttributes()) names.push_back(name);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Name", L"Status", L"LifeStatus", L"Summary",
                                                L"Module", L"RuleModule", L"RuleModuleFileName",
                                                L"Severity", L"RuleCategory"}));

    CZEBAssemblyFastenerAccessibilityRule back;
    back.Summary = L"kept";
    back.RuleCategory = L"kept too";
    back.ImportFromXML(stored.get());
    EXPECT_EQ(back.Status, 3);
    EXPECT_EQ(back.LifeStatus, 7);
    EXPECT_EQ(back.Severity, 5);
    EXPECT_EQ(back.Name, L"Fastener Accessibility");
    EXPECT_EQ(back.Module, L"OtherValidator");
    EXPECT_EQ(back.RuleModule, L"AsmRules");
    EXPECT_EQ(back.Summary, L"kept");
    EXPECT_EQ(back.RuleCategory, L"kept too");

    rule.RuleModuleFileName = L"plain.so";
    EXPECT_EQ(Attr(*Stored(rule), L"RuleModuleFileName"), L"plain.so");
    EXPECT_EQ(FileNamePart(L"D:\\a/b\\c.dll"), L"c.dll");
}

TEST_F(RuleXmlTest, AbsentOrNonNumericHeaderNumbersReadAsMinusOne) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    rule.Name = L"unchanged";
    rule.Module = L"unchanged";
    rule.ImportFromXML(Parsed(R"(<Rule Status="abc" LifeStatus="12"/>)").get());
    EXPECT_EQ(rule.Status, -1);
    EXPECT_EQ(rule.LifeStatus, 12);
    EXPECT_EQ(rule.Severity, -1);
    EXPECT_EQ(rule.Name, L"unchanged");
    EXPECT_EQ(rule.Module, L"unchanged");
    EXPECT_TRUE(rule.IsPopulated);
}

TEST_F(RuleXmlTest, RangeValueCountsAndLocaleIndependentNumbers) {
    // Numbers stay '.'-separated even under a locale with a decimal comma.
    const ScopedLocale german(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(german.Applied());
    for (int count : {4, 5, 6}) {
        TestRule rule;
        rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 100, ZebOp_Range,
                                                          ZebParam_Value, true, false));
        for (int i = 0; i < count; ++i) Param<double>(rule, 100).values.Add(i + 0.25);
        auto stored = Stored(rule);
        auto params = Children(*stored, L"Parameter");
        ASSERT_EQ(params.size(), 1u);
        auto values = Children(*params[0], L"Value");
        const size_t expected = count == 5 ? 0 : count;
        EXPECT_EQ(values.size(), expected) << count;
        EXPECT_EQ(Param<double>(rule, 100).values.GetSize(), static_cast<int32_t>(expected));
        if (!values.empty()) {
            EXPECT_EQ(values[0]->GetNodeValue(), L"0.250000");
        }

        TestRule back;
        back.ParamArray.Add(back.CreateParamStorageObject(ZebType_Double, 100, ZebOp_Equal,
                                                          ZebParam_Value, true, false));
        back.ImportFromXML(stored.get());
        EXPECT_EQ(Param<double>(back, 100).values.GetSize(), static_cast<int32_t>(expected));
        EXPECT_EQ(Param<double>(back, 100).op, ZebOp_Range);
        if (expected) {
            EXPECT_DOUBLE_EQ(Param<double>(back, 100).values[expected - 1], expected - 1 + 0.25);
        }
    }
}

TEST_F(RuleXmlTest, TableRowsWriteEveryCellAndReadFive) {
    TestRule rule;
    rule.ParamArray.Add(
        rule.CreateParamStorageObject(ZebType_Row, 200, ZebOp_Equal, ZebParam_Table, true, false));
    auto& rows = Param<ZebRow>(rule, 200).values;
    rows.Add(ZebRow{L"a", L"b", L"c", L"d", L"e", L"f", L"g"});
    rows.Add(ZebRow{});
    rows.Add(ZebRow{L"x", L"y"});
    auto stored = Stored(rule);
    auto params = Children(*stored, L"Parameter");
    auto values = Children(*params[0], L"Value");
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0]->GetAttributes().size(), 7u);
    EXPECT_EQ(Attr(*values[0], L"Attribute7"), L"g");

    TestRule back;
    back.ParamArray.Add(
        back.CreateParamStorageObject(ZebType_Row, 200, ZebOp_Equal, ZebParam_Table, true, false));
    back.ImportFromXML(stored.get());
    EXPECT_EQ(Values<ZebRow>(back, 200),
              (std::vector<ZebRow>{{L"a", L"b", L"c", L"d", L"e"}, {L"x", L"y"}}));
}

// Cells go out through one reused UTF-8 buffer and come back straight from the attributes' UTF-8.
TEST_F(RuleXmlTest, TableCellsKeepNonAsciiTextAndEndAtAnEmbeddedNul) {
    TestRule rule;
    rule.ParamArray.Add(
        rule.CreateParamStorageObject(ZebType_Row, 200, ZebOp_Equal, ZebParam_Table, true, false));
    Param<ZebRow>(rule, 200).values.Add(ZebRow{L"Mutter DIN 934 \u2013 Stahl", L"\U0001F600",
                                               std::wstring(L"ab\0cd", 5), L"", L"M8"});
    auto stored = Stored(rule);
    auto values = Children(*Children(*stored, L"Parameter")[0], L"Value");
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(values[0]->GetAttributes().size(), 5u);
    EXPECT_EQ(Attr(*values[0], L"Attribute1"), L"Mutter DIN 934 \u2013 Stahl");
    EXPECT_EQ(Attr(*values[0], L"Attribute2"), L"\U0001F600");
    EXPECT_EQ(Attr(*values[0], L"Attribute3"), L"ab");  // an attribute cannot carry L'\0'
    EXPECT_EQ(Attr(*values[0], L"Attribute4"), L"");
    EXPECT_EQ(Attr(*values[0], L"Attribute5"), L"M8");

    TestRule back;
    back.ParamArray.Add(
        back.CreateParamStorageObject(ZebType_Row, 200, ZebOp_Equal, ZebParam_Table, true, false));
    back.ImportFromXML(stored.get());
    EXPECT_EQ(
        Values<ZebRow>(back, 200),
        (std::vector<ZebRow>{{L"Mutter DIN 934 \u2013 Stahl", L"\U0001F600", L"ab", L"", L"M8"}}));
}

TEST_F(RuleXmlTest, ResultCriteriaDeviationEntries) {
    TestRule rule;
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 300, ZebOp_Less,
                                                      ZebParam_Value, true, false));
    auto& p = Param<double>(rule, 300);
    p.criteriaStatus = true;
    p.criteriaType = 4;
    p.absoluteDeviation[0] = {9.0, 9.0};
    p.absoluteDeviation[1] = {1.5, -2.0};
    p.absoluteValue[2] = {0.5, 0.75};
    auto stored = Stored(rule);

    TestRule back;
    back.ParamArray.Add(back.CreateParamStorageObject(ZebType_Double, 300, ZebOp_Less,
                                                      ZebParam_Value, true, false));
    Param<double>(back, 300).percentDeviation[1] = {7.0, 7.0};
    back.ImportFromXML(stored.get());
    auto& q = Param<double>(back, 300);
    EXPECT_TRUE(q.criteriaStatus);
    EXPECT_EQ(q.criteriaType, 4);
    EXPECT_TRUE(q.percentDeviation.empty());
    EXPECT_EQ(q.absoluteDeviation,
              (ZebDeviationMap{{1, {1.5, 0.0}}}));  // "Unknown" is not read back
    EXPECT_EQ(q.absoluteValue, (ZebDeviationMap{{2, {0.5, 0.75}}}));

    // One, two and three values, and an entry without values.
    TestRule parsed;
    parsed.ParamArray.Add(parsed.CreateParamStorageObject(ZebType_Double, 300, ZebOp_Less,
                                                          ZebParam_Value, true, false));
    parsed.ImportFromXML(Parsed(R"(<Rule><Parameter Type="300"><ResultCriteria Status="0">
        <PercentDeviation><Warning><Value>1</Value><Value>2</Value><Value>3</Value></Warning>
          <Info><Value>4.5</Value></Info></PercentDeviation>
        <AbsoluteDeviation><Warning/><Info><Value>x</Value><Value>6</Value></Info></AbsoluteDeviation>
        </ResultCriteria></Parameter></Rule>)")
                             .get());
    auto& r = Param<double>(parsed, 300);
    EXPECT_FALSE(r.criteriaStatus);
    EXPECT_EQ(r.criteriaType, 0);
    EXPECT_EQ(r.percentDeviation, (ZebDeviationMap{{1, {0.0, 0.0}}, {2, {4.5, 0.0}}}));
    EXPECT_EQ(r.absoluteDeviation, (ZebDeviationMap{{2, {0.0, 6.0}}}));
    EXPECT_TRUE(r.absoluteValue.empty());
}

TEST_F(RuleXmlTest, ParameterElementsFirstMatchDefaultsAndOperatorOptions) {
    TestRule rule;
    rule.ParamArray.Add(
        rule.CreateParamStorageObject(ZebType_Int, 400, ZebOp_Equal, ZebParam_Value, false, false));
    rule.ParamArray.Add(
        rule.CreateParamStorageObject(ZebType_Bool, 401, ZebOp_Equal, ZebParam_Value, true, false));
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_String, 402, ZebOp_Equal,
                                                      ZebParam_Value, true, false));
    Param<int32_t>(rule, 400).opOptions.Add(3);
    Param<int32_t>(rule, 400).criteriaStatus = true;
    Param<bool>(rule, 401).opOptions.Add(3);
    rule.ImportFromXML(Parsed(R"(<Rule>
        <Parameter Type="400"><Operator>7</Operator><OperatorOption>5</OperatorOption><OperatorOption>6</OperatorOption>
          <ParameterType>1</ParameterType><Value>12</Value><Value>zz</Value></Parameter>
        <Parameter Type="400"><Operator>8</Operator><Value>99</Value></Parameter>
        <Parameter Type="401" Status="0"><Value>0</Value><Value>yes</Value></Parameter>
        <Parameter Type="402"><Operator>x</Operator><Value>a b</Value></Parameter></Rule>)")
                           .get());
    auto& i = Param<int32_t>(rule, 400);
    EXPECT_EQ(i.op, 7);
    EXPECT_EQ(std::vector<int32_t>(i.opOptions.begin(), i.opOptions.end()),
              (std::vector<int32_t>{5, 6}));
    EXPECT_EQ(Values<int32_t>(rule, 400), (std::vector<int32_t>{12, 0}));
    EXPECT_TRUE(i.status);          // no "Status": enabled
    EXPECT_TRUE(i.criteriaStatus);  // no "ResultCriteria": unchanged
    auto& b = Param<bool>(rule, 401);
    EXPECT_FALSE(b.status);
    EXPECT_EQ(b.op, 0);
    EXPECT_EQ(b.kind, 0);
    EXPECT_EQ(b.opOptions.GetSize(), 1);
    EXPECT_EQ(Values<bool>(rule, 401), (std::vector<bool>{false, true}));
    EXPECT_EQ(Param<std::wstring>(rule, 402).op, 0);
    EXPECT_EQ(Values<std::wstring>(rule, 402), (std::vector<std::wstring>{L"a b"}));
}

TEST_F(RuleXmlTest, UnwrittenOperatorsAndUnknownValueTypes) {
    TestRule rule;
    rule.Name = L"test";
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 500, ZebOp_NotWritten,
                                                      ZebParam_Value, true, false));
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 501, ZebOp_None,
                                                      ZebParam_Value, true, false));
    rule.ParamArray.Add(rule.CreateParamStorageObject(static_cast<Type_e>(9), 502, ZebOp_Equal,
                                                      ZebParam_Value, true, false));
    rule.ParamArray.Add(
        rule.CreateParamStorageObject(ZebType_Long, 503, ZebOp_Equal, ZebParam_Value, true, false));
    Param<double>(rule, 500).values.Add(1.5);
    Param<long>(rule, 503).values.Add(-42);
    auto stored = Stored(rule);
    auto params = Children(*stored, L"Parameter");
    ASSERT_EQ(params.size(), 1u);
    EXPECT_EQ(Attr(*params[0], L"Type"), L"503");
    ASSERT_EQ(messages.texts.size(), 1u);
    EXPECT_EQ(messages.texts[0], LoadLocalizedString(IDS_UNKNOWN_VALUE_TYPE));

    // Reading stops at the unknown type: 503 keeps its values, the rule is not marked populated.
    auto withOp12 = Parsed(
        R"(<Rule Severity="2"><Parameter Type="500"><Operator>3</Operator><Value>7</Value></Parameter>
        <Parameter Type="503"><Value>5</Value></Parameter></Rule>)");
    TestRule back;
    back.ParamArray.Add(back.CreateParamStorageObject(ZebType_Double, 500, ZebOp_NotWritten,
                                                      ZebParam_Value, true, false));
    back.ParamArray.Add(back.CreateParamStorageObject(static_cast<Type_e>(9), 502, ZebOp_Equal,
                                                      ZebParam_Value, true, false));
    back.ParamArray.Add(
        back.CreateParamStorageObject(ZebType_Long, 503, ZebOp_Equal, ZebParam_Value, true, false));
    back.ImportFromXML(withOp12.get());
    EXPECT_EQ(messages.texts.size(), 2u);
    EXPECT_EQ(Values<double>(back, 500), std::vector<double>{7.0});
    EXPECT_TRUE(Values<long>(back, 503).empty());
    EXPECT_FALSE(back.IsPopulated);
    EXPECT_EQ(back.Severity, 2);

    // A parameter left out of the XML because of operator 12 is untouched by a later import.
    TestRule again;
    again.ParamArray.Add(again.CreateParamStorageObject(ZebType_Double, 500, ZebOp_NotWritten,
                                                        ZebParam_Value, true, false));
    Param<double>(again, 500).values.Add(3.0);
    again.ImportFromXML(stored.get());
    EXPECT_EQ(Values<double>(again, 500), std::vector<double>{3.0});
    EXPECT_EQ(Param<double>(again, 500).op, ZebOp_NotWritten);
}

TEST_F(RuleXmlTest, NoSettingsDocumentNoElement) {
    SetSettingsDocument(nullptr);
    CZEBAssemblyFastenerAccessibilityRule rule;
    EXPECT_EQ(rule.ExportToXML(), nullptr);
}
