#include <limits>

#include "rules/bolt_screw_rationalization_rule.h"
#include "rules/fastener_accessibility_rule.h"
#include "rules/fastener_alignment_rule.h"
#include "rules/fastener_clearance_rule.h"
#include "rules/fastener_engagement_len_rule.h"
#include "rules/recomm_thread_connection_rule.h"
#include "tests/rules/rule_defaults.h"
#include "util/texts.h"

namespace {
using FastenerRulesTest = RuleTest;
using Rows = std::vector<ZebRow>;
}  // namespace

TEST_F(FastenerRulesTest, Defaults) {
    CZEBAssemblyFastenerClearanceRule clearance;
    ExpectShape(clearance, {{2052, 8, 7, 24, true}, {9450, 8, 7, 24, true}},
                IDS_RULE_FASTENER_CLEARANCE, 2, 13040);
    ExpectTable(clearance, FastenerClearanceParams::kAll);
    EXPECT_TRUE(Values<ZebRow>(clearance, 2052).empty());
    EXPECT_FALSE(clearance.IsPopulated);
    EXPECT_EQ(clearance.Summary,
              ZebFormatText(LoadLocalizedString(IDS_SUMMARY_FASTENER_CLEARANCE), {L"", L"", L""}));
    EXPECT_EQ(clearance.Summary.find(L"%"), std::wstring::npos);

    CZEBAssemblyFastenerEngagementLenRule engagement;
    ExpectShape(engagement, {{2053, 8, 3, 24, true}}, IDS_RULE_FASTENER_ENGAGEMENT_LENGTH, 2,
                13030);
    ExpectTable(engagement, FastenerEngagementParams::kAll);
    EXPECT_NE(engagement.Summary.find(L">="), std::wstring::npos);

    CZEBAssemblyRecommThreadConnectionRule thread;
    ExpectShape(thread, {{7072, 8, 3, 24, true}, {9148, 8, 3, 24, true}},
                IDS_RULE_RECOMM_THREAD_TYPES, 2, 13120);
    ExpectTable(thread, RecommThreadParams::kAll);
    EXPECT_FALSE(Param<ZebRow>(thread, 9148).criteriaStatus);

    CZEBAssemblyFastenerAlignmentRule alignment;
    ExpectShape(alignment, {{8019, 4, 3, 1, true}, {8076, 3, 3, 1, false}},
                IDS_RULE_FASTENER_ALIGNMENT, 2, 13150);
    ExpectTable(alignment, FastenerAlignmentParams::kAll);
    EXPECT_EQ(Values<double>(alignment, 8019), std::vector<double>{0.0});
    EXPECT_TRUE(Values<bool>(alignment, 8076).empty());
    EXPECT_TRUE(alignment.IsPopulated);
    EXPECT_EQ(alignment.Summary, LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT));

    CZEBAssemblyFastenerAccessibilityRule accessibility;
    ExpectShape(accessibility,
                {{6080, 4, 7, 1, true}, {6092, 4, 7, 1, true}, {6093, 4, 3, 1, true}},
                IDS_RULE_FASTENER_ACCESSIBILITY, 2, 13060);
    ExpectTable(accessibility, FastenerAccessibilityParams::kAll);
    EXPECT_EQ(Values<double>(accessibility, 6080), std::vector<double>{1.2});
    EXPECT_EQ(Values<double>(accessibility, 6092), std::vector<double>{2.5});
    EXPECT_EQ(Values<double>(accessibility, 6093), std::vector<double>{0.0});

    CZEBAssemblyBoltScrewRationalizationRule bolt;
    ExpectShape(bolt,
                {{9024, 3, 3, 1, true},
                 {9025, 3, 3, 1, true},
                 {9026, 4, 7, 1, true},
                 {9027, 4, 7, 1, true},
                 {9603, 3, 3, 1, true}},
                IDS_RULE_BOLT_SCREW_RATIONALIZATION, 2, 13180);
    ExpectTable(bolt, BoltScrewParams::kAll);
    EXPECT_EQ(Values<double>(bolt, 9026), std::vector<double>{4.0});
    EXPECT_EQ(Values<double>(bolt, 9027), std::vector<double>{2.0});
    EXPECT_TRUE(Param<double>(bolt, 9026).criteriaStatus);
    EXPECT_TRUE(Param<double>(bolt, 9027).criteriaStatus);
    EXPECT_TRUE(Values<bool>(bolt, 9024).empty());
    EXPECT_FALSE(bolt.IsApplicable(nullptr));
    EXPECT_TRUE(alignment.IsApplicable(nullptr));
    EXPECT_EQ(bolt.Evaluate(nullptr, nullptr, nullptr), 0);
}

