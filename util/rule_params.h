#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>

#include "framework/zeb_types.h"

// The parameters of every rule, each written once: what a rule's InitParameters creates and in
// which order, the ids its dialog, the table export and the tests find them by, and the cells of
// its tables. Plain data with no state, so every layer that needs a fact reads it here.

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
    static constexpr ParamSpec kConditionA{.id = 2052,
                                           .type = ZebType_Row,
                                           .op = ZebOp_GreaterEqual,
                                           .kind = ZebParam_Table,
                                           .columns = {Text, Length, Length}};
    static constexpr ParamSpec kConditionB{.id = 9450,
                                           .type = ZebType_Row,
                                           .op = ZebOp_GreaterEqual,
                                           .kind = ZebParam_Table,
                                           .columns = kConditionA.columns};
    static constexpr std::array kAll{kConditionA, kConditionB};
};

struct FastenerEngagementParams {
    using enum ParamCell;
    // Rows of (name, engagement length).
    static constexpr ParamSpec kLengths{.id = 2053,
                                        .type = ZebType_Row,
                                        .op = ZebOp_Equal,
                                        .kind = ZebParam_Table,
                                        .columns = {Text, Length}};
    static constexpr std::array kAll{kLengths};
};

struct RecommThreadParams {
    using enum ParamCell;
    // Rows of two thread types that may be connected, and of two thread sizes.
    static constexpr ParamSpec kThreadPairs{.id = 7072,
                                            .type = ZebType_Row,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Table,
                                            .columns = {Text, Text}};
    static constexpr ParamSpec kThreadSizes{.id = 9148,
                                            .type = ZebType_Row,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Table,
                                            .columns = kThreadPairs.columns};
    static constexpr std::array kAll{kThreadPairs, kThreadSizes};
};

struct FastenerAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 8019,
                                       .type = ZebType_Double,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Value,
                                       .defaults = {0.0}};
    // Only its enabled status is used.
    static constexpr ParamSpec kSwitch{.id = 8076,
                                       .type = ZebType_Bool,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Value,
                                       .enabled = false};
    static constexpr std::array kAll{kOffset, kSwitch};
};

struct FastenerAccessibilityParams {
    static constexpr ParamSpec kToolClearance{.id = 6080,
                                              .type = ZebType_Double,
                                              .op = ZebOp_GreaterEqual,
                                              .kind = ZebParam_Value,
                                              .defaults = {1.2}};
    static constexpr ParamSpec kSecondClearance{.id = 6092,
                                                .type = ZebType_Double,
                                                .op = ZebOp_GreaterEqual,
                                                .kind = ZebParam_Value,
                                                .defaults = {2.5}};
    // Switches the second clearance on (1.0).
    static constexpr ParamSpec kSecondSwitch{.id = 6093,
                                             .type = ZebType_Double,
                                             .op = ZebOp_Equal,
                                             .kind = ZebParam_Value,
                                             .defaults = {0.0}};
    static constexpr std::array kAll{kToolClearance, kSecondClearance, kSecondSwitch};
};

struct BoltScrewParams {
    // The two switches and the choice hold no value; their enabled status is the setting.
    static constexpr ParamSpec kSameHead{
        .id = 9024, .type = ZebType_Bool, .op = ZebOp_Equal, .kind = ZebParam_Value};
    static constexpr ParamSpec kSameMaterial{
        .id = 9025, .type = ZebType_Bool, .op = ZebOp_Equal, .kind = ZebParam_Value};
    static constexpr ParamSpec kLengthStep{.id = 9026,
                                           .type = ZebType_Double,
                                           .op = ZebOp_GreaterEqual,
                                           .kind = ZebParam_Value,
                                           .criteria = true,
                                           .defaults = {4.0}};
    static constexpr ParamSpec kDiameterStep{.id = 9027,
                                             .type = ZebType_Double,
                                             .op = ZebOp_GreaterEqual,
                                             .kind = ZebParam_Value,
                                             .criteria = true,
                                             .defaults = {2.0}};
    static constexpr ParamSpec kTogether{
        .id = 9603, .type = ZebType_Bool, .op = ZebOp_Equal, .kind = ZebParam_Value};
    static constexpr std::array kAll{kSameHead, kSameMaterial, kLengthStep, kDiameterStep,
                                     kTogether};
};

