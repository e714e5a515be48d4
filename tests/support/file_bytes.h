#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// A file's bytes; empty when it cannot be read.
inline std::string FileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
