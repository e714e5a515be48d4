#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>

#include "app/assembly_rules_app.h"

// Sets an environment variable (null: removes it) for the object's life and puts back what was
// there, however the test ends.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) m_previous = old;
        Set(value);
    }
    ~ScopedEnv() { Set(m_previous ? m_previous->c_str() : nullptr); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

    void Set(const char* value) {
        if (value) ::setenv(m_name.c_str(), value, 1);
        else ::unsetenv(m_name.c_str());
    }

private:
    std::string m_name;
    std::optional<std::string> m_previous;
};

// Sets the C library's locale of `category` for the object's life and restores it on every way
// out, a failed assertion included.
class ScopedLocale {
public:
    ScopedLocale(int category, const char* name)
        : m_category(category), m_previous(std::setlocale(category, nullptr)) {
        m_applied = std::setlocale(category, name) != nullptr;
    }
    ~ScopedLocale() { std::setlocale(m_category, m_previous.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

    bool Applied() const { return m_applied; }

private:
    int m_category;
    std::string m_previous;
    bool m_applied = false;
};

// The module as its tests run it: the built resource libraries, texts in `language`, '.' as the
// decimal separator and the application object started; all of it is put back afterwards.
// LC_ALL and LC_MESSAGES are removed, since either would decide the language before LANG.
class ScopedModule {
public:
    explicit ScopedModule(const char* language = "en_US.UTF-8") : m_language("LANG", language) {
        StartAssemblyRulesApp();
    }
    ~ScopedModule() { StopAssemblyRulesApp(); }
    ScopedModule(const ScopedModule&) = delete;
    ScopedModule& operator=(const ScopedModule&) = delete;

private:
    ScopedEnv m_resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv m_messages{"LC_MESSAGES", nullptr};
    ScopedEnv m_all{"LC_ALL", nullptr};
    ScopedEnv m_language;
    ScopedEnv m_numbers{"LC_NUMERIC", "C.UTF-8"};
};

// Fixture of tests of the module's internals: one started module per test.
class ModuleTest : public ::testing::Test {
protected:
    ScopedModule module;
};
