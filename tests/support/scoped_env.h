#pragma once

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>

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
        if (value)
            ::setenv(m_name.c_str(), value, 1);
        else
            ::unsetenv(m_name.c_str());
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
