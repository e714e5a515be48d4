#include "framework/zeb_rule.h"

CZebRule::CZebRule() = default;
CZebRule::CZebRule(const CZebRule& other) = default;
CZebRule::~CZebRule() = default;

long CZebRule::Evaluate(void*, void*, void*) { return 0; }
void CZebRule::ImportFromXML(ZebXMLNode*) {}
ZebXMLNode* CZebRule::ExportToXML() { return nullptr; }
void CZebRule::ConvertUnits(const UnitSetting*, const UnitSetting* to) {
    if (to) CurrentUnits = *to;
}
bool CZebRule::IsApplicable(void*) { return true; }

void CZebRule::ConfigureRule() { Configure(); }
void CZebRule::SetDialogImageInfo(long imageId) { DialogImageId = static_cast<int32_t>(imageId); }
long CZebRule::Import(ZebXMLDocument*, ZebXMLNode* node, void*) {
    ImportFromXML(node);
    return 0;
}

// Every member; the owned parameters and constraints as copies.
CZebRule& CZebRule::operator=(const CZebRule& other) = default;

CZebParamStorage* CZebRule::FindParameterInArray(long id) {
    for (CZebParamStorage* p : ParamArray)
        if (p && p->GetParam()->id == id) return p;
    return nullptr;
}

void CZebRule::SetRuleStatusForAssemblyModel(int32_t status) { RuleStatusWord = status; }
bool CZebRule::ValidateInputData() { return IsPopulated; }
void CZebRule::GetRequiredInputData(void*) {}
void CZebRule::SetInputData(void*) {}
void CZebRule::SetPreExecutionData(void*) {}
long CZebRule::GetRuleId() { return DialogImageId; }
bool CZebRule::GetMaterialStatus() { return !MaterialSelection.empty(); }
void CZebRule::PostPopulate() {}
bool CZebRule::GetCutterStatus() { return false; }
long CZebRule::Heal(void*) { return 0; }
bool CZebRule::IsRuleParametric() { return false; }
bool CZebRule::ValidateInputParameters() { return ValidateInputData(); }
void CZebRule::InitConstraints() { ClearConstraints(); }

void CZebRule::GetConstraintParameters(ZebArray<CZebParamStorage*>* params) {
    if (!params) return;
    for (CZEBConstraint* c : ConstraintArray)
        for (CZebParamStorage* p : c->Params()) params->Add(p);
}

CZebParamStorage* CZebRule::FindParameterInConstraintArray(long id) {
    for (CZEBConstraint* c : ConstraintArray)
        if (CZebParamStorage* p = c->FindParameterInArray(id)) return p;
    return nullptr;
}

void CZebRule::SetRuleCategory(ZEBRuleCategory_e category) {
    RuleCategoryCode = category;
    RuleCategory = std::to_wstring(static_cast<int>(category));
}

CZebParamStorage* CZebRule::CreateParamStorageObject(Type_e type, long id, ZebOperator_e op,
                                                     ZebParamType_e kind, bool enabled, bool) {
    auto* storage = new CZebParamStorage(type);
    ZebTypedParamBase* p = storage->GetParam();
    p->id = static_cast<int32_t>(id);
    p->op = op;
    p->kind = kind;
    p->status = enabled;
    return storage;
}

CZEBConstraint* CZebRule::CreateConstraintObject(ZEBConstraintType_e type, const std::wstring& name,
                                                 bool enabled) {
    auto* c = new CZEBConstraint(type, name, enabled);
    ConstraintArray.Add(c);
    return c;
}

void CZebRule::ClearConstraints() { ConstraintArray.RemoveAll(); }
