#pragma once

#include <string>

#include "framework/param_storage.h"

class ZebXMLDocument;
class ZebXMLNode;

// The "Parameter" element of one parameter, for every value type 1 to 8.

// A detached "Parameter" element created in `doc`; the caller deletes the handle. A "RANGE"
// parameter whose value count is neither a multiple of 2 nor of 3 loses its values first.
// Null for a value type outside 1 to 8.
ZebXMLNode* WriteParameterXML(ZebXMLDocument* doc, CZebParamStorage& param);

// Reads the first "Parameter" child of `ruleNode` whose "Type" is the parameter's id; values
// are appended to the ones the parameter holds. False for a value type outside 1 to 8.
bool ReadParameterXML(ZebXMLNode* ruleNode, CZebParamStorage& param);

// Decimal and fixed-point texts of the settings XML, always with '.' whatever the locale.
std::wstring XmlInt(long value);
std::wstring XmlDouble(double value);
// Leading decimal integer after blanks; false when there is none.
bool ParseXmlInt(const std::wstring& text, long& value);
// Stream extraction of a double under the classic locale; 0 when the text holds none.
double ParseXmlDouble(const std::wstring& text);
