#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>

#include "framework/zeb_types.h"
#include "resources/string_ids.h"

// The parameters of every rule, each written once: what a rule's InitParameters creates and in
// which order, the ids its dialog, the table export and the tests find them by, the cells of its
// tables, and the strings the rule's dialog names them with. Plain data with no state, so every
// layer that needs a fact reads it here.

// What a cell of a table holds; lengths follow a change of unit.
enum class ParamCell { Text, Length };

// The cells of one table row, at most the five a stored row keeps.
struct ParamColumns {
    static constexpr size_t kMax = 5;
    size_t count = 0;
    std::array<ParamCell, kMax> cells{};

    constexpr ParamColumns() = default;
    constexpr ParamColumns(std::initializer_list<ParamCell> list) : count(list.size()) {
        std::copy_n(list.begin(), std::min(list.size(), kMax), cells.begin());
    }
};

// The values a new rule holds. A switch (bool) is 0 or 1; a text parameter holds one empty text
// per value.
struct ParamDefaults {
    static constexpr size_t kMax = 2;
    size_t count = 0;
    std::array<double, kMax> values{};

    constexpr ParamDefaults() = default;
    constexpr ParamDefaults(std::initializer_list<double> list) : count(list.size()) {
        std::copy_n(list.begin(), std::min(list.size(), kMax), values.begin());
    }
    constexpr std::span<const double> View() const { return {values.data(), count}; }
};

// A column heading: the string the rule's dialog heads the column with, or the fixed text the
// dialog holds itself where it loads none.
struct ParamHeading {
    ZebStringId id{};
    const wchar_t* fixed = nullptr;
};

// The headings of a table's columns, one per cell of its rows.
struct ParamHeadings {
    size_t count = 0;
    std::array<ParamHeading, ParamColumns::kMax> headings{};

    constexpr ParamHeadings() = default;
    constexpr ParamHeadings(std::initializer_list<ParamHeading> list) : count(list.size()) {
        std::copy_n(list.begin(), std::min(list.size(), ParamColumns::kMax), headings.begin());
    }
    constexpr std::span<const ParamHeading> View() const { return {headings.data(), count}; }
};

// What a parameter's values measure, so that their texts name the unit.
enum class ParamUnit { None, Length, Volume };

// What switches a parameter on and off where its dialog shows it: nothing, its first value
// (0 is off), its enabled status or its criteria status.
enum class ParamSwitch { None, FirstValue, Enabled, Criteria };

struct ParamSpec {
    long id;
    Type_e type;
    ZebOperator_e op;
    ZebParamType_e kind;
    bool enabled = true;
    // The criteria status a new rule starts with.
    bool criteria = false;
    ParamDefaults defaults = {};
    // Rows of a table parameter, or of the table a text parameter encodes.
    ParamColumns columns = {};
    // The string the rule's dialog names the value with; none for values it does not show.
    ZebStringId label{};
    ParamUnit unit = ParamUnit::None;
    ParamSwitch switchedBy = ParamSwitch::None;
    // The headings of `columns`.
    ParamHeadings headings = {};
};

namespace rule_params_detail {
// Facts the readers rely on: ids are unique within a rule, a table keeps rows, a row has room
// for its cells and a list for its defaults, and a switch is 0 or 1.
template <size_t N>
constexpr bool WellFormed(const std::array<ParamSpec, N>& specs) {
    for (size_t i = 0; i < N; ++i) {
        const ParamSpec& p = specs[i];
        for (size_t j = i + 1; j < N; ++j)
            if (specs[j].id == p.id) return false;
        if ((p.kind == ZebParam_Table) != (p.type == ZebType_Row)) return false;
        if (p.type == ZebType_Row && p.columns.count == 0) return false;
        if (p.headings.count != p.columns.count) return false;
        if (p.columns.count > ParamColumns::kMax || p.defaults.count > ParamDefaults::kMax)
            return false;
        if (p.type == ZebType_Row && p.defaults.count != 0) return false;
        for (double v : p.defaults.View())
            if (p.type == ZebType_Bool && v != 0.0 && v != 1.0) return false;
    }
    return true;
}
}  // namespace rule_params_detail

