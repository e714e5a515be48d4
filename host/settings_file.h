#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/zeb_xml.h"
#include "host/module_loader.h"

class CZebRule;

// Arguments shared by the commands: positional words and the options -o, --unit, --module-dir.
struct CommandArgs {
    std::vector<std::string> positional;
    std::string output;
    std::optional<int> unit;
    std::string moduleDir;
    // edit and configure: a picture of the window is written here instead of waiting for a user.
    std::string screenshot;
};

// False, after a message on standard error, for an unknown option, a missing option value or
// a unit code the framework does not know.
bool ParseCommandArgs(const std::vector<std::string>& args, CommandArgs& parsed);

// True when a display is named (DISPLAY, WAYLAND_DISPLAY or QT_QPA_PLATFORM), so that windows
// can be shown.
bool HasDisplay();

// Loads the module for a command; prints the reason and returns false when that fails.
bool LoadModule(ModuleLoader& loader, const CommandArgs& args);

// Reads a settings file; on failure prints one message naming the file and the position of
// the XML error and returns false.
bool ReadSettingsFile(const std::string& path, ZebXMLDocument& doc);
// The same, with the message ("FILE: what, line L, column C") handed back instead of printed.
bool LoadSettingsFile(const std::string& path, ZebXMLDocument& doc, std::string& message);

// Makes `doc` a settings document: root "VantorSettings", one child "AssemblyRules" with
// "Version" and "Unit". Returns that child; the caller deletes the handle.
ZebXMLNode* StartSettingsDocument(ZebXMLDocument& doc, int unit);

// Writes through a temporary file and a rename; prints the reason and returns false on failure.
bool WriteSettingsFile(const ZebXMLDocument& doc, const std::string& path);
// The same, with the reason handed back instead of printed.
bool SaveSettingsFile(const ZebXMLDocument& doc, const std::string& path, std::string& message);

// What the framework does with every rule it makes: the rule learns the unit of the document,
// its values converted from `valuesUnit` (the same unit for a rule read from the document,
// millimetres for one at its defaults).
void GiveRuleUnits(CZebRule& rule, int valuesUnit, int documentUnit);

// Every rule of the module at its defaults, in creation order, appended to `parent` with its
// lengths converted from millimetres to `unit`. The module's settings document must be
// `parent`'s.
void AppendDefaultRules(const ModuleLoader& loader, ZebXMLNode* parent, int unit);

// Why a rule that no rule of the module reads cannot change from unit `from` to `to`.
std::string UnconvertibleRule(const std::string& name, int from, int to);

// The "Rule" elements of a document in document order, at any depth, except those inside
// another "Rule" element, which belong to it.
std::vector<std::unique_ptr<ZebXMLNode>> SettingsRuleElements(ZebXMLDocument& doc);

// The rule the module recreates from a "Rule" element (owned by the caller, returned through
// the module's DeleteRule), in the unit of the element's parent; null when no rule of the module
// has that name.
CZebRule* RecreateRule(const ModuleLoader& loader, ZebXMLNode* node);
// The "Name" attribute of a "Rule" element, for messages.
std::string RuleElementName(ZebXMLNode* node);

// A rule's "LifeStatus" as this host, standing in for the framework, gives it meaning: 0 the rule
// is in use, 1 it is switched off (kept with its settings, but not checked). Any other value,
// and -1 for an element without one (settings written before the switch), is no switch: the
// rule is in use and its value is kept as it is.
constexpr int32_t kLifeStatusInUse = 0;
constexpr int32_t kLifeStatusSwitchedOff = 1;
bool RuleHasSwitch(const CZebRule& rule);
// False only for a rule switched off: what an assembly check skips.
bool RuleInUse(const CZebRule& rule);

// One line: identity name, display name, severity and summary, separated by tabs.
std::string RuleLine(const CZebRule& rule);

// resave and convert: every "Rule" element of FILE, in order, into a new settings document in
// `toUnit` (without one: the unit of the first rule's parent) written to -o. The module recreates
// each rule, converts it from its parent's unit and exports it. An element no rule of the module
// reads is kept as it stands, with a warning; when its values would have to change unit, nothing
// is written, since only its own module could convert them.
int RewriteSettings(const CommandArgs& args, std::optional<int> toUnit);
// The rewrite itself, from a read document into an empty one; false, after the message, when
// nothing may be written. `input` is used up: it is empty afterwards. Each rule goes as soon as
// it is written, or, with `spent`, is handed over there for the caller to let go of.
bool RewriteRules(const ModuleLoader& loader, ZebXMLDocument& input, std::optional<int> toUnit,
                  ZebXMLDocument& output, std::vector<RuleHandle>* spent = nullptr);
// RewriteRules into a new document written to `path`, with the reason printed when it is not.
// The rules' values are let go on a thread of their own while the file is written: the rows of
// large tables take a while to free and are not needed by then.
bool RewriteAndWrite(const ModuleLoader& loader, ZebXMLDocument& input, std::optional<int> toUnit,
                     const std::string& path);
