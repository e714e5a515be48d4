#pragma once

#include <cstdint>

class CWrapperComboCtrl;

// The severity list of every rule dialog: the five severity names in code order, with the rule's
// severity selected (nothing for a code outside 1 to 5).
void LoadSeverityList(CWrapperComboCtrl& list, int32_t severity);
// The code of the selected name into `severity`. With nothing selected, `severity` stays and the
// list shows it again.
void StoreSeverityList(CWrapperComboCtrl& list, int32_t& severity);
