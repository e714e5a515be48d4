#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/zeb_xml.h"
#include "host/configure_settings.h"
#include "host/module_loader.h"

// One "Rule" element of the document as the editor lists it.
struct RuleRow {
    std::wstring storedName;   // the element's "Name"
    bool known = false;        // a rule of the module reads it
    std::wstring displayName;  // the rule's, when known
    int severity = 0;
    std::wstring summary;
    bool hasSwitch = false;  // the settings hold a status the user may switch
    bool inUse = true;
};

// A settings document held for a person, as the host framework holds one: every rule the module
// reads lives as a rule object made by GetRule from its element, is configured and converted in
// memory, and is exported back in place of its element only when it changed, on saving. Elements
// the module does not read stay as they are. Nothing here shows a window except a rule's dialog.
class CRuleSetDocument {
public:
    // The module must stay loaded while the document lives.
    explicit CRuleSetDocument(const ModuleLoader& module);
    ~CRuleSetDocument();
    CRuleSetDocument(const CRuleSetDocument&) = delete;
    CRuleSetDocument& operator=(const CRuleSetDocument&) = delete;

    // A new unnamed document with every rule of the module at its defaults, in `unit`.
    void New(int unit);
    enum class OpenResult {
        Opened,
        Unreadable,   // not XML, or not readable: `message` says why and where
        NotSettings,  // XML without a settings root: refused, unless asked to open it read-only
    };
    // Replaces the document by the file's; on failure the current one stays and `message` says
    // why ("FILE: what, line L, column C"). A file whose root is not a settings root is opened
    // only with `readOnlyIfForeign`, and then never saved over.
    OpenResult Open(const std::string& path, std::string& message, bool readOnlyIfForeign = false);
    // Writes through a temporary file and a rename; on success `path` becomes the document's.
    // A document opened read-only is refused its own file.
    bool Save(const std::string& path, std::string& message);

    const std::string& Path() const { return m_path; }
    bool IsReadOnly() const { return m_readOnly; }
    bool IsModified() const { return m_modified; }
    void SetModified(bool modified) { m_modified = modified; }

    // The whole document as text, every changed rule written into its element; Restore makes it
    // the document again (the path, read-only state and modified flag stay). What undo works on.
    std::string Snapshot();
    bool Restore(const std::string& snapshot, std::string& message);
    // The rule the row's element holds as the module reads it; null for an element no rule of the
    // module reads.
    const CZebRule* Rule(size_t row) const;
    // The unit of the document: that of the first rule's parent, else of the rules' element.
    int Unit() const;

    size_t RuleCount() const;
    RuleRow Row(size_t row) const;
    // Runs the rule's dialog; after OK that changed the rule the document is modified.
    ConfigureResult Configure(size_t row);

    // Rules of the module the document lacks: identity name and display name, in creation order.
    std::vector<std::pair<std::wstring, std::wstring>> MissingRules() const;
    // Appends the rule of the module named `name` at its defaults; false when there is none.
    bool AddRule(const std::wstring& name);
    void RemoveRule(size_t row);
    // The row of the rule the module reads as `name`; -1 when the document has none.
    int FindRule(const std::wstring& name) const;
    // The rule at its defaults again; false for a rule the module does not read.
    bool ResetRule(size_t row);
    // The rule's severity (1 to 5); false for a rule the module does not read.
    bool SetSeverity(size_t row, int severity);

    // Switches the rule on (in use) or off (kept, not checked); false for a rule without a switch.
    bool SetInUse(size_t row, bool inUse);

    // The rules of the module in the settings file at `path`: identity and display name, in file
    // order, and the unit their values are in. False with `message` when the file cannot be read.
    bool RulesInFile(const std::string& path,
                     std::vector<std::pair<std::wstring, std::wstring>>& rules, int& unit,
                     std::string& message) const;
    // The rules named `names` (identity names, letter case aside) from the file at `path`,
    // converted into this document's unit; each replaces the document's rule of that name, or is
    // added after the last rule. False with `message` when the file cannot be read.
    bool ImportRules(const std::string& path, const std::vector<std::wstring>& names,
                     std::string& message);

    // Converts every rule from its parent's unit to `unit` and sets the parents' "Unit". When a
    // rule the module does not read would need converting, nothing changes and `message` says so.
    bool ConvertUnits(int unit, std::string& message);

private:
    struct StoredRule;

    void Take(std::unique_ptr<ZebXMLDocument> doc, std::string path);
    // Exports every changed rule in place of its element; false with `message` when one fails.
    bool WriteBackChangedRules(std::string& message);
    // The element new rules go into: the parent of the last rule, else the first
    // "AssemblyRules" element; null when there is neither.
    std::unique_ptr<ZebXMLNode> RulesParent() const;
    // The same, made in the framework's shape when there is none.
    std::unique_ptr<ZebXMLNode> RulesParentMade();
    // Puts `rule` in the document after the last rule, its element exported; false when it
    // exports nothing.
    bool AppendRule(std::unique_ptr<RuleHandle> rule, ZebXMLNode& parent);
    // The module's rule `name` at its defaults converted to `unit`; null when there is none.
    std::unique_ptr<RuleHandle> DefaultRule(const std::wstring& name, int unit) const;

    const ModuleLoader& m_module;
    std::unique_ptr<ZebXMLDocument> m_doc;
    std::vector<StoredRule> m_rules;
    std::string m_path;
    bool m_modified = false;
    bool m_readOnly = false;
};
