#pragma once

#include "framework/zeb_rule.h"

// Recommended thread type pairs and thread sizes; parameters in RecommThreadParams.
class CZEBAssemblyRecommThreadConnectionRule : public CZebRule {
public:
    CZEBAssemblyRecommThreadConnectionRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    // Unit changes touch no value: thread texts carry their own units.
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    long Import(ZebXMLDocument* doc, ZebXMLNode* node, void* context) override;
    void Configure() override;
};
