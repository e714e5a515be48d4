#pragma once

#include "framework/zeb_rule.h"

// Material pairs that must not touch and the contact distance; parameters in
// ContactMaterialParams.
class CZEBAssemblyCheckContactMaterialRule : public CZebRule {
public:
    CZEBAssemblyCheckContactMaterialRule();
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
    long Import(ZebXMLDocument* doc, ZebXMLNode* node, void* context) override;
};
