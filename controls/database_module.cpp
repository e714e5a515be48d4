#include "controls/database_module.h"

#include <dlfcn.h>

#include <string>

#include "controls/wrapper_combo_ctrl.h"
#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "util/file_helpers.h"

namespace {
constexpr const char* kDatabaseModuleFile = "ZEBDatabaseu.so";

// The folder of the shared object (or program) this code is linked into: the module's folder
// once installed.
std::string OwnFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&OwnFolder), &info) == 0 || !info.dli_fname) return ".";
    const std::string path = info.dli_fname;
    const size_t cut = path.find_last_of('/');
    return cut == std::string::npos ? "." : path.substr(0, cut);
}

// The name a loaded module gives itself through GetModuleName; false when it exports none.
bool ModuleName(void* handle, std::wstring& name) {
    using GetModuleNameFn = void (*)(std::wstring&);
    const auto getName = reinterpret_cast<GetModuleNameFn>(dlsym(handle, "GetModuleName"));
    if (!getName) return false;
    name = L"Module Name";
    getName(name);
    return true;
}
}  // namespace

bool GetLoadedDatabaseModuleName(std::wstring& name) {
    const std::string path = OwnFolder() + "/" + kDatabaseModuleFile;
    // Only a module the host loaded already counts; this never loads one.
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return false;
    const bool named = ModuleName(handle, name);
    dlclose(handle);
    return named;
}

bool FillDatabaseModuleList(CWrapperComboCtrl& list, const std::list<std::wstring>& modules,
                            const std::wstring& selected) {
    if (modules.empty()) return false;
    std::vector<std::wstring> names;
    int chosen = -1;
    int index = 0;
    for (const std::wstring& module : modules) {
        // Loaded for good: the module list names the host's own database modules.
        void* handle = dlopen(ToUtf8(module).c_str(), RTLD_NOW | RTLD_LOCAL);
        std::wstring name;
        if (handle && ModuleName(handle, name)) {
            if (selected.empty() ? chosen < 0
                                 : ZebEqualsNoCase(GetDBModuleFileName(index), selected))
                chosen = static_cast<int>(names.size());
            names.push_back(name);
        }
        ++index;
    }
    list.FillFromList(names);
    list.setCurrentIndex(chosen);
    return true;
}

bool FillDatabaseModuleList(CWrapperComboCtrl& list) {
    std::wstring name;
    if (!GetLoadedDatabaseModuleName(name)) return false;
    list.FillFromList({name});
    list.setCurrentIndex(0);
    return true;
}
