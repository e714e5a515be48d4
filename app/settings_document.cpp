#include "app/settings_document.h"

namespace {
ZebXMLDocument* g_settingsDocument = nullptr;
}

ZebXMLDocument* GetSettingsDocument() { return g_settingsDocument; }
void SetSettingsDocument(ZebXMLDocument* doc) { g_settingsDocument = doc; }
