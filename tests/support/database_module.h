#pragma once

#include <dlfcn.h>

#include <string>

// The database module, which the dialogs look for beside the code they are linked into, loaded
// as the host loads it for as long as the object lives (or until Unload).
class ScopedDatabaseModule {
public:
    ScopedDatabaseModule()
        : m_handle(dlopen(VANTOR_BUILD_DIR "/tests/ZEBDatabaseu.so", RTLD_NOW | RTLD_LOCAL)) {
        if (!m_handle) m_error = dlerror();
    }
    ~ScopedDatabaseModule() { Unload(); }
    ScopedDatabaseModule(const ScopedDatabaseModule&) = delete;
    ScopedDatabaseModule& operator=(const ScopedDatabaseModule&) = delete;

    bool Loaded() const { return m_handle != nullptr; }
    const std::string& Error() const { return m_error; }
    void Unload() {
        if (m_handle) dlclose(m_handle);
        m_handle = nullptr;
    }

private:
    void* m_handle;
    std::string m_error;
};
