#pragma once

#include "framework/zeb_rule.h"

// Preferred components, kept as one encoded table text (7002).
class CZEBAssemblyCheckPrefCompRule : public CZebRule {
public:
    CZEBAssemblyCheckPrefCompRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
};
