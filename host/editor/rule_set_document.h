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
    // Replaces the document by the file's; on failure the current one stays and `message` says
    // why ("FILE: what, line L, column C").
    bool Open(const std::string& path, std::string& message);
    // Writes through a temporary file and a rename; on success `path` becomes the document's.
    bool Save(const std::string& path, std::string& message);

    const std::string& Path() const { return m_path; }
    bool IsModified() const { return m_modified; }
    // The unit of the document: that of the first rule's parent, else of the rules' element.
    int Unit() const;

    size_t RuleCount() const;
    RuleRow Row(size_t row) const;
    // Runs the rule's dialog; after OK the document is modified.
    ConfigureResult Configure(size_t row);

    // Rules of the module the document lacks: identity name and display name, in creation order.
    std::vector<std::pair<std::wstring, std::wstring>> MissingRules() const;
    // Appends the rule of the module named `name` at its defaults; false when there is none.
    bool AddRule(const std::wstring& name);
    void RemoveRule(size_t row);
    // The rule at its defaults again; false for a rule the module does not read.
    bool ResetRule(size_t row);
    // Converts every rule from its parent's unit to `unit` and sets the parents' "Unit". When a
    // rule the module does not read would need converting, nothing changes and `message` says so.
    bool ConvertUnits(int unit, std::string& message);

private:
    struct StoredRule;

    void Take(std::unique_ptr<ZebXMLDocument> doc, std::string path);
    // The element new rules go into: the parent of the last rule, else the first
    // "AssemblyRules" element; null when there is neither.
    std::unique_ptr<ZebXMLNode> RulesParent() const;
    // The module's rule `name` at its defaults converted to `unit`; null when there is none.
    std::unique_ptr<RuleHandle> DefaultRule(const std::wstring& name, int unit) const;

    const ModuleLoader& m_module;
    std::unique_ptr<ZebXMLDocument> m_doc;
    std::vector<StoredRule> m_rules;
    std::string m_path;
    bool m_modified = false;
};
