#include <limits>

#include "rules/contact_material_rule.h"
#include "rules/hole_alignment_rule.h"
#include "rules/interference_detection_rule.h"
#include "rules/min_clearance_rule.h"
#include "rules/pref_comp_rule.h"
#include "rules/slot_alignment_rule.h"
#include "tests/rules/rule_defaults.h"
#include "util/texts.h"

namespace {
using PartRulesTest = RuleTest;
using Rows = std::vector<ZebRow>;

CZEBASMSlotAlignmentCheckRule MakeSlot() {
    return CZEBASMSlotAlignmentCheckRule(IDS_RULE_SLOT_ALIGNMENT, IDS_SUMMARY_SLOT_ALIGNMENT,
                                         13090);
}
}  // namespace

TEST_F(PartRulesTest, Defaults) {
    CZEBASMHoleAlignmentCheckRule hole;
    ExpectShape(hole,
                {{7800, 4, 8, 1, true},
                 {7092, 4, 8, 1, true},
                 {7094, 4, 8, 1, true},
                 {9084, 4, 8, 1, true}},
                IDS_RULE_HOLE_ALIGNMENT, 1, 13010);
    ExpectTable(hole, HoleAlignmentParams::kAll);
    EXPECT_EQ(Values<double>(hole, 7800), std::vector<double>{0.5});
    EXPECT_TRUE(Param<double>(hole, 7800).criteriaStatus);
    EXPECT_TRUE(Values<double>(hole, 7092).empty());
    EXPECT_FALSE(Param<double>(hole, 7094).criteriaStatus);
    EXPECT_EQ(Values<double>(hole, 9084), std::vector<double>{0.1});
    EXPECT_EQ(hole.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_HOLE_ALIGNMENT),
                                          {L"<=", L"0.5", GetUnitText(0)}));
    EXPECT_EQ(hole.Evaluate(nullptr, nullptr, nullptr), -3);

    auto slot = MakeSlot();
    ExpectShape(slot,
                {{8004, 4, 8, 1, true},
                 {9503, 4, 8, 1, true},
                 {9606, 3, 3, 0, true},
                 {9608, 3, 3, 0, true}},
                IDS_RULE_SLOT_ALIGNMENT, 1, 13090);
    ExpectTable(slot, SlotAlignmentParams::kAll);
    EXPECT_EQ(Values<double>(slot, 9503), std::vector<double>{0.5});
    EXPECT_EQ(Values<bool>(slot, 9608), std::vector<bool>{false});
    EXPECT_EQ(slot.Summary,
              ZebFormatText(LoadLocalizedString(IDS_SUMMARY_SLOT_ALIGNMENT), {L"", L"", L""}));
    EXPECT_EQ(slot.Evaluate(nullptr, nullptr, nullptr), -3);

    CZEBAssemblyInterferenceDetectionRule interference;
    ExpectShape(interference,
                {{6067, 3, 3, 22, true},
                 {6069, 3, 3, 22, true},
                 {8073, 3, 3, 22, true},
                 {6070, 3, 3, 22, true},
                 {8978, 4, 8, 1, false},
                 {6068, 8, 3, 24, true}},
                IDS_RULE_INTERFERENCE_DETECTION, 1, 13050);
    ExpectTable(interference, InterferenceParams::kAll);
    EXPECT_EQ(Values<bool>(interference, 6069), std::vector<bool>{true});
    EXPECT_EQ(Values<bool>(interference, 6070), std::vector<bool>{false});
    EXPECT_TRUE(Values<double>(interference, 8978).empty());
    EXPECT_EQ(interference.Evaluate(nullptr, nullptr, nullptr), 0);

    CZEBAssemblyMinClearanceBetPartsRule clearance;
    ExpectShape(clearance,
                {{2062, 4, 7, 1, true},
                 {2049, 4, 3, 1, true},
                 {2048, 8, 3, 24, true},
                 {2063, 4, 7, 1, true},
                 {6072, 3, 3, 22, true},
                 {6073, 3, 3, 22, true},
                 {8095, 3, 3, 22, true}},
                IDS_RULE_MIN_CLEARANCE, 1, 13020);
    ExpectTable(clearance, MinClearanceParams::kAll);
    EXPECT_EQ(Values<double>(clearance, 2062), (std::vector<double>{1.0, 0.1}));
    EXPECT_EQ(Values<bool>(clearance, 6073), std::vector<bool>{true});
    EXPECT_EQ(clearance.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
                                               {L">=", L"0.1", GetUnitText(0)}));

    CZEBAssemblyCheckContactMaterialRule contact;
    ExpectShape(contact, {{7065, 8, 3, 24, true}, {7051, 4, 5, 1, true}}, IDS_RULE_CONTACT_MATERIAL,
                2, 13100);
    ExpectTable(contact, ContactMaterialParams::kAll);
    EXPECT_EQ(Values<double>(contact, 7051), std::vector<double>{0.1});
    EXPECT_FALSE(contact.IsPopulated);
    EXPECT_EQ(contact.Import(nullptr, nullptr, nullptr), 0);

    CZEBAssemblyCheckPrefCompRule preferred;
    ExpectShape(preferred, {{7002, 5, 7, 1, true}}, IDS_RULE_PREFERRED_COMPONENTS, 2, 13070);
    ExpectTable(preferred, PrefCompParams::kAll);
    EXPECT_EQ(Values<std::wstring>(preferred, 7002), std::vector<std::wstring>{L""});
    EXPECT_TRUE(preferred.IsPopulated);
}

