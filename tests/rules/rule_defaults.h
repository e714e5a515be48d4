#pragma once

#include <gtest/gtest.h>

#include <span>

#include "rules/param_visit.h"
#include "tests/rules/rule_test_support.h"
#include "util/rule_params.h"

// What one parameter looks like right after construction.
struct ParamShape {
    long id;
    int32_t type;
    int32_t op;
    int32_t kind;
    bool enabled;
};

// Checks ids, order and codes of every parameter, and the rule record's common fields.
inline void ExpectShape(CZebRule& rule, const std::vector<ParamShape>& expected, ZebStringId nameId,
                        int32_t severity, int32_t imageId) {
    ASSERT_EQ(rule.ParamArray.GetSize(), static_cast<int32_t>(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        const CZebParamStorage* p = rule.ParamArray[static_cast<int32_t>(i)];
        const ZebTypedParamBase* base = p->GetParam();
        SCOPED_TRACE("parameter " + std::to_string(expected[i].id));
        EXPECT_EQ(base->id, expected[i].id);
        EXPECT_EQ(p->GetType(), expected[i].type);
        EXPECT_EQ(base->op, expected[i].op);
        EXPECT_EQ(base->kind, expected[i].kind);
        EXPECT_EQ(base->status, expected[i].enabled);
    }
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(rule.Name, app->LoadDefaultString(nameId));
    EXPECT_FALSE(rule.Name.empty());
    EXPECT_EQ(rule.DisplayName, LoadLocalizedString(nameId));
    EXPECT_EQ(rule.Module, L"ZEBAssemblyRulesValidator");
    EXPECT_EQ(rule.EngineList, std::list<std::wstring>{L"ZEBAssemblyEngine"});
    EXPECT_EQ(rule.Severity, severity);
    EXPECT_EQ(rule.Status, 0);
    EXPECT_EQ(rule.DialogImageId, imageId);
    EXPECT_EQ(rule.RuleCategory, L"10");
}

// Checks that a new rule holds exactly its parameter table: what the dialogs, the table export
// and the settings read it by. Text defaults are empty texts; switches are 0 or 1.
inline void ExpectTable(CZebRule& rule, std::span<const ParamSpec> table) {
    ASSERT_EQ(rule.ParamArray.GetSize(), static_cast<int32_t>(table.size()));
    for (size_t i = 0; i < table.size(); ++i) {
        const ParamSpec& spec = table[i];
        CZebParamStorage* p = rule.ParamArray[static_cast<int32_t>(i)];
        const ZebTypedParamBase* base = p->GetParam();
        SCOPED_TRACE("parameter " + std::to_string(spec.id));
        EXPECT_EQ(base->id, spec.id);
        EXPECT_EQ(p->GetType(), spec.type);
        EXPECT_EQ(base->op, spec.op);
        EXPECT_EQ(base->kind, spec.kind);
        EXPECT_EQ(base->status, spec.enabled);
        EXPECT_EQ(base->criteriaStatus, spec.criteria);
        std::vector<double> held;
        const bool known = VisitTyped(*p, [&held]<class T>(const ZebTypedParam<T>& typed) {
            for (const T& v : typed.values) {
                if constexpr (std::is_arithmetic_v<T>)
                    held.push_back(static_cast<double>(v));
                else if constexpr (std::is_same_v<T, std::wstring>)
                    held.push_back(v.empty() ? 0.0 : -1.0);
                else
                    held.push_back(-1.0);
            }
        });
        EXPECT_TRUE(known);
        const std::span<const double> defaults = spec.defaults.View();
        EXPECT_EQ(held, std::vector<double>(defaults.begin(), defaults.end()));
    }
}
