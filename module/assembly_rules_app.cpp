#include "module/assembly_rules_app.h"

namespace {
// Made on first use: the module's load-time start-up may run before this file's globals are
// constructed, and must not see its work undone by them afterwards.
CZEBAssemblyRulesApp& TheApp() {
    static CZEBAssemblyRulesApp app;
    return app;
}
CZEBAssemblyRulesApp* g_app = nullptr;

void FreeLibrary(CZebResourceLibrary*& library) {
    if (!library) return;
    if (ZebGetResourceHandle() == library) ZebSetResourceHandle(nullptr);
    delete library;
    library = nullptr;
}
}  // namespace

bool CZEBAssemblyRulesApp::InitInstance() {
    m_resourceFolder = CLocationHelper::GetLocalizedResPath();
    m_localizedLibrary = CZebResourceLibrary::Load(m_resourceFolder + L"/" + kResourceFileName);
    const std::wstring defaultFolder = CLocationHelper::GetDefaultResPath();
    if (!m_localizedLibrary) {
        m_resourceFolder = defaultFolder;
        m_localizedLibrary = CZebResourceLibrary::Load(defaultFolder + L"/" + kResourceFileName);
    }
    m_defaultLibrary = CZebResourceLibrary::Load(defaultFolder + L"/" + kResourceFileName);
    m_helpFilePath = m_resourceFolder + L"/vantor.chm";
    if (m_localizedLibrary) ZebSetResourceHandle(m_localizedLibrary);
    return true;
}

int CZEBAssemblyRulesApp::ExitInstance() {
    FreeLibrary(m_localizedLibrary);
    FreeLibrary(m_defaultLibrary);
    m_databaseModules.clear();
    return 0;
}

std::wstring CZEBAssemblyRulesApp::LoadDefaultString(unsigned id) {
    const ZebResourceHandle previous = ZebGetResourceHandle();
    ZebSetResourceHandle(m_defaultLibrary);
    std::wstring text = ZebLoadString(id);
    if (previous) ZebSetResourceHandle(previous);
    return text;
}

CZEBAssemblyRulesApp* GetAssemblyRulesApp() { return g_app; }

bool StartAssemblyRulesApp() {
    if (g_app) return true;
    if (!TheApp().InitInstance()) return false;
    g_app = &TheApp();
    return true;
}

void StopAssemblyRulesApp() {
    if (!g_app) return;
    g_app = nullptr;
    TheApp().ExitInstance();
}

CZebResourceScope::CZebResourceScope() : m_saved(ZebGetResourceHandle()) {
    if (g_app && g_app->m_localizedLibrary) ZebSetResourceHandle(g_app->m_localizedLibrary);
}

CZebResourceScope::~CZebResourceScope() {
    if (m_saved) ZebSetResourceHandle(m_saved);
}

std::wstring LoadLocalizedString(unsigned id) {
    CZebResourceScope scope;
    return ZebLoadString(id);
}
