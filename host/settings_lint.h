#pragma once

#include <string>
#include <vector>

#include "host/module_loader.h"

// What the module would change, default or drop when it reads a settings document and writes
// it again: found by the same reading rules the module applies, and where the module can tell,
// by reading each rule through it.
struct LintFinding {
    std::string rule;       // the rule's "Name"; empty for the document itself (its "Unit")
    std::string parameter;  // the parameter's "Type" as written; empty when none is concerned
    long line = 0;          // line of the element concerned
    std::string message;
};

// False, with `error` set ("FILE: what, line L, column C"), when the file cannot be read or is
// not well-formed. Findings come in line order.
bool LintSettings(const ModuleLoader& loader, const std::string& path,
                  std::vector<LintFinding>& findings, std::string& error);

// One line per finding: "FILE:LINE: rule "NAME" parameter TYPE: message".
std::string LintFindingsText(const std::string& path, const std::vector<LintFinding>& findings);
// A JSON array of {"rule", "parameter", "line", "message"}; rule and parameter are null when
// there is none.
std::string LintFindingsJson(const std::vector<LintFinding>& findings);
// A JSON string literal of UTF-8 text.
std::string JsonString(const std::string& text);
