#pragma once

#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "framework/zeb_rule.h"
#include "resources/string_ids.h"
#include "util/rule_params.h"

class ZebXMLNode;

// What a rule's constructor puts into the rule record.
struct RuleIdentity {
    ZebStringId nameId;
    ZebStringId summaryId;
    int32_t severity;
    int32_t dialogImageId;
    // Texts the loaded summary is formatted with; none formats nothing away but "%%".
    std::vector<std::wstring> summaryArgs = {};
    // Use the loaded summary as it is, without formatting.
    bool summaryAsLoaded = false;
    // The bolt and screw rule leaves Status at the framework's default.
    bool setStatus = true;
};

// Fills the record of a newly constructed rule when the application object exists; without
// it the record stays empty. The rule then creates its parameters itself.
void FillRuleRecord(CZebRule& rule, const RuleIdentity& identity);

// Creates a parameter and appends it to the rule's list.
CZebParamStorage* AddParameter(CZebRule& rule, Type_e type, long id, ZebOperator_e op,
                               ZebParamType_e kind, bool enabled);

// Creates the parameters of a rule's table in its order, each holding its defaults.
void AddParameters(CZebRule& rule, std::span<const ParamSpec> specs);

// The typed record of parameter `id`; null when the rule lacks it or it holds other values.
template <class T>
ZebTypedParam<T>* FindTyped(CZebRule& rule, long id) {
    CZebParamStorage* p = rule.FindParameterInArray(id);
    return p ? p->As<T>() : nullptr;
}

// A switch stored as a double is on when its whole part is not zero. The value comes from the
// file, so it is compared as a double: a huge value or NaN has no whole part in any integer type.
inline bool SwitchIsOn(double value) { return std::fabs(value) >= 1.0; }

// Removes the first value of parameter `id` when it has one.
void RemoveFirstValue(CZebRule& rule, long id);
// Removes every value (or row) of parameter `id`.
void RemoveAllValues(CZebRule& rule, long id);

// The common writer: a detached "Rule" element in the settings document with the record's
// attributes, one "Parameter" element per written parameter and the constraints. Null without
// a settings document.
ZebXMLNode* ExportRuleXML(CZebRule* rule);
// The common reader: record attributes, then every parameter from its "Parameter" element.
void ImportRuleXML(CZebRule* rule, ZebXMLNode* node);

// Text after the last '\' or '/'; the whole text when there is neither.
std::wstring FileNamePart(const std::wstring& path);
