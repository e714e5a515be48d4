#include "controls/database_module.h"

#include <dlfcn.h>

#include <string>

#include "controls/wrapper_combo_ctrl.h"

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
}  // namespace

bool GetLoadedDatabaseModuleName(std::wstring& name) {
    const std::string path = OwnFolder() + "/" + kDatabaseModuleFile;
    // Only a module the host loaded already counts; this never loads one.
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return false;
    using GetModuleNameFn = void (*)(std::wstring&);
    const auto getName = reinterpret_cast<GetModuleNameFn>(dlsym(handle, "GetModuleName"));
    if (getName) {
        name = L"Module Name";
        getName(name);
    }
    dlclose(handle);
    return getName != nullptr;
}

bool FillDatabaseModuleList(CWrapperComboCtrl& list) {
    std::wstring name;
    if (!GetLoadedDatabaseModuleName(name)) return false;
    list.FillFromList({name});
    list.setCurrentIndex(0);
    return true;
}
