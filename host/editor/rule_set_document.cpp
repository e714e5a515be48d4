#include "host/editor/rule_set_document.h"

#include <cwchar>

#include "framework/case_fold.h"
#include "framework/settings_format.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "host/settings_file.h"

namespace {
// The element's own "Unit"; 0 when it has none.
int UnitAttribute(const ZebXMLNode& element) {
    std::wstring unit;
    if (!element.GetAttributeValue(L"Unit", unit)) return 0;
    return static_cast<int>(std::wcstol(unit.c_str(), nullptr, 10));
}
}  // namespace

struct CRuleSetDocument::StoredRule {
    std::unique_ptr<ZebXMLNode> element;
    std::unique_ptr<RuleHandle> rule;  // null for an element no rule of the module reads
    bool changed = false;              // to be exported in place of `element` on saving
};

CRuleSetDocument::CRuleSetDocument(const ModuleLoader& module) : m_module(module) {}

CRuleSetDocument::~CRuleSetDocument() {
    m_rules.clear();
    m_module.SetXMLDoc(nullptr);
}

void CRuleSetDocument::Take(std::unique_ptr<ZebXMLDocument> doc, std::string path) {
    m_rules.clear();
    m_doc = std::move(doc);
    m_module.SetXMLDoc(m_doc.get());
    for (std::unique_ptr<ZebXMLNode>& element : SettingsRuleElements(*m_doc)) {
        StoredRule stored;
        if (CZebRule* made = RecreateRule(m_module, element.get()))
            stored.rule = std::make_unique<RuleHandle>(m_module, made);
        stored.element = std::move(element);
        m_rules.push_back(std::move(stored));
    }
    m_path = std::move(path);
    m_modified = false;
}

void CRuleSetDocument::New(int unit) {
    auto doc = std::make_unique<ZebXMLDocument>();
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(*doc, unit));
    m_module.SetXMLDoc(doc.get());
    AppendDefaultRules(m_module, parent.get(), unit);
    Take(std::move(doc), {});
}

bool CRuleSetDocument::Open(const std::string& path, std::string& message) {
    auto doc = std::make_unique<ZebXMLDocument>();
    if (!LoadSettingsFile(path, *doc, message)) return false;
    Take(std::move(doc), path);
    return true;
}

bool CRuleSetDocument::Save(const std::string& path, std::string& message) {
    m_module.SetXMLDoc(m_doc.get());
    for (StoredRule& stored : m_rules) {
        if (!stored.changed) continue;
        std::unique_ptr<ZebXMLNode> exported((*stored.rule)->ExportToXML());
        std::unique_ptr<ZebXMLNode> parent(stored.element->GetParentNode());
        if (!exported || !parent || !parent->ReplaceChild(exported.get(), stored.element.get())) {
            message = "the rule '" + ToUtf8((*stored.rule)->Name) + "' could not be written";
            return false;
        }
        stored.element = std::move(exported);
        stored.changed = false;
    }
    if (!SaveSettingsFile(*m_doc, path, message)) return false;
    m_path = path;
    m_modified = false;
    return true;
}

int CRuleSetDocument::Unit() const {
    if (!m_rules.empty()) return ZebParentUnitAttribute(m_rules.front().element.get());
    const std::unique_ptr<ZebXMLNode> parent = RulesParent();
    return parent ? UnitAttribute(*parent) : 0;
}

size_t CRuleSetDocument::RuleCount() const { return m_rules.size(); }

RuleRow CRuleSetDocument::Row(size_t row) const {
    const StoredRule& stored = m_rules.at(row);
    RuleRow out;
    stored.element->GetAttributeValue(L"Name", out.storedName);
    if (stored.rule) {
        const CZebRule& rule = *stored.rule->get();
        out.known = true;
        out.displayName = rule.DisplayName;
        out.severity = rule.Severity;
        out.summary = rule.Summary;
    }
    return out;
}

ConfigureResult CRuleSetDocument::Configure(size_t row) {
    StoredRule& stored = m_rules.at(row);
    if (!stored.rule) return ConfigureResult::NotRead;
    m_module.SetXMLDoc(m_doc.get());
    const ConfigureResult result = ConfigureRule(*stored.rule->get());
    if (result == ConfigureResult::Ok) stored.changed = m_modified = true;
    return result;
}

std::unique_ptr<ZebXMLNode> CRuleSetDocument::RulesParent() const {
    if (!m_rules.empty()) return std::unique_ptr<ZebXMLNode>(m_rules.back().element->GetParentNode());
    std::unique_ptr<ZebXMLNodeList> parents(m_doc->GetElementsByTagName(L"AssemblyRules"));
    return std::unique_ptr<ZebXMLNode>((*parents)[0]);
}

