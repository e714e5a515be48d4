#include "module/rule_catalogue.h"

#include "app/assembly_rules_app.h"
#include "dialogs/common/rule_dialog.h"
#include "dialogs/fastener/bolt_screw_rationalization_dlg.h"
#include "dialogs/fastener/fastener_accessibility_dlg.h"
#include "dialogs/fastener/fastener_alignment_dlg.h"
#include "dialogs/fastener/fastener_clearance_dlg.h"
#include "dialogs/fastener/fastener_engagement_len_dlg.h"
#include "dialogs/fastener/recomm_thread_types_dlg.h"
#include "dialogs/parts/alignment_check_dlg.h"
#include "dialogs/parts/contact_material_dlg.h"
#include "dialogs/parts/interf_det_main_dlg.h"
#include "dialogs/parts/min_clearance_dlg.h"
#include "dialogs/parts/pref_comp_dlg.h"
#include "framework/case_fold.h"
#include "module/guarded_rule.h"
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
    return new CGuardedRule<Rule>();
}
CZebRule* MakeSlotAlignment() {
    return new CGuardedRule<CZEBASMSlotAlignmentCheckRule>(IDS_RULE_SLOT_ALIGNMENT,
                                                           IDS_SUMMARY_SLOT_ALIGNMENT, 13090);
}

const RuleCatalogueEntry kHole{IDS_RULE_HOLE_ALIGNMENT, &Make<CZEBASMHoleAlignmentCheckRule>,
                               &RunRuleDialogModal<CZEBSMHoleAlignmentCheckDlg>};
const RuleCatalogueEntry kPrefComp{IDS_RULE_PREFERRED_COMPONENTS,
                                   &Make<CZEBAssemblyCheckPrefCompRule>,
                                   &RunRuleDialogModal<CZEBAssemblyCheckPrefCompDlg>};
const RuleCatalogueEntry kEngagement{IDS_RULE_FASTENER_ENGAGEMENT_LENGTH,
                                     &Make<CZEBAssemblyFastenerEngagementLenRule>,
                                     &RunRuleDialogModal<CZEBAssemblyFastenerEngagementLenDlg>};
const RuleCatalogueEntry kMinClearance{IDS_RULE_MIN_CLEARANCE,
                                       &Make<CZEBAssemblyMinClearanceBetPartsRule>,
                                       &RunRuleDialogModal<CZEBAssemblyMinClearanceBetPartsDlg>};
const RuleCatalogueEntry kInterference{IDS_RULE_INTERFERENCE_DETECTION,
                                       &Make<CZEBAssemblyInterferenceDetectionRule>,
                                       &RunRuleDialogModal<ZEBASMInterfDetMainDlg>};
const RuleCatalogueEntry kAccessibility{IDS_RULE_FASTENER_ACCESSIBILITY,
                                        &Make<CZEBAssemblyFastenerAccessibilityRule>,
                                        &RunRuleDialogModal<CZEBAssemblyFastenerAccessibilityDlg>};
const RuleCatalogueEntry kThread{IDS_RULE_RECOMM_THREAD_TYPES,
                                 &Make<CZEBAssemblyRecommThreadConnectionRule>,
                                 &RunRuleDialogModal<CZEBAssemblyRecommThreadTypesInConnectionDlg>};
const RuleCatalogueEntry kClearance{IDS_RULE_FASTENER_CLEARANCE,
                                    &Make<CZEBAssemblyFastenerClearanceRule>,
                                    &RunRuleDialogModal<CZEBAssemblyFastenerClearanceDlg>};
const RuleCatalogueEntry kBoltScrew{IDS_RULE_BOLT_SCREW_RATIONALIZATION,
                                    &Make<CZEBAssemblyBoltScrewRationalizationRule>,
                                    &RunRuleDialogModal<CDFASMBoltScrewRationalizationDlg>};
const RuleCatalogueEntry kAlignment{IDS_RULE_FASTENER_ALIGNMENT,
                                    &Make<CZEBAssemblyFastenerAlignmentRule>,
                                    &RunRuleDialogModal<CZEBAssemblyFastenerAlignmentDlg>};
const RuleCatalogueEntry kContact{IDS_RULE_CONTACT_MATERIAL,
                                  &Make<CZEBAssemblyCheckContactMaterialRule>,
                                  &RunRuleDialogModal<CZEBAssemblyCheckContactMaterialDlg>};
const RuleCatalogueEntry kSlot{IDS_RULE_SLOT_ALIGNMENT, &MakeSlotAlignment,
                               &RunRuleDialogModal<CZEBASMSlotAlignmentCheckDlg>};
}  // namespace

const std::vector<RuleCatalogueEntry>& RuleCreationOrder() {
    static const std::vector<RuleCatalogueEntry> order{
        kHole,   kPrefComp,  kEngagement, kMinClearance, kInterference, kAccessibility,
        kThread, kClearance, kBoltScrew,  kAlignment,    kContact,      kSlot};
    return order;
}

const std::vector<RuleCatalogueEntry>& RuleLookupOrder() {
    static const std::vector<RuleCatalogueEntry> order{
        kHole,     kThread,     kMinClearance, kInterference, kAccessibility, kClearance,
        kPrefComp, kEngagement, kBoltScrew,    kAlignment,    kContact,       kSlot};
    return order;
}

CZebRule* CreateRuleByName(const std::wstring& name) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app) return nullptr;
    for (const RuleCatalogueEntry& entry : RuleLookupOrder())
        if (ZebEqualsNoCase(app->LoadDefaultString(entry.nameId), name)) return entry.create();
    return nullptr;
}
