#pragma once

#include "framework/zeb_rule.h"

// Free space around each fastener for its tool; parameters in FastenerAccessibilityParams.
class CZEBAssemblyFastenerAccessibilityRule : public CZebRule {
public:
    CZEBAssemblyFastenerAccessibilityRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    // The clearances are kept as entered, whatever the unit.
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
};