TEST_F(PartRulesTest, RoundTrips) {
    CZEBASMHoleAlignmentCheckRule hole;
    Param<double>(hole, 7800).values[0] = 0.25;
    Param<double>(hole, 7092).values.Add(0.3);
    Param<double>(hole, 7092).criteriaStatus = true;
    CZEBASMHoleAlignmentCheckRule holeBack;
    holeBack.ImportFromXML(Stored(hole).get());
    EXPECT_EQ(Values<double>(holeBack, 7800), std::vector<double>{0.25});
    EXPECT_EQ(Values<double>(holeBack, 7092), std::vector<double>{0.3});
    EXPECT_TRUE(Param<double>(holeBack, 7092).criteriaStatus);
    EXPECT_EQ(Values<double>(holeBack, 9084), std::vector<double>{0.1});
    EXPECT_NE(holeBack.Summary.find(L"0.25"), std::wstring::npos);

    auto slot = MakeSlot();
    Param<double>(slot, 8004).values[0] = 1.5;
    Param<bool>(slot, 9606).values[0] = true;
    auto slotBack = MakeSlot();
    slotBack.ImportFromXML(Stored(slot).get());
    EXPECT_EQ(Values<double>(slotBack, 8004), std::vector<double>{1.5});
    EXPECT_EQ(Values<double>(slotBack, 9503), std::vector<double>{0.5});
    EXPECT_EQ(Values<bool>(slotBack, 9606), std::vector<bool>{true});
    EXPECT_EQ(Values<bool>(slotBack, 9608), std::vector<bool>{false});
    EXPECT_EQ(slotBack.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_SLOT_ALIGNMENT),
                                              {L"<=", L"1.5", GetUnitText(0)}));

    CZEBAssemblyInterferenceDetectionRule interference;
    Param<bool>(interference, 8073).values[0] = true;
    Param<double>(interference, 8978).values.Add(125.0);
    Param<ZebRow>(interference, 6068).values.Add(ZebRow{L"a.prt", L"b.prt"});
    auto interferenceStored = Stored(interference);
    CZEBAssemblyInterferenceDetectionRule interferenceBack;
    interferenceBack.ImportFromXML(interferenceStored.get());
    EXPECT_EQ(Values<bool>(interferenceBack, 8073), std::vector<bool>{true});
    EXPECT_EQ(Values<double>(interferenceBack, 8978), std::vector<double>{125.0});
    EXPECT_EQ(Values<ZebRow>(interferenceBack, 6068), (Rows{{L"a.prt", L"b.prt"}}));
    // While the framework's status word is set, its pairs stay and stored ones are added.
    interferenceBack.RuleStatusWord = 1;
    interferenceBack.ImportFromXML(interferenceStored.get());
    EXPECT_EQ(Values<ZebRow>(interferenceBack, 6068).size(), 2u);
    EXPECT_EQ(Values<double>(interferenceBack, 8978), std::vector<double>{125.0});

    CZEBAssemblyMinClearanceBetPartsRule clearance;
    Param<double>(clearance, 2062).values[1] = 0.4;
    Param<double>(clearance, 2049).values[0] = 1.0;
    Param<ZebRow>(clearance, 2048).values.Add(ZebRow{L"a", L"b", L"0.2"});
    Param<bool>(clearance, 8095).values[0] = true;
    CZEBAssemblyMinClearanceBetPartsRule clearanceBack;
    clearanceBack.ImportFromXML(Stored(clearance, L"1").get());
    EXPECT_EQ(Values<double>(clearanceBack, 2062), (std::vector<double>{1.0, 0.4}));
    EXPECT_EQ(Values<double>(clearanceBack, 2049), std::vector<double>{1.0});
    EXPECT_EQ(Values<ZebRow>(clearanceBack, 2048), (Rows{{L"a", L"b", L"0.2"}}));
    EXPECT_EQ(Values<bool>(clearanceBack, 8095), std::vector<bool>{true});
    EXPECT_EQ(Values<double>(clearanceBack, 2063), std::vector<double>{1.0});
    EXPECT_EQ(clearanceBack.CurrentUnits.LengthUnit, 1);
    EXPECT_EQ(clearanceBack.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
                                                   {L">=", L"0.4", GetUnitText(1)}) +
                                         LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS));

    CZEBAssemblyCheckContactMaterialRule contact;
    Param<ZebRow>(contact, 7065).values.Add(ZebRow{L"Steel", L"Aluminium"});
    Param<double>(contact, 7051).values[0] = 0.2;
    CZEBAssemblyCheckContactMaterialRule contactBack;
    contactBack.ImportFromXML(Stored(contact).get());
    EXPECT_EQ(Values<ZebRow>(contactBack, 7065), (Rows{{L"Steel", L"Aluminium"}}));
    EXPECT_EQ(Values<double>(contactBack, 7051), std::vector<double>{0.2});
    EXPECT_TRUE(contactBack.IsPopulated);

    CZEBAssemblyCheckPrefCompRule preferred;
    Param<std::wstring>(preferred, 7002).values[0] = L"encoded table";
    CZEBAssemblyCheckPrefCompRule preferredBack;
    preferredBack.ImportFromXML(Stored(preferred).get());
    EXPECT_EQ(Values<std::wstring>(preferredBack, 7002),
              std::vector<std::wstring>{L"encoded table"});
}

