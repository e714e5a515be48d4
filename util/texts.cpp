#include "util/texts.h"

#include "app/assembly_rules_app.h"
#include "framework/resource_library.h"
#include "framework/settings_format.h"
#include "framework/zeb_operator.h"
#include "framework/zeb_types.h"

namespace {
const ZebStringId kSeverityIds[] = {IDS_SEVERITY_CRITICAL, IDS_SEVERITY_MAJOR,
                                    IDS_SEVERITY_MODERATE, IDS_SEVERITY_MINOR, IDS_SEVERITY_INFO};

struct UnitText {
    int code;
    ZebStringId stringId;
};
const UnitText kUnitTexts[] = {
    {0, IDS_UNIT_MILLIMETRE}, {1, IDS_UNIT_CENTIMETRE}, {2, IDS_UNIT_METRE},     {3, IDS_UNIT_INCH},
    {4, IDS_UNIT_FOOT},       {6, IDS_UNIT_MICROMETRE}, {7, IDS_UNIT_DECIMETRE}, {8, IDS_UNIT_YARD},
    {9, IDS_UNIT_MIL},        {10, IDS_UNIT_KILOMETRE}};
}  // namespace

int OperatorFromText(const std::wstring& text) { return ZebOperatorFromText(text); }

std::wstring OperatorToText(int code) {
    const wchar_t* text = ZebOperatorText(code);
    return text ? text : std::wstring();
}

std::wstring OperatorSymbol(int code) {
    return code == ZebOp_Range ? std::wstring() : OperatorToText(code);
}

int SeverityComboIndex(int code) { return code >= 1 && code <= 5 ? code - 1 : -1; }

int SeverityFromName(const std::wstring& name) {
    CZebResourceScope scope;
    for (int i = 0; i < 5; ++i)
        if (ZebLoadString(kSeverityIds[i]) == name) return i + 1;
    return 0;
}

void FillSeverityNames(std::list<std::wstring>& names) {
    names.clear();
    CZebResourceScope scope;
    for (ZebStringId id : kSeverityIds) names.push_back(ZebLoadString(id));
}

std::wstring GetUnitText(int code) {
    for (const UnitText& unit : kUnitTexts)
        if (unit.code == code) return LoadLocalizedString(unit.stringId);
    return {};
}

int GetUnitAttribute(ZebXMLNode* node) { return ZebParentUnitAttribute(node); }
