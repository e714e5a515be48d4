#pragma once

#include <string>

class CWrapperComboCtrl;

// The database module the host loads before the rules (ZEBDatabaseu.so, in the module's own
// folder). The dialogs that list fastener names use it only when it is loaded.

// True, with `name` from the module's GetModuleName ("Module Name" when it names none), when the
// database module is loaded from this module's folder and exports GetModuleName.
bool GetLoadedDatabaseModuleName(std::wstring& name);

// The database drop-down of the fastener dialogs: the database module's name as its one entry,
// selected. False, and the list left empty, without a loaded database module.
bool FillDatabaseModuleList(CWrapperComboCtrl& list);
