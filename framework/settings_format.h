#pragma once

#include "framework/vantor_export.h"

class ZebXMLNode;

// The settings document of the framework: every "Rule" element sits under an element whose
// "Version" and "Unit" attributes tell how its values were written.

// The integer in the "Unit" attribute of the element's parent; 0 when the element is null, has
// no parent or the parent has no such attribute.
VANTOR_FW_API int ZebParentUnitAttribute(ZebXMLNode* node);
