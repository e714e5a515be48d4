#include "host/editor/rule_set_document.h"

#include <QCoreApplication>
#include <cwchar>
#include <filesystem>

#include "framework/case_fold.h"
#include "framework/settings_format.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "host/editor/qt_text.h"
#include "host/editor/unit_names.h"
#include "host/settings_file.h"

namespace {
// The document's messages, in the user's language.
QString Tr(const char* text) { return QCoreApplication::translate("CRuleSetDocument", text); }

// The element's own "Unit"; 0 when it has none.
int UnitAttribute(const ZebXMLNode& element) {
    std::wstring unit;
    if (!element.GetAttributeValue(L"Unit", unit)) return 0;
    return static_cast<int>(std::wcstol(unit.c_str(), nullptr, 10));
}

// The root the host writes; a file with another root was written by something else.
constexpr const wchar_t* kSettingsRoot = L"VantorSettings";

// The rule as the module writes it, as text: what tells whether a dialog changed anything.
std::string ExportedText(CZebRule& rule) {
    ZebXMLDocument holder;
    std::unique_ptr<ZebXMLNode> root(holder.CreateDocumentElement(L"Rules"));
    std::unique_ptr<ZebXMLNode> exported(rule.ExportToXML());
    if (exported) root->AppendNode(exported.get());
    return holder.GetXML();
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code ec;
    return a == b || std::filesystem::equivalent(a, b, ec);
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
    m_readOnly = false;
}

void CRuleSetDocument::New(int unit) {
    auto doc = std::make_unique<ZebXMLDocument>();
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(*doc, unit));
    m_module.SetXMLDoc(doc.get());
    AppendDefaultRules(m_module, parent.get(), unit);
    Take(std::move(doc), {});
}

CRuleSetDocument::OpenResult CRuleSetDocument::Open(const std::string& path, std::string& message,
                                                    bool readOnlyIfForeign) {
    auto doc = std::make_unique<ZebXMLDocument>();
    if (!LoadSettingsFile(path, *doc, message)) return OpenResult::Unreadable;
    std::unique_ptr<ZebXMLNode> root(doc->GetDocumentElement());
    const bool foreign = !root || root->GetName() != kSettingsRoot;
    if (foreign && !readOnlyIfForeign) {
        message = Tr("%1: not a settings document (its root element is <%2>, not <%3>)")
                      .arg(Q(path), root ? Q(root->GetName()) : QString(), Q(kSettingsRoot))
                      .toStdString();
        return OpenResult::NotSettings;
    }
    root.reset();
    Take(std::move(doc), path);
    m_readOnly = foreign;
    return OpenResult::Opened;
}

bool CRuleSetDocument::WriteBackChangedRules(std::string& message) {
    m_module.SetXMLDoc(m_doc.get());
    for (StoredRule& stored : m_rules) {
        if (!stored.changed) continue;
        std::unique_ptr<ZebXMLNode> exported((*stored.rule)->ExportToXML());
        std::unique_ptr<ZebXMLNode> parent(stored.element->GetParentNode());
        if (!exported || !parent || !parent->ReplaceChild(exported.get(), stored.element.get())) {
            message = Tr("The rule \"%1\" could not be written.")
                          .arg(Q((*stored.rule)->Name))
                          .toStdString();
            return false;
        }
        stored.element = std::move(exported);
        stored.changed = false;
    }
    return true;
}

bool CRuleSetDocument::Save(const std::string& path, std::string& message) {
    if (m_readOnly && SameFile(path, m_path)) {
        message = Tr("%1 is not a settings document and is not written over; save the rules "
                     "under another name.")
                      .arg(Q(m_path))
                      .toStdString();
        return false;
    }
    if (!WriteBackChangedRules(message) || !SaveSettingsFile(*m_doc, path, message)) return false;
    m_path = path;
    m_modified = false;
    m_readOnly = false;
    return true;
}