struct FastenerClearanceParams {
    using enum ParamCell;
    // Rows of (name, Min, Max) for condition A and for condition B.
    static constexpr ParamSpec kConditionA{
        .id = 2052,
        .type = ZebType_Row,
        .op = ZebOp_GreaterEqual,
        .kind = ZebParam_Table,
        .columns = {Text, Length, Length},
        .label = IDS_CLEARANCE_A_HEADING,
        .headings = {{IDS_FASTENER_NAME_HEADING}, {.fixed = L"Min"}, {.fixed = L"Max"}}};
    static constexpr ParamSpec kConditionB{.id = 9450,
                                           .type = ZebType_Row,
                                           .op = ZebOp_GreaterEqual,
                                           .kind = ZebParam_Table,
                                           .columns = kConditionA.columns,
                                           .label = IDS_CLEARANCE_B_HEADING,
                                           .headings = kConditionA.headings};
    static constexpr std::array kAll{kConditionA, kConditionB};
};

struct FastenerEngagementParams {
    using enum ParamCell;
    // Rows of (name, engagement length).
    static constexpr ParamSpec kLengths{
        .id = 2053,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = {Text, Length},
        .label = IDS_ENGAGEMENT_LENGTH_HEADING,
        .headings = {{IDS_FASTENER_NAME_HEADING}, {IDS_ENGAGEMENT_LENGTH_HEADING}}};
    static constexpr std::array kAll{kLengths};
};

struct RecommThreadParams {
    using enum ParamCell;
    // Rows of two thread types that may be connected, and of two thread sizes.
    static constexpr ParamSpec kThreadPairs{
        .id = 7072,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = {Text, Text},
        .label = IDS_RULE_RECOMM_THREAD_TYPES,
        .headings = {{IDS_THREAD_TYPE_1_HEADING}, {IDS_THREAD_TYPE_2_HEADING}}};
    static constexpr ParamSpec kThreadSizes{
        .id = 9148,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = kThreadPairs.columns,
        .label = IDS_THREAD_SIZES_CHECK,
        .switchedBy = ParamSwitch::Criteria,
        .headings = {{IDS_THREAD_SIZE_HEADING}, {IDS_THREAD_PITCH_HEADING}}};
    static constexpr std::array kAll{kThreadPairs, kThreadSizes};
};

struct FastenerAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 8019,
                                       .type = ZebType_Double,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Value,
                                       .defaults = {0.0},
                                       .label = IDS_ALIGNMENT_LIMIT_LABEL,
                                       .unit = ParamUnit::Length};
    // Only its enabled status is used.
    static constexpr ParamSpec kSwitch{.id = 8076,
                                       .type = ZebType_Bool,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Value,
                                       .enabled = false,
                                       .label = IDS_ALIGNMENT_PARALLEL_CHECK,
                                       .switchedBy = ParamSwitch::Enabled};
    static constexpr std::array kAll{kOffset, kSwitch};
};

struct FastenerAccessibilityParams {
    static constexpr ParamSpec kToolClearance{.id = 6080,
                                              .type = ZebType_Double,
                                              .op = ZebOp_GreaterEqual,
                                              .kind = ZebParam_Value,
                                              .defaults = {1.2},
                                              .label = IDS_TOOL_CLEARANCE_LABEL,
                                              .unit = ParamUnit::Length};
    static constexpr ParamSpec kSecondClearance{.id = 6092,
                                                .type = ZebType_Double,
                                                .op = ZebOp_GreaterEqual,
                                                .kind = ZebParam_Value,
                                                .defaults = {2.5},
                                                .label = IDS_SECOND_TOOL_CLEARANCE_CHECK,
                                                .unit = ParamUnit::Length};
    // Switches the second clearance on (1.0).
    static constexpr ParamSpec kSecondSwitch{.id = 6093,
                                             .type = ZebType_Double,
                                             .op = ZebOp_Equal,
                                             .kind = ZebParam_Value,
                                             .defaults = {0.0},
                                             .label = IDS_SECOND_TOOL_CLEARANCE_CHECK,
                                             .switchedBy = ParamSwitch::FirstValue};
    static constexpr std::array kAll{kToolClearance, kSecondClearance, kSecondSwitch};
};