TEST_F(FastenerRulesTest, RoundTripsReplaceDefaultsInsteadOfAddingToThem) {
    CZEBAssemblyFastenerClearanceRule clearance;
    Param<ZebRow>(clearance, 2052).values.Add(ZebRow{L"M6", L"1.5", L""});
    Param<ZebRow>(clearance, 9450).values.Add(ZebRow{L"M6", L"2.0", L""});
    auto stored = Stored(clearance);
    CZEBAssemblyFastenerClearanceRule clearanceBack;
    clearanceBack.ImportFromXML(stored.get());
    clearanceBack.ImportFromXML(stored.get());  // reading twice does not double the rows
    EXPECT_EQ(Values<ZebRow>(clearanceBack, 2052), (Rows{{L"M6", L"1.5", L""}}));
    EXPECT_EQ(Values<ZebRow>(clearanceBack, 9450), (Rows{{L"M6", L"2.0", L""}}));
    EXPECT_TRUE(clearanceBack.IsPopulated);

    CZEBAssemblyFastenerEngagementLenRule engagement;
    Param<ZebRow>(engagement, 2053).values.Add(ZebRow{L"M8", L"6.0", L"x"});
    CZEBAssemblyFastenerEngagementLenRule engagementBack;
    engagementBack.ImportFromXML(Stored(engagement).get());
    EXPECT_EQ(Values<ZebRow>(engagementBack, 2053), (Rows{{L"M8", L"6.0", L"x"}}));

    CZEBAssemblyFastenerAlignmentRule alignment;
    Param<double>(alignment, 8019).values[0] = 0.75;
    Param<double>(alignment, 8019).op = ZebOp_LessEqual;
    CZEBAssemblyFastenerAlignmentRule alignmentBack;
    alignmentBack.ImportFromXML(Stored(alignment).get());
    EXPECT_EQ(Values<double>(alignmentBack, 8019), std::vector<double>{0.75});
    EXPECT_EQ(Param<double>(alignmentBack, 8019).op, ZebOp_LessEqual);
    EXPECT_FALSE(Param<bool>(alignmentBack, 8076).status);

    CZEBAssemblyFastenerAccessibilityRule accessibility;
    Param<double>(accessibility, 6092).values[0] = 3.25;
    CZEBAssemblyFastenerAccessibilityRule accessibilityBack;
    accessibilityBack.ImportFromXML(Stored(accessibility).get());
    EXPECT_EQ(Values<double>(accessibilityBack, 6080), std::vector<double>{1.2});
    EXPECT_EQ(Values<double>(accessibilityBack, 6092), std::vector<double>{3.25});
    EXPECT_EQ(Values<double>(accessibilityBack, 6093), std::vector<double>{0.0});

    // Parameters without prepared defaults get the stored values after the ones they hold.
    CZEBAssemblyBoltScrewRationalizationRule bolt;
    Param<bool>(bolt, 9024).values.Add(true);
    Param<bool>(bolt, 9025).status = false;
    Param<double>(bolt, 9026).criteriaStatus = false;
    auto boltStored = Stored(bolt);
    CZEBAssemblyBoltScrewRationalizationRule boltBack;
    Param<bool>(boltBack, 9024).values.Add(false);
    boltBack.ImportFromXML(boltStored.get());
    EXPECT_EQ(Values<bool>(boltBack, 9024), (std::vector<bool>{false, true}));
    EXPECT_FALSE(Param<bool>(boltBack, 9025).status);
    EXPECT_FALSE(Param<double>(boltBack, 9026).criteriaStatus);
    EXPECT_EQ(Values<double>(boltBack, 9026), std::vector<double>{4.0});
    EXPECT_EQ(
        boltBack.Summary,
        LoadLocalizedString(IDS_SUMMARY_BOLT_SCREW_RATIONALIZATION));  // not rebuilt on import

    // Thread sizes are not cleared before reading; thread pairs are.
    CZEBAssemblyRecommThreadConnectionRule thread;
    Param<ZebRow>(thread, 7072).values.Add(ZebRow{L"M", L"UNC"});
    Param<ZebRow>(thread, 9148).values.Add(ZebRow{L"M6", L"1.0"});
    auto threadStored = Stored(thread);
    thread.ImportFromXML(threadStored.get());
    EXPECT_EQ(Values<ZebRow>(thread, 7072), (Rows{{L"M", L"UNC"}}));
    EXPECT_EQ(Values<ZebRow>(thread, 9148), (Rows{{L"M6", L"1.0"}, {L"M6", L"1.0"}}));
    EXPECT_EQ(thread.Import(nullptr, threadStored.get(), nullptr), 0);
    EXPECT_EQ(Values<ZebRow>(thread, 9148).size(), 2u);
}

