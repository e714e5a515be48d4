#pragma once

#include "framework/zeb_rule.h"

// Clearance limits per fastener name, for condition A and condition B; parameters in
// FastenerClearanceParams.
class CZEBAssemblyFastenerClearanceRule : public CZebRule {
public:
    CZEBAssemblyFastenerClearanceRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    // The rule's dialog, modal and without a parent; it writes into the rule on OK.
    void Configure() override;
};
