#pragma once

// The engine's side of the rules that need holes, slots and fasteners: what each rule's
// parameters ask, read from the rule the module made.
#include <vector>

#include "engine/feature_rules.h"

class CZebRule;

bool IsFeatureRule(CZebRule& rule);
// `toKernel` turns the rule's lengths into kernel millimetres. False when cancelled.
bool CheckFeatureRule(CZebRule& rule, double toKernel, FeatureCache& cache,
                      const CheckContext& context, std::vector<ZebFinding>& findings);