std::string CRuleSetDocument::Snapshot() {
    std::string ignored;
    WriteBackChangedRules(ignored);  // a rule that cannot be written keeps its old element
    return m_doc->GetXML();
}

bool CRuleSetDocument::Restore(const std::string& snapshot, std::string& message) {
    auto doc = std::make_unique<ZebXMLDocument>();
    std::wstring error;
    if (!doc->LoadXML(snapshot, error)) {
        message = ToUtf8(error);
        return false;
    }
    const bool modified = m_modified, readOnly = m_readOnly;
    Take(std::move(doc), m_path);
    m_modified = modified;
    m_readOnly = readOnly;
    return true;
}

const CZebRule* CRuleSetDocument::Rule(size_t row) const {
    const StoredRule& stored = m_rules.at(row);
    return stored.rule ? stored.rule->get() : nullptr;
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
        out.hasSwitch = RuleHasSwitch(rule);
        out.inUse = RuleInUse(rule);
    }
    return out;
}

ConfigureResult CRuleSetDocument::Configure(size_t row) {
    StoredRule& stored = m_rules.at(row);
    if (!stored.rule) return ConfigureResult::NotRead;
    m_module.SetXMLDoc(m_doc.get());
    CZebRule& rule = *stored.rule->get();
    const std::string before = ExportedText(rule);
    const ConfigureResult result = ConfigureRule(rule);
    if (result == ConfigureResult::Ok && ExportedText(rule) != before)
        stored.changed = m_modified = true;
    return result;
}

std::unique_ptr<ZebXMLNode> CRuleSetDocument::RulesParent() const {
    if (!m_rules.empty())
        return std::unique_ptr<ZebXMLNode>(m_rules.back().element->GetParentNode());
    std::unique_ptr<ZebXMLNodeList> parents(m_doc->GetElementsByTagName(L"AssemblyRules"));
    return std::unique_ptr<ZebXMLNode>((*parents)[0]);
}