TEST_F(FastenerRulesTest, OldClearanceLayoutAndOperatorRepair) {
    CZEBAssemblyFastenerClearanceRule old;
    old.ImportFromXML(
        Parsed(R"(<Rule Name="Fastener Clearance"><Parameter Type="2052"><Operator>3</Operator>
        <ParameterType>24</ParameterType>
        <Value Attribute1="M6" Attribute2="1.5" Attribute3="2.5"/>
        <Value Attribute1="M8" Attribute2="3"/>
        <Value Attribute1="M10" Attribute2="4" Attribute3="5"/></Parameter></Rule>)")
            .get());
    EXPECT_EQ(Values<ZebRow>(old, 2052),
              (Rows{{L"M6", L"1.5", L""}, {L"M8", L"3"}, {L"M10", L"4", L""}}));
    EXPECT_EQ(Values<ZebRow>(old, 9450), (Rows{{L"M6", L"2.5", L""}, {L"M10", L"5", L""}}));
    EXPECT_EQ(Param<ZebRow>(old, 2052).op, ZebOp_GreaterEqual);
    EXPECT_EQ(Param<ZebRow>(old, 9450).op, ZebOp_GreaterEqual);

    // With 9450 rows present nothing moves, and "RANGE" is kept.
    CZEBAssemblyFastenerClearanceRule current;
    current.ImportFromXML(
        Parsed(
            R"(<Rule><Parameter Type="2052"><Operator>1</Operator><ParameterType>24</ParameterType>
        <Value Attribute1="M6" Attribute2="1" Attribute3="2"/></Parameter>
        <Parameter Type="9450"><Operator>8</Operator><ParameterType>24</ParameterType>
        <Value Attribute1="M6" Attribute2="3" Attribute3=""/></Parameter></Rule>)")
            .get());
    EXPECT_EQ(Values<ZebRow>(current, 2052), (Rows{{L"M6", L"1", L"2"}}));
    EXPECT_EQ(Values<ZebRow>(current, 9450), (Rows{{L"M6", L"3", L""}}));
    EXPECT_EQ(Param<ZebRow>(current, 2052).op, ZebOp_Range);
    EXPECT_EQ(Param<ZebRow>(current, 9450).op, ZebOp_GreaterEqual);
}

TEST_F(FastenerRulesTest, ConvertUnitsOfTableCells) {
    CZEBAssemblyFastenerClearanceRule clearance;
    Param<ZebRow>(clearance, 2052).values.Add(ZebRow{L"M6", L"25.4", L"12mm"});
    Param<ZebRow>(clearance, 2052).values.Add(ZebRow{L"M8", L"50.8"});
    Param<ZebRow>(clearance, 9450).values.Add(ZebRow{L"M6", L"-5", L" 2.54 "});
    // An empty row, and an empty Max, hold no value: a conversion leaves them empty.
    Param<ZebRow>(clearance, 2052).values.Add(ZebRow{L"", L"", L""});
    Param<ZebRow>(clearance, 9450).values.Add(ZebRow{L"M5", L"2.54", L""});
    clearance.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(Values<ZebRow>(clearance, 2052),
              (Rows{{L"M6", L"1.0", L"0.472441"}, {L"M8", L"50.8"}, {L"", L"", L""}}));
    EXPECT_EQ(Values<ZebRow>(clearance, 9450),
              (Rows{{L"M6", L"0.0", L"0.1"}, {L"M5", L"0.1", L""}}));
    EXPECT_EQ(clearance.CurrentUnits.LengthUnit, 3);

    // Equal length units: only the units are stored, even texts that are not numbers stay.
    const UnitSetting inchOther{3, 7};
    clearance.ConvertUnits(&kInch, &inchOther);
    EXPECT_EQ(Values<ZebRow>(clearance, 2052)[0][1], L"1.0");
    EXPECT_EQ(clearance.CurrentUnits.SecondUnit, 7);

    CZEBAssemblyFastenerEngagementLenRule engagement;
    Param<ZebRow>(engagement, 2053).values.Add(ZebRow{L"M6", L"10", L"20"});
    Param<ZebRow>(engagement, 2053).values.Add(ZebRow{L"M8"});
    const UnitSetting cm{1, 0};
    engagement.ConvertUnits(&kMm, &cm);
    EXPECT_EQ(Values<ZebRow>(engagement, 2053), (Rows{{L"M6", L"1.0", L"20"}, {L"M8"}}));
    EXPECT_EQ(engagement.CurrentUnits.LengthUnit, 1);

    CZEBAssemblyRecommThreadConnectionRule thread;
    Param<ZebRow>(thread, 9148).values.Add(ZebRow{L"M6", L"1.0"});
    thread.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(Values<ZebRow>(thread, 9148), (Rows{{L"M6", L"1.0"}}));
    EXPECT_EQ(thread.CurrentUnits.LengthUnit, 3);
}

