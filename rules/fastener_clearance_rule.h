#pragma once

#include "framework/zeb_rule.h"

// Clearance limits per fastener name: 2052 holds (name, clearance A, clearance B) rows, 9450
// the alternative (name, value, value) rows.
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