struct HoleAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 7800,
                                       .type = ZebType_Double,
                                       .op = ZebOp_LessEqual,
                                       .kind = ZebParam_Value,
                                       .criteria = true,
                                       .defaults = {0.5}};
    // Through holes and blind holes: checked when their criteria status is on.
    static constexpr ParamSpec kThroughHoles{
        .id = 7092, .type = ZebType_Double, .op = ZebOp_LessEqual, .kind = ZebParam_Value};
    static constexpr ParamSpec kBlindHoles{
        .id = 7094, .type = ZebType_Double, .op = ZebOp_LessEqual, .kind = ZebParam_Value};
    // The allowed difference of diameters.
    static constexpr ParamSpec kTolerance{.id = 9084,
                                          .type = ZebType_Double,
                                          .op = ZebOp_LessEqual,
                                          .kind = ZebParam_Value,
                                          .defaults = {0.1}};
    static constexpr std::array kAll{kOffset, kThroughHoles, kBlindHoles, kTolerance};
};

struct SlotAlignmentParams {
    static constexpr ParamSpec kOffset{.id = 8004,
                                       .type = ZebType_Double,
                                       .op = ZebOp_LessEqual,
                                       .kind = ZebParam_Value,
                                       .defaults = {0.5}};
    // The offset between slot ends, switched by its criteria status.
    static constexpr ParamSpec kSecondOffset{.id = 9503,
                                             .type = ZebType_Double,
                                             .op = ZebOp_LessEqual,
                                             .kind = ZebParam_Value,
                                             .defaults = {0.5}};
    static constexpr ParamSpec kDirection{.id = 9606,
                                          .type = ZebType_Bool,
                                          .op = ZebOp_Equal,
                                          .kind = ZebParam_Plain,
                                          .defaults = {0.0}};
    static constexpr ParamSpec kWidth{.id = 9608,
                                      .type = ZebType_Bool,
                                      .op = ZebOp_Equal,
                                      .kind = ZebParam_Plain,
                                      .defaults = {0.0}};
    static constexpr std::array kAll{kOffset, kSecondOffset, kDirection, kWidth};
};

struct InterferenceParams {
    using enum ParamCell;
    static constexpr ParamSpec kCheckAll{.id = 6067,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Switch,
                                         .defaults = {1.0}};
    static constexpr ParamSpec kFirstOption{.id = 6069,
                                            .type = ZebType_Bool,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Switch,
                                            .defaults = {1.0}};
    // The listed components are groups rather than pairs.
    static constexpr ParamSpec kGroups{.id = 8073,
                                       .type = ZebType_Bool,
                                       .op = ZebOp_Equal,
                                       .kind = ZebParam_Switch,
                                       .defaults = {0.0}};
    static constexpr ParamSpec kSecondOption{.id = 6070,
                                             .type = ZebType_Bool,
                                             .op = ZebOp_Equal,
                                             .kind = ZebParam_Switch,
                                             .defaults = {0.0}};
    static constexpr ParamSpec kVolumeLimit{.id = 8978,
                                            .type = ZebType_Double,
                                            .op = ZebOp_LessEqual,
                                            .kind = ZebParam_Value,
                                            .enabled = false};
    static constexpr ParamSpec kComponents{.id = 6068,
                                           .type = ZebType_Row,
                                           .op = ZebOp_Equal,
                                           .kind = ZebParam_Table,
                                           .columns = {Text, Text}};
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
                                        .defaults = {1.0, 0.1}};
    static constexpr ParamSpec kPairsSwitch{.id = 2049,
                                            .type = ZebType_Double,
                                            .op = ZebOp_Equal,
                                            .kind = ZebParam_Value,
                                            .defaults = {0.0}};
    // Rows of (part, part, clearance).
    static constexpr ParamSpec kPairs{.id = 2048,
                                      .type = ZebType_Row,
                                      .op = ZebOp_Equal,
                                      .kind = ZebParam_Table,
                                      .columns = {Text, Text, Length}};
    // The dialog's option pair: 1.0 the first option (same subassembly), 0.0 the second.
    static constexpr ParamSpec kSameSubassembly{.id = 2063,
                                                .type = ZebType_Double,
                                                .op = ZebOp_GreaterEqual,
                                                .kind = ZebParam_Value,
                                                .defaults = {1.0}};
    static constexpr ParamSpec kTouching{.id = 6072,
                                         .type = ZebType_Bool,
                                         .op = ZebOp_Equal,
                                         .kind = ZebParam_Switch,
                                         .defaults = {0.0}};
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
    static constexpr ParamSpec kPairs{.id = 7065,
                                      .type = ZebType_Row,
                                      .op = ZebOp_Equal,
                                      .kind = ZebParam_Table,
                                      .columns = {Text, Text}};
    // The contact distance, switched by its criteria status.
    static constexpr ParamSpec kDistance{.id = 7051,
                                         .type = ZebType_Double,
                                         .op = ZebOp_Less,
                                         .kind = ZebParam_Value,
                                         .defaults = {0.1}};
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
                                      .columns = {Text, Text, Text, Text}};
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