TEST_F(PartRulesTest, HoleAlignmentVersionUpgrade) {
    CZEBASMHoleAlignmentCheckRule written;
    Param<double>(written, 7800).values[0] = 0.2;
    Param<double>(written, 7800).criteriaStatus = false;
    Param<double>(written, 7094).criteriaStatus = true;
    std::unique_ptr<ZebXMLNode> exported(written.ExportToXML());

    for (const std::wstring version : {L"", L"3.4", L"v3.2"}) {
        SCOPED_TRACE(std::string(version.begin(), version.end()));
        CZEBASMHoleAlignmentCheckRule old;
        old.ImportFromXML(Place(exported.get(), version, L"0").get());
        EXPECT_EQ(Values<double>(old, 7800), (std::vector<double>{0.2, 0.5}));
        EXPECT_TRUE(Param<double>(old, 7800).criteriaStatus);
        EXPECT_TRUE(Param<double>(old, 7092).criteriaStatus);
        EXPECT_FALSE(Param<double>(old, 7094).criteriaStatus);
    }
    for (const std::wstring version : {L"v3.4", L"v3.3", L"vv4"}) {
        SCOPED_TRACE(std::string(version.begin(), version.end()));
        CZEBASMHoleAlignmentCheckRule current;
        current.ImportFromXML(Place(exported.get(), version, L"0").get());
        EXPECT_EQ(Values<double>(current, 7800), std::vector<double>{0.2});
        EXPECT_FALSE(Param<double>(current, 7800).criteriaStatus);
        EXPECT_TRUE(Param<double>(current, 7094).criteriaStatus);
    }

    // A detached element has no version or unit to go by: nothing is read.
    CZEBASMHoleAlignmentCheckRule detached;
    detached.Severity = 9;
    detached.ImportFromXML(exported.get());
    EXPECT_TRUE(Values<double>(detached, 7800).empty());
    EXPECT_TRUE(Values<double>(detached, 9084).empty());
    EXPECT_EQ(detached.Severity, 9);
}

