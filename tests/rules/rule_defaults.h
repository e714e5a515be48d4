#pragma once

#include <gtest/gtest.h>

#include "tests/rules/rule_test_support.h"

// What one parameter looks like right after construction.
struct ParamShape {
    long id;
    int32_t type;
    int32_t op;
    int32_t kind;
    bool enabled;
};

// Checks ids, order and codes of every parameter, and the rule record's common fields.
inline void ExpectShape(CZebRule& rule, const std::vector<ParamShape>& expected, ZebStringId nameId, int32_t severity,
                        int32_t imageId) {
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
