#pragma once

#include "framework/zeb_rule.h"
#include "resources/string_ids.h"

// Allowed offset between slots of mating parts (8004, 9503) and the switches 9606, 9608.
class CZEBASMSlotAlignmentCheckRule : public CZebRule {
public:
    CZEBASMSlotAlignmentCheckRule(ZebStringId nameId, ZebStringId summaryId, int32_t dialogImageId);
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    long Evaluate(void* a, void* b, void* c) override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
    // Summary from 8004 when the rule holds it; otherwise left as it is.
    void RebuildSummary();
};
