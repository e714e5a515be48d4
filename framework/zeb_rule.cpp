#include "framework/zeb_rule.h"

CZebRule::CZebRule() = default;

CZebRule::~CZebRule() {
    DeleteParams();
    ClearConstraints();
}

void CZebRule::DeleteParams() {
    for (CZebParamStorage* p : ParamArray) delete p;
    ParamArray.RemoveAll();
}

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

CZebRule& CZebRule::operator=(const CZebRule& other) {
    if (this == &other) return *this;
    Name = other.Name;
    DisplayName = other.DisplayName;
    Summary = other.Summary;
    Module = other.Module;
    RuleCategory = other.RuleCategory;
    RuleModule = other.RuleModule;
    RuleModuleFileName = other.RuleModuleFileName;
    EngineList = other.EngineList;
    SelectedDatabase = other.SelectedDatabase;
    Status = other.Status;
    Severity = other.Severity;
    LifeStatus = other.LifeStatus;
    DeleteParams();
    for (const CZebParamStorage* p : other.ParamArray) ParamArray.Add(new CZebParamStorage(*p));
    ClearConstraints();
    for (const CZEBConstraint* c : other.ConstraintArray) ConstraintArray.Add(new CZEBConstraint(*c));
    IsPopulated = other.IsPopulated;
    CurrentUnits = other.CurrentUnits;
    MaterialSelection = other.MaterialSelection;
    DBCategory = other.DBCategory;
    DialogImageId = other.DialogImageId;
    RuleStatusWord = other.RuleStatusWord;
    RuleCategoryCode = other.RuleCategoryCode;
    return *this;
}

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

void CZebRule::ClearConstraints() {
    for (CZEBConstraint* c : ConstraintArray) delete c;
    ConstraintArray.RemoveAll();
}