TEST_F(FastenerRulesTest, ConvertUnitsOfSingleValuesAndRulesThatConvertNothing) {
    CZEBAssemblyFastenerAlignmentRule alignment;
    Param<double>(alignment, 8019).values[0] = 2.54;
    alignment.ConvertUnits(&kMm, &kInch);
    EXPECT_NEAR(Values<double>(alignment, 8019)[0], 0.1, 1e-12);
    EXPECT_EQ(alignment.CurrentUnits.LengthUnit, 3);
    EXPECT_EQ(alignment.Summary, LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT));
    Param<double>(alignment, 8019).values.RemoveAll();
    alignment.ConvertUnits(&kInch, &kMm);  // nothing to convert: units stay
    EXPECT_EQ(alignment.CurrentUnits.LengthUnit, 3);

    CZEBAssemblyFastenerAccessibilityRule accessibility;
    accessibility.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(accessibility.CurrentUnits.LengthUnit, 0);
    EXPECT_EQ(Values<double>(accessibility, 6080), std::vector<double>{1.2});

    CZEBAssemblyBoltScrewRationalizationRule bolt;
    bolt.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(bolt.CurrentUnits.LengthUnit, 0);
    EXPECT_EQ(Values<double>(bolt, 9026), std::vector<double>{4.0});
}

TEST_F(FastenerRulesTest, AlignmentTakesTheParentUnit) {
    CZEBAssemblyFastenerAlignmentRule alignment;
    alignment.ImportFromXML(Stored(alignment, L"2").get());
    EXPECT_EQ(alignment.CurrentUnits.LengthUnit, 2);
    alignment.ImportFromXML(Parsed("<Rule/>", L"v3.5", L"").get());
    EXPECT_EQ(alignment.CurrentUnits.LengthUnit, 0);
}

TEST_F(FastenerRulesTest, BoltAndScrewSummary) {
    CZEBAssemblyBoltScrewRationalizationRule bolt;
    const std::wstring opening = L"Bolts & Screws can be rationalized based on same diameter";
    for (long id : {9024L, 9025L}) Param<bool>(bolt, id).status = false;
    for (long id : {9026L, 9027L}) Param<double>(bolt, id).criteriaStatus = false;
    Param<bool>(bolt, 9603).status = true;
    bolt.RebuildSummary();
    EXPECT_EQ(bolt.Summary, opening + L".");

    Param<bool>(bolt, 9024).status = true;
    Param<double>(bolt, 9026).criteriaStatus = true;
    bolt.RebuildSummary();
    EXPECT_EQ(
        bolt.Summary,
        opening + L", same head type, same length or difference between consecutive lengths.");

    Param<bool>(bolt, 9025).status = true;
    Param<double>(bolt, 9027).criteriaStatus = true;
    bolt.RebuildSummary();
    EXPECT_EQ(bolt.Summary,
              opening +
                  L", same head type, same material, same length or difference between "
                  L"consecutive lengths, difference between consecutive diameters.");
}

TEST_F(FastenerRulesTest, AlignmentSummaryWhenTheRuleHoldsItsSwitch) {
    CZEBAssemblyFastenerAlignmentRule rule;
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 8011, ZebOp_LessEqual,
                                                      ZebParam_Value, true, false));
    rule.ParamArray.Add(rule.CreateParamStorageObject(ZebType_Double, 8021, ZebOp_Equal,
                                                      ZebParam_Value, true, false));
    rule.UpdateSummary();  // 8021 without a value: summary as constructed
    EXPECT_EQ(rule.Summary, LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT));

    Param<double>(rule, 8021).values.Add(1.0);
    Param<double>(rule, 8019).values[0] = 25.4;
    rule.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(rule.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT_LIMIT),
                                          {L"<=", L"1.0", GetUnitText(3)}));

    Param<double>(rule, 8021).values[0] = 0.5;  // integer part 0
    rule.UpdateSummary();
    EXPECT_EQ(rule.Summary, LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT));

    // Values from a file beyond any integer type still switch the limit on; NaN switches it off.
    const std::wstring limit = ZebFormatText(
        LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT_LIMIT), {L"<=", L"1.0", GetUnitText(3)});
    for (double on : {1e300, -1e19, -1.0, std::numeric_limits<double>::infinity()}) {
        Param<double>(rule, 8021).values[0] = on;
        rule.UpdateSummary();
        EXPECT_EQ(rule.Summary, limit) << on;
    }
    for (double off : {-0.5, std::numeric_limits<double>::quiet_NaN()}) {
        Param<double>(rule, 8021).values[0] = off;
        rule.UpdateSummary();
        EXPECT_EQ(rule.Summary, LoadLocalizedString(IDS_SUMMARY_FASTENER_ALIGNMENT)) << off;
    }
}
