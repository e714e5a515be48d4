#pragma once

#include "resources/string_ids.h"

// The sections of the help file that dialogs open with Help, by the id of their anchor. A dialog
// passes its own constant to SetHelpTopic and lists it in kDialogHelpTopics; the help file of
// every language must have a section with each id listed there (its test checks them).
inline constexpr wchar_t kHelpTopicHardwareDatabase[] = L"hardware-database-dialog";
inline constexpr wchar_t kHelpTopicFastenerNameDatabase[] = L"fastener-name-database-dialog";
// The fastener error dialog has no Help button; its section explains the check's outcome.
inline constexpr wchar_t kHelpTopicFastenerError[] = L"fastener-error-dialog";

inline constexpr wchar_t kHelpTopicFastenerClearance[] = L"fastener-clearance-dialog";
inline constexpr wchar_t kHelpTopicFastenerEngagementLength[] =
    L"fastener-engagement-length-dialog";
inline constexpr wchar_t kHelpTopicFastenerAlignment[] = L"fastener-alignment-dialog";
inline constexpr wchar_t kHelpTopicFastenerAccessibility[] = L"fastener-accessibility-dialog";
inline constexpr wchar_t kHelpTopicBoltScrewRationalization[] =
    L"bolt-screw-rationalization-dialog";
inline constexpr wchar_t kHelpTopicRecommThreadTypes[] = L"recommended-thread-types-dialog";
inline constexpr wchar_t kHelpTopicThreadSize[] = L"thread-size-dialog";
inline constexpr wchar_t kHelpTopicInterferenceDetection[] = L"interference-detection-dialog";
inline constexpr wchar_t kHelpTopicMinimumClearance[] = L"minimum-clearance-dialog";
inline constexpr wchar_t kHelpTopicMaterialDatabase[] = L"material-database-dialog";
inline constexpr wchar_t kHelpTopicHoleAlignment[] = L"hole-alignment-dialog";
inline constexpr wchar_t kHelpTopicSlotAlignment[] = L"slot-alignment-dialog";
inline constexpr wchar_t kHelpTopicContactMaterial[] = L"contact-material-dialog";
inline constexpr wchar_t kHelpTopicPreferredComponents[] = L"preferred-components-dialog";

inline constexpr const wchar_t* kDialogHelpTopics[] = {kHelpTopicHardwareDatabase,
                                                       kHelpTopicFastenerNameDatabase,
                                                       kHelpTopicFastenerError,
                                                       kHelpTopicFastenerClearance,
                                                       kHelpTopicFastenerEngagementLength,
                                                       kHelpTopicFastenerAlignment,
                                                       kHelpTopicFastenerAccessibility,
                                                       kHelpTopicBoltScrewRationalization,
                                                       kHelpTopicRecommThreadTypes,
                                                       kHelpTopicThreadSize,
                                                       kHelpTopicInterferenceDetection,
                                                       kHelpTopicMinimumClearance,
                                                       kHelpTopicMaterialDatabase,
                                                       kHelpTopicHoleAlignment,
                                                       kHelpTopicSlotAlignment,
                                                       kHelpTopicContactMaterial,
                                                       kHelpTopicPreferredComponents};

// The sections that explain each rule, by the string id of the rule's name, and the section on
// rule sets: where the rule-set editor's Help opens for the rule chosen in its list.
inline constexpr wchar_t kHelpTopicRuleSets[] = L"rule-sets";
struct ZebRuleHelpTopic {
    ZebStringId nameId;
    const wchar_t* topic;
};
inline constexpr ZebRuleHelpTopic kRuleHelpTopics[] = {
    {IDS_RULE_FASTENER_CLEARANCE, L"rule-fastener-clearance"},
    {IDS_RULE_FASTENER_ENGAGEMENT_LENGTH, L"rule-fastener-engagement-length"},
    {IDS_RULE_RECOMM_THREAD_TYPES, L"rule-recommended-thread-types"},
    {IDS_RULE_FASTENER_ALIGNMENT, L"rule-fastener-alignment"},
    {IDS_RULE_FASTENER_ACCESSIBILITY, L"rule-fastener-accessibility"},
    {IDS_RULE_BOLT_SCREW_RATIONALIZATION, L"rule-bolt-screw-rationalization"},
    {IDS_RULE_INTERFERENCE_DETECTION, L"rule-interference-detection"},
    {IDS_RULE_MIN_CLEARANCE, L"rule-minimum-clearance"},
    {IDS_RULE_HOLE_ALIGNMENT, L"rule-hole-alignment"},
    {IDS_RULE_SLOT_ALIGNMENT, L"rule-slot-alignment"},
    {IDS_RULE_CONTACT_MATERIAL, L"rule-contact-material"},
    {IDS_RULE_PREFERRED_COMPONENTS, L"rule-preferred-components"},
};
