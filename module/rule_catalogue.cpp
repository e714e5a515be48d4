#include "module/rule_catalogue.h"

#include <cwctype>

#include "module/assembly_rules_app.h"
#include "rules/bolt_screw_rationalization_rule.h"
#include "rules/contact_material_rule.h"
#include "rules/fastener_accessibility_rule.h"
#include "rules/fastener_alignment_rule.h"
#include "rules/fastener_clearance_rule.h"
#include "rules/fastener_engagement_len_rule.h"
#include "rules/hole_alignment_rule.h"
#include "rules/interference_detection_rule.h"
#include "rules/min_clearance_rule.h"
#include "rules/pref_comp_rule.h"
#include "rules/recomm_thread_connection_rule.h"
#include "rules/slot_alignment_rule.h"

namespace {
template <class Rule>
CZebRule* Make() {
    return new Rule();
}
CZebRule* MakeSlotAlignment() { return new CZEBASMSlotAlignmentCheckRule(8005, 8006, 13090); }

const RuleCatalogueEntry kHole{6027, &Make<CZEBASMHoleAlignmentCheckRule>};
const RuleCatalogueEntry kPrefComp{7000, &Make<CZEBAssemblyCheckPrefCompRule>};
const RuleCatalogueEntry kEngagement{2054, &Make<CZEBAssemblyFastenerEngagementLenRule>};
const RuleCatalogueEntry kMinClearance{6017, &Make<CZEBAssemblyMinClearanceBetPartsRule>};
const RuleCatalogueEntry kInterference{6065, &Make<CZEBAssemblyInterferenceDetectionRule>};
const RuleCatalogueEntry kAccessibility{6074, &Make<CZEBAssemblyFastenerAccessibilityRule>};
const RuleCatalogueEntry kThread{7070, &Make<CZEBAssemblyRecommThreadConnectionRule>};
const RuleCatalogueEntry kClearance{2051, &Make<CZEBAssemblyFastenerClearanceRule>};
const RuleCatalogueEntry kBoltScrew{9028, &Make<CZEBAssemblyBoltScrewRationalizationRule>};
const RuleCatalogueEntry kAlignment{8011, &Make<CZEBAssemblyFastenerAlignmentRule>};
const RuleCatalogueEntry kContact{7064, &Make<CZEBAssemblyCheckContactMaterialRule>};
const RuleCatalogueEntry kSlot{8005, &MakeSlotAlignment};

bool EqualsNoCase(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(a[i]) != std::towlower(b[i])) return false;
    return true;
}
}  // namespace

const std::vector<RuleCatalogueEntry>& RuleCreationOrder() {
    static const std::vector<RuleCatalogueEntry> order{kHole,         kPrefComp, kEngagement, kMinClearance,
                                                       kInterference, kAccessibility, kThread, kClearance,
                                                       kBoltScrew,    kAlignment, kContact,   kSlot};
    return order;
}

const std::vector<RuleCatalogueEntry>& RuleLookupOrder() {
    static const std::vector<RuleCatalogueEntry> order{kHole,         kThread,  kMinClearance, kInterference,
                                                       kAccessibility, kClearance, kPrefComp,  kEngagement,
                                                       kBoltScrew,    kAlignment, kContact,    kSlot};
    return order;
}

CZebRule* CreateRuleByName(const std::wstring& name) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app) return nullptr;
    for (const RuleCatalogueEntry& entry : RuleLookupOrder())
        if (EqualsNoCase(app->LoadDefaultString(entry.nameId), name)) return entry.create();
    return nullptr;
}
