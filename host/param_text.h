#pragma once

#include <cstdint>
#include <string>

class CZebParamStorage;

// A parameter's value type by name ("double", "row", ...); "unknown" for a code without one.
const char* ParamTypeName(int32_t type);
// The parameter's operator as its symbol ("<=", "RANGE"), else its code.
std::string ParamOperatorText(const CZebParamStorage& param);
// The parameter's values, separated by spaces; a table row as "[a | b | c]".
std::string ParamValuesText(const CZebParamStorage& param);
