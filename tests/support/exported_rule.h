#pragma once

#include <memory>
#include <string>

#include "app/settings_document.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"

// The rule as a settings document would hold it: its exported element under "AssemblyRules".
inline std::string ExportedText(CZebRule& rule) {
    ZebXMLDocument doc;
    SetSettingsDocument(&doc);
    std::unique_ptr<ZebXMLNode> root(doc.CreateDocumentElement(L"AssemblyRules"));
    std::unique_ptr<ZebXMLNode> exported(rule.ExportToXML());
    root->AppendNode(exported.get());
    SetSettingsDocument(nullptr);
    return doc.GetXML();
}
