#pragma once

// The sections of the help file that dialogs open with Help, by the id of their anchor. A dialog
// passes its own constant to SetHelpTopic and lists it in kDialogHelpTopics; the help file of
// every language must have a section with each id listed there (its test checks them).
inline constexpr wchar_t kHelpTopicHardwareDatabase[] = L"hardware-database-dialog";

inline constexpr const wchar_t* kDialogHelpTopics[] = {kHelpTopicHardwareDatabase};
