#pragma once

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

// A file's bytes as text.
inline std::string ReadText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The "Rule" elements of a settings document's text, in order.
inline std::vector<std::string> RuleElements(const std::string& text) {
    const std::regex element(R"(<Rule [\s\S]*?</Rule>)");
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), element), end; it != end; ++it) found.push_back(it->str());
    return found;
}
