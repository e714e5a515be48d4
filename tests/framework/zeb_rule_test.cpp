#include "framework/zeb_rule.h"

#include <gtest/gtest.h>

#include <memory>

namespace {
// A rule with one value parameter and one constraint with a parameter of its own.
struct SampleRule : CZebRule {
    SampleRule() {
        ParamArray.Add(
            CreateParamStorageObject(ZebType_Double, 10, ZebOp_Equal, ZebParam_Value, true, false));
        ParamArray[0]->As<double>()->values.Add(1.5);
        CZEBConstraint* constraint = CreateConstraintObject(ZebConstraint_Generic, L"limit", true);
        constraint->Params().Add(std::make_unique<CZebParamStorage>(ZebType_Int));
        Name = L"sample";
    }
};

double FirstValue(CZebRule& rule) { return rule.FindParameterInArray(10)->As<double>()->values[0]; }
}  // namespace

// Copies own their parameters and constraints: changing or destroying one leaves the other whole.
TEST(ZebRule, CopiesOwnTheirParametersAndConstraints) {
    auto original = std::make_unique<SampleRule>();
    SampleRule copied(*original);
    EXPECT_NE(copied.ParamArray[0], original->ParamArray[0]);
    EXPECT_NE(copied.ConstraintArray[0], original->ConstraintArray[0]);
    copied.FindParameterInArray(10)->As<double>()->values[0] = 7.0;
    EXPECT_EQ(FirstValue(*original), 1.5);

    SampleRule assigned;
    assigned.ParamArray.RemoveAll();
    assigned = *original;
    EXPECT_EQ(assigned.ParamArray.GetSize(), 1);
    EXPECT_NE(assigned.ParamArray[0], original->ParamArray[0]);
    const SampleRule& itself = assigned;  // self-assignment, written so that no compiler objects
    assigned = itself;
    EXPECT_EQ(FirstValue(assigned), 1.5);

    original.reset();
    EXPECT_EQ(FirstValue(copied), 7.0);
    EXPECT_EQ(FirstValue(assigned), 1.5);
    ASSERT_EQ(copied.ConstraintArray.GetSize(), 1);
    EXPECT_EQ(copied.ConstraintArray[0]->GetName(), L"limit");
    EXPECT_EQ(copied.ConstraintArray[0]->Params().GetSize(), 1);

    // Removing an element destroys it; the rest move down.
    copied.ParamArray.Add(copied.CreateParamStorageObject(ZebType_Bool, 11, ZebOp_Equal,
                                                          ZebParam_Value, true, false));
    copied.ParamArray.RemoveAt(0);
    ASSERT_EQ(copied.ParamArray.GetSize(), 1);
    EXPECT_EQ(copied.ParamArray[0]->GetParam()->id, 11);
}
