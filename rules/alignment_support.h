#pragma once

#include <string>

#include "resources/string_ids.h"

class CZebRule;
class ZebXMLNode;

// Shared by the hole and slot alignment rules.

// The "Version" attribute of the element's parent with every 'v' removed, read as a decimal;
// 0 when there is no parent, no attribute or no number.
double ParentVersionWithoutV(ZebXMLNode* ruleNode);
// True when the parent's "Version" text holds a 'v' at all.
bool ParentVersionHasV(ZebXMLNode* ruleNode);

// "SelectedDatabase" and "DBCategory" on an exported "Rule" element, from the module's first
// database module and the rule's category (English default when empty).
void AddDatabaseAttributes(CZebRule& rule, ZebXMLNode* ruleNode);

// The summary: string `formatId` with the operator symbol and first value of parameter
// `offsetId` and the text of the rule's length unit. Left as it is without that parameter.
void RebuildOffsetSummary(CZebRule& rule, long offsetId, ZebStringId formatId);
