#pragma once

#include "framework/zeb_rule.h"

// Thread engagement length per fastener name; parameters in FastenerEngagementParams.
class CZEBAssemblyFastenerEngagementLenRule : public CZebRule {
public:
    CZEBAssemblyFastenerEngagementLenRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    // The rule's dialog, modal and without a parent; it writes into the rule on OK.
    void Configure() override;
};
