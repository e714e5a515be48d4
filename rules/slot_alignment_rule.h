#pragma once

#include "framework/zeb_rule.h"
#include "resources/string_ids.h"

// Allowed offset between slots of mating parts, the offset between slot ends and two switches;
// parameters in SlotAlignmentParams.
class CZEBASMSlotAlignmentCheckRule : public CZebRule {
public:
    CZEBASMSlotAlignmentCheckRule(ZebStringId nameId, ZebStringId summaryId, int32_t dialogImageId);
    void InitParameters() override;
    void ImportFromXML(ZebXMLNode* node) override;
    ZebXMLNode* ExportToXML() override;
    long Evaluate(void* a, void* b, void* c) override;
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override;
    void Configure() override;
    // Summary from the slot offset when the rule holds it; otherwise left as it is.
    void RebuildSummary();
};
