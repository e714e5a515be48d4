#pragma once

class ZebXMLDocument;

// The framework's settings document, handed over through SetXMLDoc. Rules create their XML
// nodes in it; null until the framework has handed one over. The framework owns it.
ZebXMLDocument* GetSettingsDocument();
void SetSettingsDocument(ZebXMLDocument* doc);
