#pragma once

#include <gtest/gtest.h>

#include "app/assembly_rules_app.h"
#include "tests/support/scoped_env.h"

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