std::unique_ptr<RuleHandle> CRuleSetDocument::DefaultRule(const std::wstring& name,
                                                          int unit) const {
    ZebArray<CZebRule*> made;
    m_module.GetAllRules(&made);
    std::unique_ptr<RuleHandle> found;
    for (CZebRule* rule : made) {
        auto handle = std::make_unique<RuleHandle>(m_module, rule);
        if (!found && ZebEqualsNoCase(rule->Name, name)) found = std::move(handle);
    }
    if (found) GiveRuleUnits(*found->get(), 0, unit);  // defaults are millimetres
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

std::unique_ptr<ZebXMLNode> CRuleSetDocument::RulesParentMade() {
    if (std::unique_ptr<ZebXMLNode> parent = RulesParent()) return parent;
    // A document without a rules element gets one, in the framework's shape.
    std::unique_ptr<ZebXMLNode> root(m_doc->GetDocumentElement());
    if (!root) return std::unique_ptr<ZebXMLNode>(StartSettingsDocument(*m_doc, 0));
    std::unique_ptr<ZebXMLNode> parent(root->AppendNode(L"AssemblyRules"));
    parent->AddAttribute(L"Unit", L"0");
    return parent;
}

bool CRuleSetDocument::AppendRule(std::unique_ptr<RuleHandle> rule, ZebXMLNode& parent) {
    m_module.SetXMLDoc(m_doc.get());
    std::unique_ptr<ZebXMLNode> exported((*rule)->ExportToXML());
    if (!exported || !parent.AppendNode(exported.get())) return false;
    m_rules.push_back({std::move(exported), std::move(rule), false});
    m_modified = true;
    return true;
}

bool CRuleSetDocument::AddRule(const std::wstring& name) {
    std::unique_ptr<ZebXMLNode> parent = RulesParentMade();
    std::unique_ptr<RuleHandle> rule = DefaultRule(name, UnitAttribute(*parent));
    return rule && AppendRule(std::move(rule), *parent);
}

int CRuleSetDocument::FindRule(const std::wstring& name) const {
    for (size_t row = 0; row < m_rules.size(); ++row)
        if (m_rules[row].rule && ZebEqualsNoCase((*m_rules[row].rule)->Name, name))
            return static_cast<int>(row);
    return -1;
}

bool CRuleSetDocument::SetSeverity(size_t row, int severity) {
    StoredRule& stored = m_rules.at(row);
    if (!stored.rule || severity < 1 || severity > 5) return false;
    if ((*stored.rule)->Severity == severity) return true;
    (*stored.rule)->Severity = severity;
    stored.changed = m_modified = true;
    return true;
}

bool CRuleSetDocument::SetInUse(size_t row, bool inUse) {
    StoredRule& stored = m_rules.at(row);
    if (!stored.rule || !RuleHasSwitch(*stored.rule->get())) return false;
    const int32_t status = inUse ? kLifeStatusInUse : kLifeStatusSwitchedOff;
    if ((*stored.rule)->LifeStatus == status) return true;
    (*stored.rule)->LifeStatus = status;
    stored.changed = m_modified = true;
    return true;
}

bool CRuleSetDocument::RulesInFile(const std::string& path,
                                   std::vector<std::pair<std::wstring, std::wstring>>& rules,
                                   int& unit, std::string& message) const {
    ZebXMLDocument other;
    if (!LoadSettingsFile(path, other, message)) return false;
    m_module.SetXMLDoc(&other);
    std::vector<std::unique_ptr<ZebXMLNode>> elements = SettingsRuleElements(other);
    unit = elements.empty() ? 0 : ZebParentUnitAttribute(elements.front().get());
    for (const std::unique_ptr<ZebXMLNode>& element : elements)
        if (CZebRule* made = RecreateRule(m_module, element.get())) {
            RuleHandle rule(m_module, made);
            rules.emplace_back(rule->Name, rule->DisplayName);
        }
    m_module.SetXMLDoc(m_doc.get());
    return true;
}

bool CRuleSetDocument::ImportRules(const std::string& path, const std::vector<std::wstring>& names,
                                   std::string& message) {
    ZebXMLDocument other;
    if (!LoadSettingsFile(path, other, message)) return false;
    const int unit = Unit();
    std::vector<std::unique_ptr<RuleHandle>> read;
    m_module.SetXMLDoc(&other);
    for (const std::unique_ptr<ZebXMLNode>& element : SettingsRuleElements(other)) {
        std::wstring name;
        element->GetAttributeValue(L"Name", name);
        bool chosen = false;
        for (const std::wstring& wanted : names) chosen = chosen || ZebEqualsNoCase(wanted, name);
        if (!chosen) continue;
        if (CZebRule* made = RecreateRule(m_module, element.get())) {
            GiveRuleUnits(*made, ZebParentUnitAttribute(element.get()), unit);
            read.push_back(std::make_unique<RuleHandle>(m_module, made));
        }
    }
    m_module.SetXMLDoc(m_doc.get());
    std::unique_ptr<ZebXMLNode> parent = RulesParentMade();
    for (std::unique_ptr<RuleHandle>& rule : read) {
        const int row = FindRule((*rule)->Name);
        if (row < 0) {
            if (!AppendRule(std::move(rule), *parent)) {
                message = Tr("A rule of %1 could not be written.").arg(Q(path)).toStdString();
                return false;
            }
            continue;
        }
        StoredRule& stored = m_rules[static_cast<size_t>(row)];
        stored.rule = std::move(rule);
        stored.changed = m_modified = true;
    }
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
    // Its values go back to their defaults; whether it is in use is the user's, as it was.
    (*fresh)->LifeStatus = (*stored.rule)->LifeStatus;
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
        message = Tr("The unit cannot be changed: no rule of the module reads the rule \"%1\", "
                     "so its values cannot be converted from %2 to %3. Nothing was changed.")
                      .arg(Q(name), UnitText(from), UnitText(unit))
                      .toStdString();
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
