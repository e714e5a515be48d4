#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "framework/zeb_row.h"

// Value type of a parameter's value list.
enum Type_e : int32_t {
    ZebType_Int = 1,
    ZebType_Long = 2,
    ZebType_Bool = 3,
    ZebType_Double = 4,
    ZebType_String = 5,
    ZebType_Opaque = 6,
    ZebType_Unsigned = 7,
    ZebType_Row = 8,
};

// Comparison operator of a parameter. 0 and 12 keep a parameter out of the settings XML.
enum ZebOperator_e : int32_t {
    ZebOp_None = 0,
    ZebOp_Range = 1,
    ZebOp_Equal = 3,
    ZebOp_Less = 5,
    ZebOp_Greater = 6,
    ZebOp_GreaterEqual = 7,
    ZebOp_LessEqual = 8,
    ZebOp_NotWritten = 12,
};

// Kind of a parameter; 24 is a table whose values are rows written as attributes.
enum ZebParamType_e : int32_t {
    ZebParam_Plain = 0,
    ZebParam_Value = 1,
    ZebParam_Switch = 22,
    ZebParam_Table = 24,
};

enum ZEBRuleCategory_e : int32_t {
    ZebCategory_Assembly = 10,
};

enum ZEBConstraintType_e : int32_t {
    ZebConstraint_Generic = 0,
};

// The pair of unit codes a rule's values are expressed in; the length unit comes first.
struct UnitSetting {
    int32_t LengthUnit = 0;
    int32_t SecondUnit = 0;
};

// Opaque framework value; the module never decodes it.
using ZebOpaque = void*;
