#pragma once

#include <list>
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

// The database drop-down of the contact material dialog: the name of every module of `modules`
// that loads and names itself, in list order (the libraries stay loaded). Selected: the first
// entry when `selected` is empty, else the entry of the module whose file name is `selected`
// (letter case aside); modules that are not listed still count for that position. False, and
// the list left empty, when `modules` is empty.
bool FillDatabaseModuleList(CWrapperComboCtrl& list, const std::list<std::wstring>& modules,
                            const std::wstring& selected);
