#pragma once

#include <list>
#include <memory>
#include <string>

#include "framework/location_helper.h"
#include "framework/resource_library.h"
#include "resources/string_ids.h"

// The module's single application object: the localized and the English resource library, the
// help file and the list of database modules the framework hands over.
class CZEBAssemblyRulesApp {
public:
    // The help file in each language folder of the resource root.
    static constexpr const wchar_t* kHelpFileName = L"vantor.html";

    // Loads the resource libraries; the English one stands in for a missing localized one.
    bool InitInstance();
    // Frees the localized library, then the English one.
    int ExitInstance();

    // String `id` of the English library, whatever the user's language.
    std::wstring LoadDefaultString(ZebStringId id);

    std::unique_ptr<CZebResourceLibrary> m_localizedLibrary;
    std::unique_ptr<CZebResourceLibrary> m_defaultLibrary;
    std::wstring m_resourceFolder;
    std::list<std::wstring> m_databaseModules;
    std::wstring m_helpFilePath;
};

// The published application object; null until start-up has finished and after exit.
CZEBAssemblyRulesApp* GetAssemblyRulesApp();
// The help file of the user's language; empty while the application object is not running.
std::wstring ModuleHelpFilePath();

// Starts and ends the module's application object. The module does this when it is loaded and
// unloaded; tests call them directly.
bool StartAssemblyRulesApp();
void StopAssemblyRulesApp();

// Makes the localized library the current resource library until the scope ends, however it
// ends. The previous library comes back when there was one.
class CZebResourceScope {
public:
    CZebResourceScope();
    ~CZebResourceScope();
    CZebResourceScope(const CZebResourceScope&) = delete;
    CZebResourceScope& operator=(const CZebResourceScope&) = delete;

private:
    ZebResourceHandle m_saved;
};

// String `id` of the localized library, loaded in a resource scope.
std::wstring LoadLocalizedString(ZebStringId id);
