#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

// A new folder in the temporary folder for one test, removed with everything in it when the
// object goes.
class ScopedTempDir {
public:
    explicit ScopedTempDir(const std::string& prefix) {
        std::string pattern =
            (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
        if (::mkdtemp(pattern.data())) m_path = pattern;
        EXPECT_FALSE(m_path.empty()) << "no temporary folder for " << prefix;
    }
    ~ScopedTempDir() {
        std::error_code ignored;
        if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
    }
    ScopedTempDir(const ScopedTempDir&) = delete;
    ScopedTempDir& operator=(const ScopedTempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};
