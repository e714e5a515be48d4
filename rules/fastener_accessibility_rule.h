#pragma once

#include "framework/zeb_rule.h"

// Free space around each fastener for its tool (6080, 6092, 6093).
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
