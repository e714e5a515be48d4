#include "rules/rule_record.h"

#include <memory>
#include <type_traits>

#include "app/assembly_rules_app.h"
#include "app/settings_document.h"
#include "framework/resource_library.h"
#include "framework/ui_message.h"
#include "framework/zeb_xml.h"
#include "rules/param_visit.h"
#include "rules/param_xml.h"

namespace {
// Absent or non-numeric header numbers read as -1, not as the constructed value.
int32_t HeaderInt(ZebXMLNode* node, const wchar_t* name) {
    std::wstring text;
    node->GetAttributeValue(name, text);
    long value = 0;
    return ParseXmlInt(text, value) ? static_cast<int32_t>(value) : -1;
}

void CopyAttribute(ZebXMLNode* node, const wchar_t* name, std::wstring& member) {
    node->GetAttributeValue(name, member);
}

void ReportUnknownValueType() { ZebMessageBox(ZebLoadString(IDS_UNKNOWN_VALUE_TYPE)); }
}  // namespace

void FillRuleRecord(CZebRule& rule, const RuleIdentity& identity) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app) return;
    CZebResourceScope scope;
    rule.DisplayName = ZebLoadString(identity.nameId);
    rule.Name = app->LoadDefaultString(identity.nameId);
    const std::wstring summary = ZebLoadString(identity.summaryId);
    rule.Summary =
        identity.summaryAsLoaded ? summary : ZebFormatText(summary, identity.summaryArgs);
    rule.Module = L"ZEBAssemblyRulesValidator";
    rule.EngineList.push_back(L"ZEBAssemblyEngine");
    rule.Severity = identity.severity;
    if (identity.setStatus) rule.Status = 0;
    rule.DialogImageId = identity.dialogImageId;
    rule.SetRuleCategory(ZebCategory_Assembly);
}

CZebParamStorage* AddParameter(CZebRule& rule, Type_e type, long id, ZebOperator_e op,
                               ZebParamType_e kind, bool enabled) {
    CZebParamStorage* p = rule.CreateParamStorageObject(type, id, op, kind, enabled, false);
    rule.ParamArray.Add(p);
    return p;
}

namespace {
template <class T>
T DefaultValue(double value) {
    if constexpr (std::is_same_v<T, bool>)
        return value != 0.0;
    else if constexpr (std::is_arithmetic_v<T>)
        return static_cast<T>(value);
    else
        return T{};  // texts start empty
}
}  // namespace

void AddParameters(CZebRule& rule, std::span<const ParamSpec> specs) {
    for (const ParamSpec& spec : specs) {
        CZebParamStorage* p =
            AddParameter(rule, spec.type, spec.id, spec.op, spec.kind, spec.enabled);
        p->GetParam()->criteriaStatus = spec.criteria;
        VisitTyped(*p, [&spec]<class T>(ZebTypedParam<T>& typed) {
            for (double value : spec.defaults.View()) typed.values.Add(DefaultValue<T>(value));
        });
    }
}

void RemoveFirstValue(CZebRule& rule, long id) {
    if (CZebParamStorage* p = rule.FindParameterInArray(id))
        VisitTyped(*p, [](auto& typed) {
            if (typed.values.GetSize() > 0) typed.values.RemoveAt(0);
        });
}

void RemoveAllValues(CZebRule& rule, long id) {
    if (CZebParamStorage* p = rule.FindParameterInArray(id)) p->GetParam()->ClearValues();
}

std::wstring FileNamePart(const std::wstring& path) {
    const size_t cut = path.find_last_of(L"\\/");
    return cut == std::wstring::npos ? path : path.substr(cut + 1);
}

ZebXMLNode* ExportRuleXML(CZebRule* rule) {
    if (!rule) return nullptr;
    CZebResourceScope scope;
    ZebXMLDocument* doc = GetSettingsDocument();
    if (!doc) return nullptr;
    ZebXMLNode* node = doc->CreateNode(L"Rule");
    node->AddAttribute(L"Name", rule->Name);
    node->AddAttribute(L"Status", XmlInt(rule->Status));
    node->AddAttribute(L"LifeStatus", XmlInt(rule->LifeStatus));
    node->AddAttribute(L"Summary", rule->Summary);
    node->AddAttribute(L"Module", rule->Module);
    node->AddAttribute(L"RuleModule", rule->RuleModule);
    node->AddAttribute(L"RuleModuleFileName", FileNamePart(rule->RuleModuleFileName));
    node->AddAttribute(L"Severity", XmlInt(rule->Severity));
    node->AddAttribute(L"RuleCategory", rule->RuleCategory);
    for (CZebParamStorage* p : rule->ParamArray) {
        const int32_t op = p->GetParam()->op;
        if (op == ZebOp_None || op == ZebOp_NotWritten) continue;
        std::unique_ptr<ZebXMLNode> child(WriteParameterXML(doc, *p));
        if (!child) {
            ReportUnknownValueType();
            continue;
        }
        node->AppendNode(child.get());
    }
    for (CZEBConstraint* c : rule->ConstraintArray) {
        std::unique_ptr<ZebXMLNode> child(c->GetXMLNode());
        if (child) node->AppendNode(child.get());
    }
    return node;
}

void ImportRuleXML(CZebRule* rule, ZebXMLNode* node) {
    if (!rule || !node) return;
    CopyAttribute(node, L"Name", rule->Name);
    CopyAttribute(node, L"Module", rule->Module);
    CopyAttribute(node, L"RuleModule", rule->RuleModule);
    CopyAttribute(node, L"RuleModuleFileName", rule->RuleModuleFileName);
    rule->Status = HeaderInt(node, L"Status");
    rule->LifeStatus = HeaderInt(node, L"LifeStatus");
    rule->Severity = HeaderInt(node, L"Severity");
    for (CZebParamStorage* p : rule->ParamArray) {
        if (!ReadParameterXML(node, *p)) {
            CZebResourceScope scope;
            ReportUnknownValueType();
            return;
        }
    }
    rule->IsPopulated = true;
    rule->PostPopulate();
}
