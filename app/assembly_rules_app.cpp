#include "app/assembly_rules_app.h"

#include "resources/resource_file.h"

namespace {
// Made on first use: the module's load-time start-up may run before this file's globals are
// constructed, and must not see its work undone by them afterwards.
CZEBAssemblyRulesApp& TheApp() {
    static CZEBAssemblyRulesApp app;
    return app;
}
CZEBAssemblyRulesApp* g_app = nullptr;

std::unique_ptr<CZebResourceLibrary> LoadResources(const std::wstring& folder) {
    return std::unique_ptr<CZebResourceLibrary>(
        CZebResourceLibrary::Load(folder + L"/" + kZebResourceFileName));
}

void FreeLibrary(std::unique_ptr<CZebResourceLibrary>& library) {
    if (library && ZebGetResourceHandle() == library.get()) ZebSetResourceHandle(nullptr);
    library.reset();
}
}  // namespace

bool CZEBAssemblyRulesApp::InitInstance() {
    m_resourceFolder = CLocationHelper::GetLocalizedResPath();
    m_localizedLibrary = LoadResources(m_resourceFolder);
    const std::wstring defaultFolder = CLocationHelper::GetDefaultResPath();
    if (!m_localizedLibrary) {
        m_resourceFolder = defaultFolder;
        m_localizedLibrary = LoadResources(defaultFolder);
    }
    m_defaultLibrary = LoadResources(defaultFolder);
    m_helpFilePath = m_resourceFolder + L"/" + kHelpFileName;
    if (m_localizedLibrary) ZebSetResourceHandle(m_localizedLibrary.get());
    return true;
}

int CZEBAssemblyRulesApp::ExitInstance() {
    FreeLibrary(m_localizedLibrary);
    FreeLibrary(m_defaultLibrary);
    m_databaseModules.clear();
    return 0;
}

std::wstring CZEBAssemblyRulesApp::LoadDefaultString(ZebStringId id) {
    const ZebResourceHandle previous = ZebGetResourceHandle();
    ZebSetResourceHandle(m_defaultLibrary.get());
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
    if (g_app && g_app->m_localizedLibrary) ZebSetResourceHandle(g_app->m_localizedLibrary.get());
}

CZebResourceScope::~CZebResourceScope() {
    if (m_saved) ZebSetResourceHandle(m_saved);
}

std::wstring LoadLocalizedString(ZebStringId id) {
    CZebResourceScope scope;
    return ZebLoadString(id);
}

std::wstring ModuleHelpFilePath() {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    return app ? app->m_helpFilePath : std::wstring();
}