std::unique_ptr<RuleHandle> CRuleSetDocument::DefaultRule(const std::wstring& name, int unit) const {
    ZebArray<CZebRule*> made;
    m_module.GetAllRules(&made);
    std::unique_ptr<RuleHandle> found;
    for (CZebRule* rule : made) {
        auto handle = std::make_unique<RuleHandle>(m_module, rule);
        if (!found && ZebEqualsNoCase(rule->Name, name)) found = std::move(handle);
    }
    if (found && unit != 0) {
        // Defaults are millimetres.
        const UnitSetting from{0, 0};
        const UnitSetting to{unit, 0};
        (*found)->ConvertUnits(&from, &to);
    }
    return found;
}

std::vector<std::pair<std::wstring, std::wstring>> CRuleSetDocument::MissingRules() const {
    ZebArray<CZebRule*> made;
    m_module.GetAllRules(&made);
    std::vector<std::pair<std::wstring, std::wstring>> missing;
    for (CZebRule* rule : made) {
        RuleHandle handle(m_module, rule);
        bool present = false;
        for (const StoredRule& stored : m_rules)
            present = present || (stored.rule && ZebEqualsNoCase((*stored.rule)->Name, rule->Name));
        if (!present) missing.emplace_back(rule->Name, rule->DisplayName);
    }
    return missing;
}

bool CRuleSetDocument::AddRule(const std::wstring& name) {
    std::unique_ptr<ZebXMLNode> parent = RulesParent();
    if (!parent) {
        // A document without a rules element gets one, in the framework's shape.
        std::unique_ptr<ZebXMLNode> root(m_doc->GetDocumentElement());
        if (!root) {
            parent.reset(StartSettingsDocument(*m_doc, 0));
        } else {
            parent.reset(root->AppendNode(L"AssemblyRules"));
            parent->AddAttribute(L"Unit", L"0");
        }
    }
    std::unique_ptr<RuleHandle> rule = DefaultRule(name, UnitAttribute(*parent));
    if (!rule) return false;
    m_module.SetXMLDoc(m_doc.get());
    std::unique_ptr<ZebXMLNode> exported((*rule)->ExportToXML());
    if (!exported || !parent->AppendNode(exported.get())) return false;
    m_rules.push_back({std::move(exported), std::move(rule), false});
    m_modified = true;
    return true;
}

void CRuleSetDocument::RemoveRule(size_t row) {
    StoredRule& stored = m_rules.at(row);
    std::unique_ptr<ZebXMLNode> parent(stored.element->GetParentNode());
    if (parent) parent->RemoveChild(stored.element.get());
    m_rules.erase(m_rules.begin() + static_cast<std::ptrdiff_t>(row));
    m_modified = true;
}

bool CRuleSetDocument::ResetRule(size_t row) {
    StoredRule& stored = m_rules.at(row);
    if (!stored.rule) return false;
    std::unique_ptr<RuleHandle> fresh =
        DefaultRule((*stored.rule)->Name, ZebParentUnitAttribute(stored.element.get()));
    if (!fresh) return false;
    stored.rule = std::move(fresh);
    stored.changed = m_modified = true;
    return true;
}

bool CRuleSetDocument::ConvertUnits(int unit, std::string& message) {
    for (const StoredRule& stored : m_rules) {
        const int from = ZebParentUnitAttribute(stored.element.get());
        if (stored.rule || from == unit) continue;
        std::wstring name;
        stored.element->GetAttributeValue(L"Name", name);
        message = "The unit cannot be changed: " + UnconvertibleRule(ToUtf8(name), from, unit) +
                  ". Nothing was changed.";
        return false;
    }
    const UnitSetting to{unit, 0};
    std::vector<std::unique_ptr<ZebXMLNode>> parents;
    for (StoredRule& stored : m_rules) {
        std::unique_ptr<ZebXMLNode> parent(stored.element->GetParentNode());
        const UnitSetting from{ZebParentUnitAttribute(stored.element.get()), 0};
        if (stored.rule && from.LengthUnit != unit) {
            (*stored.rule)->ConvertUnits(&from, &to);
            stored.changed = m_modified = true;
        }
        if (parent) parents.push_back(std::move(parent));
    }
    if (std::unique_ptr<ZebXMLNode> rules = RulesParent()) parents.push_back(std::move(rules));
    // Set once every rule has read its old unit: rules may share a parent.
    for (const std::unique_ptr<ZebXMLNode>& parent : parents) {
        std::wstring old;
        if (parent->GetAttributeValue(L"Unit", old) && old == std::to_wstring(unit)) continue;
        parent->AddAttribute(L"Unit", std::to_wstring(unit));
        m_modified = true;
    }
    return true;
}
