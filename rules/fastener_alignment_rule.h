#pragma once

#include "framework/zeb_rule.h"

// Allowed offset between a fastener and its hole axis; parameters in FastenerAlignmentParams.
class CZEBAssemblyFastenerAlignmentRule : public CZebRule {
public:
    CZEBAssemblyFastenerAlignmentRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    // The dialog, then the summary, whatever the dialog's answer.
    void Configure() override;
    // Rebuilds the summary from 8011, the offset and 8021 when the rule holds all three.
    void UpdateSummary();
};
