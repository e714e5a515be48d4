#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

// Stops the run with a report when a property of the code under test does not hold; libFuzzer
// keeps the input that did it.
#define FUZZ_CHECK(condition)                                                                  \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                      \
        }                                                                                      \
    } while (0)

// The readers take paths, so each input is written to a file in a folder of this process's own,
// removed when the process ends.
class ScratchFile {
public:
    explicit ScratchFile(const std::string& name) {
        std::string folder =
            (std::filesystem::temp_directory_path() / "vantor-fuzz-XXXXXX").string();
        if (!mkdtemp(folder.data())) std::abort();
        m_folder = folder;
        m_path = (m_folder / name).string();
    }
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::string& Path() const { return m_path; }

    void Write(std::string_view bytes) const {
        std::FILE* file = std::fopen(m_path.c_str(), "wb");
        if (!file) std::abort();
        if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
            std::abort();
        if (std::fclose(file) != 0) std::abort();
    }

private:
    std::filesystem::path m_folder;
    std::string m_path;
};

inline std::string_view Bytes(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}
