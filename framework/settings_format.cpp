#include "framework/settings_format.h"

#include <cwchar>
#include <memory>
#include <string>

#include "framework/zeb_xml.h"

int ZebParentUnitAttribute(ZebXMLNode* node) {
    if (!node) return 0;
    std::unique_ptr<ZebXMLNode> parent(node->GetParentNode());
    std::wstring text;
    if (!parent || !parent->GetAttributeValue(L"Unit", text)) return 0;
    return static_cast<int>(std::wcstol(text.c_str(), nullptr, 10));
}
