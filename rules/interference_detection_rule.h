#pragma once

#include "framework/zeb_rule.h"

// Interference between components: switches, a volume limit and component pairs; parameters in
// InterferenceParams.
class CZEBAssemblyInterferenceDetectionRule : public CZebRule {
public:
    CZEBAssemblyInterferenceDetectionRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
};
