#pragma once

#include "framework/zeb_rule.h"

// Which properties bolts and screws are grouped by; parameters in BoltScrewParams.
class CZEBAssemblyBoltScrewRationalizationRule : public CZebRule {
public:
    CZEBAssemblyBoltScrewRationalizationRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    bool IsApplicable(void* arg) override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    // The summary from the switches, in fixed English text.
    void RebuildSummary();
    // The dialog, then the summary from the stored switches.
    void Configure() override;
};
