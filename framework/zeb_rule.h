#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

#include "framework/constraint.h"
#include "framework/param_storage.h"
#include "framework/vantor_export.h"
#include "framework/zeb_array.h"
#include "framework/zeb_owning_array.h"
#include "framework/zeb_types.h"

class ZebXMLDocument;
class ZebXMLNode;

// Base class of every rule. The first eight virtual operations after the destructor are the
// module's; the rest are the framework's own. A rule owns its parameters and constraints;
// copying a rule copies them.
class VANTOR_FW_API CZebRule {
public:
    CZebRule();
    CZebRule(const CZebRule& other);
    virtual ~CZebRule();

    // ---- module side
    virtual void InitParameters() {}
    virtual long Evaluate(void* a, void* b, void* c);
    virtual void ImportFromXML(ZebXMLNode* node);
    virtual ZebXMLNode* ExportToXML();
    virtual void ClearState() {}
    virtual void ConvertUnits(const UnitSetting* from, const UnitSetting* to);
    virtual bool IsApplicable(void* arg);
    virtual void Configure() {}

    // ---- framework side
    virtual void ConfigureRule();
    virtual void SetDialogImageInfo(long imageId);
    virtual long Import(ZebXMLDocument* doc, ZebXMLNode* node, void* context);
    virtual CZebRule& operator=(const CZebRule& other);
    virtual CZebParamStorage* FindParameterInArray(long id);
    virtual void SetRuleStatusForAssemblyModel(int32_t status);
    virtual bool ValidateInputData();
    virtual void GetRequiredInputData(void* data);
    virtual void SetInputData(void* data);
    virtual void SetPreExecutionData(void* data);
    virtual long GetRuleId();
    virtual bool GetMaterialStatus();
    virtual void PostPopulate();
    virtual bool GetCutterStatus();
    virtual long Heal(void* data);
    virtual bool IsRuleParametric();
    virtual bool ValidateInputParameters();
    virtual void InitConstraints();
    virtual void GetConstraintParameters(ZebArray<CZebParamStorage*>* params);
    virtual CZebParamStorage* FindParameterInConstraintArray(long id);

    // ---- non-virtual framework services
    void SetRuleCategory(ZEBRuleCategory_e category);
    // A new parameter with the given id and codes; the caller appends it to ParamArray, which
    // then owns it.
    CZebParamStorage* CreateParamStorageObject(Type_e type, long id, ZebOperator_e op,
                                               ZebParamType_e kind, bool enabled, bool second);
    CZEBConstraint* CreateConstraintObject(ZEBConstraintType_e type, const std::wstring& name,
                                           bool enabled);
    void ClearConstraints();

    // ---- rule record, in declared order
    std::wstring Name;
    std::wstring DisplayName;
    std::wstring Summary;
    std::wstring Module;
    std::wstring RuleCategory;
    std::wstring RuleModule;
    std::wstring RuleModuleFileName;
    std::list<std::wstring> EngineList;
    std::wstring SelectedDatabase;
    int32_t Status = 0;
    int32_t Severity = 0;
    int32_t LifeStatus = 0;
    ZebOwningArray<CZebParamStorage> ParamArray;
    ZebOwningArray<CZEBConstraint> ConstraintArray;
    bool IsPopulated = false;
    UnitSetting CurrentUnits;
    // Material group name -> chosen materials; kept in the order groups were added.
    std::vector<std::pair<std::wstring, std::vector<std::wstring>>> MaterialSelection;
    std::wstring DBCategory;
    int32_t DialogImageId = 0;

    // ---- framework-held state the module only reads
    int32_t RuleStatusWord = 0;
    int32_t RuleCategoryCode = 0;
};