TEST_F(PartRulesTest, HoleAlignmentToleranceDefaultInTheParentUnit) {
    const std::string withoutTolerance =
        R"(<Rule Name="Hole Alignment"><Parameter Type="7800"><Operator>8</Operator>
        <Value>0.5</Value></Parameter></Rule>)";
    CZEBASMHoleAlignmentCheckRule millimetres;
    millimetres.ImportFromXML(Parsed(withoutTolerance, L"v3.5", L"0").get());
    EXPECT_EQ(Values<double>(millimetres, 9084), std::vector<double>{0.1});
    EXPECT_EQ(millimetres.CurrentUnits.LengthUnit, 0);

    CZEBASMHoleAlignmentCheckRule inches;
    inches.ImportFromXML(Parsed(withoutTolerance, L"v3.5", L"3").get());
    EXPECT_EQ(inches.CurrentUnits.LengthUnit, 3);
    ASSERT_EQ(Values<double>(inches, 9084).size(), 1u);
    EXPECT_NEAR(Values<double>(inches, 9084)[0], 0.1 / 25.4, 1e-12);
    EXPECT_EQ(inches.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_HOLE_ALIGNMENT),
                                            {L"<=", L"0.5", GetUnitText(3)}));
}

TEST_F(PartRulesTest, SlotAlignmentVersionUpgrade) {
    auto written = MakeSlot();
    Param<bool>(written, 9606).values[0] = true;
    Param<bool>(written, 9608).values[0] = true;
    std::unique_ptr<ZebXMLNode> exported(written.ExportToXML());
    struct Case {
        std::wstring version;
        std::vector<bool> expected;
    };
    for (const Case& c : {Case{L"v3.4", {true, false}}, Case{L"3.4", {true, false}},
                          Case{L"", {true, false}}, Case{L"v3.5", {true}}, Case{L"3.6", {true}}}) {
        SCOPED_TRACE(std::string(c.version.begin(), c.version.end()));
        auto slot = MakeSlot();
        slot.ImportFromXML(Place(exported.get(), c.version, L"0").get());
        EXPECT_EQ(Values<bool>(slot, 9606), c.expected);
        EXPECT_EQ(Values<bool>(slot, 9608), c.expected);
    }
}

