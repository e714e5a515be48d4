#include "host/module_loader.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "database/service/data_helper.h"
#include "framework/folder_check.h"
#include "framework/location_helper.h"
#include "framework/text_convert.h"

namespace {
template <class Fn>
bool Resolve(void* handle, const char* name, Fn& fn, std::string& error) {
    fn = reinterpret_cast<Fn>(dlsym(handle, name));
    if (!fn) error = std::string("the module does not export ") + name;
    return fn != nullptr;
}
}  // namespace

void NameDefaultDatabaseFolder() {
    if (const char* named = std::getenv("VANTOR_DATABASE_DIR"); named && *named) return;
    // The module adds names only to a database folder it is told of; the framework tells it of
    // the user's own, made with its parents on a new account.
    const std::wstring folder = zeb_db::ZEBDataHelper::GetDatabaseFolder();
    ZebCreateFolderWithParents(folder);
    ::setenv("VANTOR_DATABASE_DIR", ToUtf8(folder).c_str(), 1);
}

ModuleLoader::~ModuleLoader() {
    if (m_module) {
        if (SetXMLDoc) SetXMLDoc(nullptr);
        dlclose(m_module);
    }
    if (m_database) dlclose(m_database);
}

std::string ModuleLoader::ModuleFolder(const std::string& option) {
    if (!option.empty()) return option;
    if (const char* env = std::getenv("VANTOR_MODULE_DIR"); env && *env) return env;
    return ToUtf8(CLocationHelper::GetLibraryFolder());
}

bool ModuleLoader::Load(const std::string& folder, std::string& error) {
    const std::string path = folder + "/" + kModuleFile;
    // Never unloaded, as the framework keeps its modules: Qt holds on to the type information
    // the module's dialogs register, and would read it from unmapped memory after an unload.
    m_module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!m_module) {
        const char* reason = dlerror();
        error = "cannot load " + path + ": " + (reason ? reason : "unknown reason");
        return false;
    }
    if (!Resolve(m_module, "SetXMLDoc", SetXMLDoc, error) ||
        !Resolve(m_module, "GetAllRules", GetAllRules, error) ||
        !Resolve(m_module, "GetRule", GetRule, error) ||
        !Resolve(m_module, "DeleteRule", DeleteRule, error) ||
        !Resolve(m_module, "GetModuleName", GetModuleName, error) ||
        !Resolve(m_module, "GetModuleSummary", GetModuleSummary, error) ||
        !Resolve(m_module, "SetDBModuleList", SetDBModuleList, error))
        return false;
    m_folder = folder;
    LaunchFastenerDatabaseDlg =
        reinterpret_cast<LaunchFastenerDatabaseDlgFn>(dlsym(m_module, "LaunchFastenerDatabaseDlg"));

    NameDefaultDatabaseFolder();
    // The framework loads the database module before any rule and tells the module about it.
    const std::string databasePath = folder + "/" + kDatabaseModuleFile;
    std::list<std::wstring> databases;
    std::error_code ec;
    if (std::filesystem::exists(databasePath, ec)) {
        m_database = dlopen(databasePath.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (m_database) {
            m_databasePath = databasePath;
            databases.push_back(FromUtf8(databasePath));
        } else {
            const char* reason = dlerror();
            m_databaseError =
                "cannot load " + databasePath + ": " + (reason ? reason : "unknown reason");
        }
    }
    SetDBModuleList(databases);
    return true;
}