struct BoltScrewParams {
    // The two switches and the choice hold no value; their enabled status is the setting.
    static constexpr ParamSpec kSameHead{.id = 9024,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Value,
                                         .label = IDS_SAME_HEAD_TYPE,
                                         .switchedBy = ParamSwitch::Enabled};
    static constexpr ParamSpec kSameMaterial{.id = 9025,
                                             .type = ZebType_Bool,
                                             .op = ZebOp_Equal,
                                             .kind = ZebParam_Value,
                                             .label = IDS_SAME_MATERIAL,
                                             .switchedBy = ParamSwitch::Enabled};
    static constexpr ParamSpec kLengthStep{.id = 9026,
                                           .type = ZebType_Double,
                                           .op = ZebOp_GreaterEqual,
                                           .kind = ZebParam_Value,
                                           .criteria = true,
                                           .defaults = {4.0},
                                           .label = IDS_LENGTH_STEP_CHECK,
                                           .unit = ParamUnit::Length,
                                           .switchedBy = ParamSwitch::Criteria};
    static constexpr ParamSpec kDiameterStep{.id = 9027,
                                             .type = ZebType_Double,
                                             .op = ZebOp_GreaterEqual,
                                             .kind = ZebParam_Value,
                                             .criteria = true,
                                             .defaults = {2.0},
                                             .label = IDS_DIAMETER_STEP_CHECK,
                                             .unit = ParamUnit::Length,
                                             .switchedBy = ParamSwitch::Criteria};
    static constexpr ParamSpec kTogether{.id = 9603,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Value,
                                         .label = IDS_BOLTS_SCREWS_TOGETHER,
                                         .switchedBy = ParamSwitch::Enabled};
    static constexpr std::array kAll{kSameHead, kSameMaterial, kLengthStep, kDiameterStep,
                                     kTogether};
};

struct HoleAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 7800,
                                       .type = ZebType_Double,
                                       .op = ZebOp_LessEqual,
                                       .kind = ZebParam_Value,
                                       .criteria = true,
                                       .defaults = {0.5},
                                       .label = IDS_HOLE_OFFSET_LABEL,
                                       .unit = ParamUnit::Length};
    // Through holes and blind holes: checked when their criteria status is on.
    static constexpr ParamSpec kThroughHoles{.id = 7092,
                                             .type = ZebType_Double,
                                             .op = ZebOp_LessEqual,
                                             .kind = ZebParam_Value,
                                             .label = IDS_HOLE_CHECK_THROUGH,
                                             .switchedBy = ParamSwitch::Enabled};
    static constexpr ParamSpec kBlindHoles{.id = 7094,
                                           .type = ZebType_Double,
                                           .op = ZebOp_LessEqual,
                                           .kind = ZebParam_Value,
                                           .label = IDS_HOLE_CHECK_BLIND,
                                           .switchedBy = ParamSwitch::Enabled};
    // The allowed difference of diameters.
    static constexpr ParamSpec kTolerance{.id = 9084,
                                          .type = ZebType_Double,
                                          .op = ZebOp_LessEqual,
                                          .kind = ZebParam_Value,
                                          .defaults = {0.1},
                                          .label = IDS_HOLE_SECOND_TOLERANCE_LABEL,
                                          .unit = ParamUnit::Length};
    static constexpr std::array kAll{kOffset, kThroughHoles, kBlindHoles, kTolerance};
};

struct SlotAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 8004,
                                       .type = ZebType_Double,
                                       .op = ZebOp_LessEqual,
                                       .kind = ZebParam_Value,
                                       .defaults = {0.5},
                                       .label = IDS_SLOT_OFFSET_LABEL,
                                       .unit = ParamUnit::Length};
    // The offset between slot ends, switched by its criteria status.
    static constexpr ParamSpec kSecondOffset{.id = 9503,
                                             .type = ZebType_Double,
                                             .op = ZebOp_LessEqual,
                                             .kind = ZebParam_Value,
                                             .defaults = {0.5},
                                             .label = IDS_SLOT_SECOND_OFFSET_CHECK,
                                             .unit = ParamUnit::Length,
                                             .switchedBy = ParamSwitch::Enabled};
    static constexpr ParamSpec kDirection{.id = 9606,
                                          .type = ZebType_Bool,
                                          .op = ZebOp_Equal,
                                          .kind = ZebParam_Plain,
                                          .defaults = {0.0},
                                          .label = IDS_SLOT_CHECK_DIRECTION,
                                          .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kWidth{.id = 9608,
                                      .type = ZebType_Bool,
                                      .op = ZebOp_Equal,
                                      .kind = ZebParam_Plain,
                                      .defaults = {0.0},
                                      .label = IDS_SLOT_CHECK_WIDTH,
                                      .switchedBy = ParamSwitch::FirstValue};
    static constexpr std::array kAll{kOffset, kSecondOffset, kDirection, kWidth};
};