TEST_F(PartRulesTest, AlignmentDatabaseAttributes) {
    CZEBASMHoleAlignmentCheckRule hole;
    GetAssemblyRulesApp()->m_databaseModules.clear();
    std::unique_ptr<ZebXMLNode> node(hole.ExportToXML());
    auto attributes = node->GetAttributes();
    ASSERT_EQ(attributes.size(), 11u);
    EXPECT_EQ(attributes[9], (std::pair<std::wstring, std::wstring>{L"SelectedDatabase", L""}));
    EXPECT_EQ(attributes[10], (std::pair<std::wstring, std::wstring>{L"DBCategory", L"Hardware"}));

    GetAssemblyRulesApp()->m_databaseModules = {L"/opt/vantor/lib/vantor/ZEBDatabaseu.so",
                                                L"other.so"};
    auto slot = MakeSlot();
    slot.DBCategory = L"Fasteners";
    node.reset(slot.ExportToXML());
    EXPECT_EQ(Attr(*node, L"SelectedDatabase"), L"ZEBDatabaseu");
    EXPECT_EQ(Attr(*node, L"DBCategory"), L"Fasteners");
    EXPECT_EQ(slot.SelectedDatabase, L"ZEBDatabaseu");

    GetAssemblyRulesApp()->m_databaseModules = {L"C:\\Vantor\\NoExtension"};
    node.reset(hole.ExportToXML());
    EXPECT_EQ(Attr(*node, L"SelectedDatabase"), L"");
    GetAssemblyRulesApp()->m_databaseModules.clear();
}

TEST_F(PartRulesTest, MinimumClearanceSummary) {
    CZEBAssemblyMinClearanceBetPartsRule rule;
    const std::wstring partOne = ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
                                               {L">=", L"2.0", GetUnitText(0)});
    Param<double>(rule, 2062).values[1] = 2.0;
    Param<double>(rule, 2062).values[0] = 0.0;
    Param<double>(rule, 2049).values[0] = 1.0;
    rule.RebuildSummary();
    EXPECT_EQ(rule.Summary, LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS));

    // Export writes the summary held before and rebuilds it afterwards.
    Param<double>(rule, 2062).values[0] = 1.0;
    std::unique_ptr<ZebXMLNode> node(rule.ExportToXML());
    EXPECT_EQ(Attr(*node, L"Summary"), LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS));
    EXPECT_EQ(rule.Summary, partOne + LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS));

    Param<double>(rule, 2049).values[0] = 0.0;
    rule.RebuildSummary();
    EXPECT_EQ(rule.Summary, partOne);

    // A unit change shows the general clearance whatever the switches say.
    Param<double>(rule, 2062).values[0] = 0.0;
    rule.ConvertUnits(&kMm, &kCm);
    EXPECT_EQ(rule.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
                                          {L">=", L"0.2", GetUnitText(1)}));

    Param<double>(rule, 2062).values.RemoveAll();
    rule.RebuildSummary();
    EXPECT_EQ(rule.Summary, L"");

    // A switch is on when its whole part is not zero, however large the value read from a file;
    // NaN is off.
    const std::wstring general = ZebFormatText(LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE),
                                               {L">=", L"0.1", GetUnitText(1)});
    const std::wstring pairs = LoadLocalizedString(IDS_SUMMARY_MIN_CLEARANCE_PAIRS);
    Param<double>(rule, 2062).values.Add(0.0);
    Param<double>(rule, 2062).values.Add(0.1);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        double general, pairSwitch;
        bool generalShown, pairsShown;
    } cases[] = {{1e300, -1e19, true, true}, {-1e300, 1e19, true, true},  {inf, -inf, true, true},
                 {nan, nan, false, false},   {0.99, -0.99, false, false}, {-1.0, 1.5, true, true},
                 {9.3e18, 0.0, true, false}, {0.0, -9.3e18, false, true}};
    for (const auto& c : cases) {
        Param<double>(rule, 2062).values[0] = c.general;
        Param<double>(rule, 2049).values[0] = c.pairSwitch;
        rule.RebuildSummary();
        EXPECT_EQ(rule.Summary, (c.generalShown ? general : L"") + (c.pairsShown ? pairs : L""))
            << c.general << " " << c.pairSwitch;
    }
}

