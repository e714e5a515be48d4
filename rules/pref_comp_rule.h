#pragma once

#include "framework/zeb_rule.h"

// Preferred components, kept as one encoded table text; parameters in PrefCompParams.
class CZEBAssemblyCheckPrefCompRule : public CZebRule {
public:
    CZEBAssemblyCheckPrefCompRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
};
