#pragma once

#include "framework/zeb_rule.h"

// Minimum clearance between parts: a general clearance and per-pair clearances; parameters in
// MinClearanceParams.
class CZEBAssemblyMinClearanceBetPartsRule : public CZebRule {
public:
    CZEBAssemblyMinClearanceBetPartsRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
    // General clearance part, then the part-pair part, each as its switch says.
    void RebuildSummary();

private:
    // The general clearance part, whatever its switch says.
    std::wstring GeneralClearanceSummary();
};