TEST_F(PartRulesTest, ConvertUnits) {
    CZEBASMHoleAlignmentCheckRule hole;
    hole.ConvertUnits(&kMm, &kCm);
    EXPECT_NEAR(Values<double>(hole, 7800)[0], 0.05, 1e-12);
    EXPECT_NEAR(Values<double>(hole, 9084)[0], 0.01, 1e-12);
    EXPECT_EQ(hole.CurrentUnits.LengthUnit, 1);
    EXPECT_EQ(hole.Summary, ZebFormatText(LoadLocalizedString(IDS_SUMMARY_HOLE_ALIGNMENT),
                                          {L"<=", L"0.05", GetUnitText(1)}));

    auto slot = MakeSlot();
    slot.ConvertUnits(&kMm, &kCm);
    EXPECT_NEAR(Values<double>(slot, 8004)[0], 0.05, 1e-12);
    EXPECT_NEAR(Values<double>(slot, 9503)[0], 0.05, 1e-12);
    EXPECT_EQ(Values<bool>(slot, 9606), std::vector<bool>{false});
    EXPECT_EQ(slot.CurrentUnits.LengthUnit, 1);

    CZEBAssemblyMinClearanceBetPartsRule clearance;
    Param<ZebRow>(clearance, 2048).values.Add(ZebRow{L"a", L"b", L"12mm"});
    Param<ZebRow>(clearance, 2048).values.Add(ZebRow{L"a", L"-5"});
    clearance.ConvertUnits(&kMm, &kCm);
    EXPECT_NEAR(Values<double>(clearance, 2062)[1], 0.01, 1e-12);
    EXPECT_EQ(Values<double>(clearance, 2062)[0], 1.0);
    EXPECT_EQ(Values<ZebRow>(clearance, 2048), (Rows{{L"a", L"b", L"1.2"}, {L"a", L"-5"}}));
    EXPECT_EQ(clearance.CurrentUnits.LengthUnit, 1);

    // A volume converts by the cube of the length factor; equal length units convert nothing.
    CZEBAssemblyInterferenceDetectionRule interference;
    Param<double>(interference, 8978).values.Add(2000.0);
    const UnitSetting mmOther{0, 4};
    interference.ConvertUnits(&kMm, &mmOther);
    EXPECT_EQ(Values<double>(interference, 8978), std::vector<double>{2000.0});
    EXPECT_EQ(interference.CurrentUnits.SecondUnit, 4);
    interference.ConvertUnits(&kMm, &kCm);
    EXPECT_NEAR(Values<double>(interference, 8978)[0], 2.0, 1e-12);
    EXPECT_EQ(interference.CurrentUnits.LengthUnit, 1);

    CZEBAssemblyCheckContactMaterialRule contact;
    contact.ConvertUnits(&kMm, &kInch);
    EXPECT_NEAR(Values<double>(contact, 7051)[0], 0.1 / 25.4, 1e-12);
    EXPECT_EQ(contact.CurrentUnits.LengthUnit, 3);

    CZEBAssemblyCheckPrefCompRule preferred;
    preferred.ConvertUnits(&kMm, &kInch);
    EXPECT_EQ(preferred.CurrentUnits.LengthUnit, 0);
}

TEST_F(PartRulesTest, WithoutTheApplicationObjectOnlyParametersAreMade) {
    StopAssemblyRulesApp();
    CZEBASMHoleAlignmentCheckRule hole;
    EXPECT_TRUE(hole.Name.empty());
    EXPECT_TRUE(hole.Module.empty());
    EXPECT_TRUE(hole.EngineList.empty());
    EXPECT_EQ(hole.DialogImageId, 0);
    EXPECT_EQ(ParamIds(hole), (std::vector<long>{7800, 7092, 7094, 9084}));
    EXPECT_EQ(Values<double>(hole, 7800), std::vector<double>{0.5});
    // Without the application object the alignment rules add no database attributes.
    std::unique_ptr<ZebXMLNode> node(hole.ExportToXML());
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->GetAttributes().size(), 9u);
}
