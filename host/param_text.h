#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class CZebParamStorage;

// A parameter's value type by name ("double", "row", ...); "unknown" for a code without one.
const char* ParamTypeName(int32_t type);
// The parameter's operator as its symbol ("<=", "RANGE"), else its code.
std::string ParamOperatorText(const CZebParamStorage& param);
// The parameter's values from the `from`th on, separated by spaces; a table row as "[a | b | c]".
std::string ParamValuesText(const CZebParamStorage& param, size_t from = 0);
