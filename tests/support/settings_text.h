#pragma once

#include <regex>
#include <string>
#include <vector>

#include "tests/support/file_bytes.h"

// The "Rule" elements of a settings document's text, in order.
inline std::vector<std::string> RuleElements(const std::string& text) {
    const std::regex element(R"(<Rule [\s\S]*?</Rule>)");
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), element), end; it != end; ++it)
        found.push_back(it->str());
    return found;
}
