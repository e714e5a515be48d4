#pragma once

#include "framework/zeb_rule.h"

// Allowed axis offset between aligned holes (7800) and its companions 7092, 7094, 9084.
class CZEBASMHoleAlignmentCheckRule : public CZebRule {
public:
    CZEBASMHoleAlignmentCheckRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    long Evaluate(void* a, void* b, void* c) override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
    void RebuildSummary();
};
