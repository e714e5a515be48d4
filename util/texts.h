#pragma once

#include <list>
#include <string>

class ZebXMLNode;

// Texts of operators, severities and units; number texts are in number_text.h.

// Operators: "RANGE", "=", "<", ">", ">=", "<=".
int OperatorFromText(const std::wstring& text);
std::wstring OperatorToText(int code);
// As OperatorToText, without "RANGE".
std::wstring OperatorSymbol(int code);

// Severities 1 to 5 and their localized names.
int SeverityComboIndex(int code);
int SeverityFromName(const std::wstring& name);
void FillSeverityNames(std::list<std::wstring>& names);

// Localized text of a length unit code; empty for codes without one.
std::wstring GetUnitText(int code);
// The "Unit" attribute of the node's parent element; 0 when there is none.
int GetUnitAttribute(ZebXMLNode* node);