struct InterferenceParams {
    using enum ParamCell;
    static constexpr ParamSpec kCheckAll{.id = 6067,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Switch,
                                         .defaults = {1.0},
                                         .label = IDS_CHECK_ALL_COMPONENTS,
                                         .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kFirstOption{.id = 6069,
                                            .type = ZebType_Bool,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Switch,
                                            .defaults = {1.0},
                                            .label = IDS_INTERFERENCE_SAME_SUBASSEMBLY,
                                            .switchedBy = ParamSwitch::FirstValue};
    // The listed components are groups rather than pairs.
    static constexpr ParamSpec kGroups{.id = 8073,
                                       .type = ZebType_Bool,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Switch,
                                       .defaults = {0.0},
                                       .label = IDS_COMPONENT_GROUPS,
                                       .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kSecondOption{.id = 6070,
                                             .type = ZebType_Bool,
                                             .op = ZebOp_Equal,
                                             .kind = ZebParam_Switch,
                                             .defaults = {0.0},
                                             .label = IDS_INTERFERENCE_TOUCHING,
                                             .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kVolumeLimit{.id = 8978,
                                            .type = ZebType_Double,
                                            .op = ZebOp_LessEqual,
                                            .kind = ZebParam_Value,
                                            .enabled = false,
                                            .label = IDS_INTERFERENCE_VOLUME_CHECK,
                                            .unit = ParamUnit::Volume,
                                            .switchedBy = ParamSwitch::Enabled};
    static constexpr ParamSpec kComponents{
        .id = 6068,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = {Text, Text},
        .label = IDS_TAB_COMPONENTS_TO_CHECK,
        .headings = {{IDS_COMPONENT_1_HEADING}, {IDS_COMPONENT_2_HEADING}}};
    static constexpr std::array kAll{kCheckAll,     kFirstOption, kGroups,
                                     kSecondOption, kVolumeLimit, kComponents};
};

struct MinClearanceParams {
    using enum ParamCell;
    // (switch, general clearance).
    static constexpr ParamSpec kGeneral{.id = 2062,
                                        .type = ZebType_Double,
                                        .op = ZebOp_GreaterEqual,
                                        .kind = ZebParam_Value,
                                        .defaults = {1.0, 0.1},
                                        .label = IDS_GENERAL_CLEARANCE_CHECK,
                                        .unit = ParamUnit::Length,
                                        .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kPairsSwitch{.id = 2049,
                                            .type = ZebType_Double,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Value,
                                            .defaults = {0.0},
                                            .label = IDS_PART_PAIRS_CHECK,
                                            .switchedBy = ParamSwitch::FirstValue};
    // Rows of (part, part, clearance).
    static constexpr ParamSpec kPairs{
        .id = 2048,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = {Text, Text, Length},
        .label = IDS_PART_PAIRS_CHECK,
        .headings = {
            {IDS_COMPONENT_1_HEADING}, {IDS_COMPONENT_2_HEADING}, {IDS_CLEARANCE_HEADING}}};
    // The dialog's option pair: 1.0 the first option (same subassembly), 0.0 the second.
    static constexpr ParamSpec kSameSubassembly{.id = 2063,
                                                .type = ZebType_Double,
                                                .op = ZebOp_GreaterEqual,
                                                .kind = ZebParam_Value,
                                                .defaults = {1.0},
                                                .label = IDS_CLEARANCE_SAME_SUBASSEMBLY,
                                                .switchedBy = ParamSwitch::FirstValue};
    static constexpr ParamSpec kTouching{.id = 6072,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Switch,
                                         .defaults = {0.0},
                                         .label = IDS_REPORT_TOUCHING_PARTS,
                                         .switchedBy = ParamSwitch::FirstValue};
    // Stored but not shown.
    static constexpr ParamSpec kHiddenSwitchA{.id = 6073,
                                              .type = ZebType_Bool,
                                              .op = ZebOp_Equal,
                                              .kind = ZebParam_Switch,
                                              .defaults = {1.0}};
    static constexpr ParamSpec kHiddenSwitchB{.id = 8095,
                                              .type = ZebType_Bool,
                                              .op = ZebOp_Equal,
                                              .kind = ZebParam_Switch,
                                              .defaults = {0.0}};
    static constexpr std::array kAll{kGeneral,  kPairsSwitch,   kPairs,        kSameSubassembly,
                                     kTouching, kHiddenSwitchA, kHiddenSwitchB};
};

struct ContactMaterialParams {
    using enum ParamCell;
    // Rows of two materials that must not touch.
    static constexpr ParamSpec kPairs{
        .id = 7065,
        .type = ZebType_Row,
        .op = ZebOp_Equal,
        .kind = ZebParam_Table,
        .columns = {Text, Text},
        .label = IDS_RULE_CONTACT_MATERIAL,
        .headings = {{IDS_MATERIALS_SIDE_1_HEADING}, {IDS_MATERIALS_SIDE_2_HEADING}}};
    // The contact distance, switched by its criteria status.
    static constexpr ParamSpec kDistance{.id = 7051,
                                         .type = ZebType_Double,
                                         .op = ZebOp_Less,
                                         .kind = ZebParam_Value,
                                         .defaults = {0.1},
                                         .label = IDS_CONTACT_DISTANCE_CHECK,
                                         .unit = ParamUnit::Length,
                                         .switchedBy = ParamSwitch::Enabled};
    static constexpr std::array kAll{kPairs, kDistance};
};

struct PrefCompParams {
    using enum ParamCell;
    // One encoded table text of (description, preferred, alternative, replaced).
    static constexpr ParamSpec kTable{.id = 7002,
                                      .type = ZebType_String,
                                      .op = ZebOp_GreaterEqual,
                                      .kind = ZebParam_Value,
                                      .defaults = {0.0},
                                      .columns = {Text, Text, Text, Text},
                                      .label = IDS_RULE_PREFERRED_COMPONENTS,
                                      .headings = {{IDS_DESCRIPTION_HEADING},
                                                   {IDS_PREFERRED_COMPONENT_HEADING},
                                                   {IDS_ALTERNATIVE_COMPONENT_HEADING},
                                                   {IDS_COMPONENT_TO_REPLACE_HEADING}}};
    static constexpr std::array kAll{kTable};
};

static_assert(rule_params_detail::WellFormed(FastenerClearanceParams::kAll));
static_assert(rule_params_detail::WellFormed(FastenerEngagementParams::kAll));
static_assert(rule_params_detail::WellFormed(RecommThreadParams::kAll));
static_assert(rule_params_detail::WellFormed(FastenerAlignmentParams::kAll));
static_assert(rule_params_detail::WellFormed(FastenerAccessibilityParams::kAll));
static_assert(rule_params_detail::WellFormed(BoltScrewParams::kAll));
static_assert(rule_params_detail::WellFormed(HoleAlignmentParams::kAll));
static_assert(rule_params_detail::WellFormed(SlotAlignmentParams::kAll));
static_assert(rule_params_detail::WellFormed(InterferenceParams::kAll));
static_assert(rule_params_detail::WellFormed(MinClearanceParams::kAll));
static_assert(rule_params_detail::WellFormed(ContactMaterialParams::kAll));
static_assert(rule_params_detail::WellFormed(PrefCompParams::kAll));

// Each rule's parameters by the string of its name, whose English text is the rule's stored name.
struct RuleParamList {
    ZebStringId name;
    std::span<const ParamSpec> params;
};
inline constexpr std::array<RuleParamList, 12> kRuleParamLists{{
    {IDS_RULE_FASTENER_CLEARANCE, FastenerClearanceParams::kAll},
    {IDS_RULE_FASTENER_ENGAGEMENT_LENGTH, FastenerEngagementParams::kAll},
    {IDS_RULE_RECOMM_THREAD_TYPES, RecommThreadParams::kAll},
    {IDS_RULE_FASTENER_ALIGNMENT, FastenerAlignmentParams::kAll},
    {IDS_RULE_FASTENER_ACCESSIBILITY, FastenerAccessibilityParams::kAll},
    {IDS_RULE_BOLT_SCREW_RATIONALIZATION, BoltScrewParams::kAll},
    {IDS_RULE_HOLE_ALIGNMENT, HoleAlignmentParams::kAll},
    {IDS_RULE_SLOT_ALIGNMENT, SlotAlignmentParams::kAll},
    {IDS_RULE_INTERFERENCE_DETECTION, InterferenceParams::kAll},
    {IDS_RULE_MIN_CLEARANCE, MinClearanceParams::kAll},
    {IDS_RULE_CONTACT_MATERIAL, ContactMaterialParams::kAll},
    {IDS_RULE_PREFERRED_COMPONENTS, PrefCompParams::kAll},
}};

// The parameter `id` of `params`; null when it has none.
constexpr const ParamSpec* FindParamSpec(std::span<const ParamSpec> params, long id) {
    for (const ParamSpec& p : params)
        if (p.id == id) return &p;
    return nullptr;
}
