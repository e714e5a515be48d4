#pragma once

// How the checks write their findings.
#include <cmath>
#include <cwchar>
#include <string>
#include <vector>

#include "engine/rule_checks.h"

// Six significant digits, and no "-0" for a value that is zero but for rounding.
inline std::wstring Number(double value) {
    wchar_t text[64];
    std::swprintf(text, 64, L"%.6g", std::fabs(value) < 5e-13 ? 0.0 : value);
    return text;
}

inline ZebFinding Finding(const CheckContext& context, std::vector<std::wstring> parts,
                          std::wstring message) {
    ZebFinding finding;
    finding.rule = context.rule;
    finding.severity = context.severity;
    finding.parts = std::move(parts);
    finding.message = std::move(message);
    return finding;
}
