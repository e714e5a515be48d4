#pragma once

#include "framework/zeb_rule.h"

// Allowed axis offset between aligned holes, which holes are checked and the diameter
// tolerance; parameters in HoleAlignmentParams.
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
