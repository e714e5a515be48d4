#include "rules/alignment_support.h"

#include <memory>

#include "app/assembly_rules_app.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "rules/param_xml.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/texts.h"

namespace {
std::wstring ParentVersionText(ZebXMLNode* ruleNode) {
    std::wstring text;
    if (!ruleNode) return text;
    std::unique_ptr<ZebXMLNode> parent(ruleNode->GetParentNode());
    if (parent) parent->GetAttributeValue(L"Version", text);
    return text;
}

// Database names are shown without folder and extension.
std::wstring DatabaseName(const std::wstring& modulePath) {
    const std::wstring file = FileNamePart(modulePath);
    const size_t dot = file.find(L'.');
    return dot == std::wstring::npos ? std::wstring() : file.substr(0, dot);
}

constexpr size_t kMaxDatabaseNameLength = 259;
}  // namespace

double ParentVersionWithoutV(ZebXMLNode* ruleNode) {
    std::wstring text = ParentVersionText(ruleNode);
    std::erase(text, L'v');
    return ParseXmlDouble(text);
}

bool ParentVersionHasV(ZebXMLNode* ruleNode) {
    return ParentVersionText(ruleNode).find(L'v') != std::wstring::npos;
}

void AddDatabaseAttributes(CZebRule& rule, ZebXMLNode* ruleNode) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app || !ruleNode) return;
    const auto& modules = app->m_databaseModules;
    rule.SelectedDatabase = modules.empty() ? std::wstring() : DatabaseName(modules.front());
    if (rule.DBCategory.empty())
        rule.DBCategory = app->LoadDefaultString(IDS_DATABASE_CATEGORY_HARDWARE);
    const std::string name = ToUtf8(rule.SelectedDatabase.substr(0, kMaxDatabaseNameLength));
    ruleNode->AddAttribute1("SelectedDatabase", name.c_str());
    ruleNode->AddAttribute(L"DBCategory", rule.DBCategory);
}

void RebuildOffsetSummary(CZebRule& rule, long offsetId, ZebStringId formatId) {
    auto* offset = FindTyped<double>(rule, offsetId);
    if (!offset) return;
    const std::wstring value = offset->values.IsEmpty() ? L"" : FormatNumber(offset->values[0]);
    rule.Summary = ZebFormatText(
        LoadLocalizedString(formatId),
        {OperatorSymbol(offset->op), value, GetUnitText(rule.CurrentUnits.LengthUnit)});
}
