#pragma once

#include "framework/zeb_rule.h"

// Interference between components: switches, a volume limit (8978) and component pairs (6068).
class CZEBAssemblyInterferenceDetectionRule : public CZebRule {
public:
    CZEBAssemblyInterferenceDetectionRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
};
