#pragma once

#include <list>
#include <string>

#include "framework/zeb_array.h"

class CZebRule;
class QWidget;
class ZebXMLDocument;
class ZebXMLNode;

// The module's exported functions, by the names a loader resolves and the types it casts to.
using SetXMLDocFn = void (*)(ZebXMLDocument* doc);
using GetAllRulesFn = void (*)(ZebArray<CZebRule*>* rules);
using GetRuleFn = void (*)(ZebXMLNode* node, CZebRule** rule);
using DeleteRuleFn = void (*)(CZebRule** rule);
using GetModuleNameFn = void (*)(std::wstring& text);
using GetModuleSummaryFn = void (*)(std::wstring& text);
using SetDBModuleListFn = void (*)(const std::list<std::wstring>& modules);
using LaunchFastenerDatabaseDlgFn = void (*)(QWidget* parent);

#define VANTOR_MODULE_API extern "C" __attribute__((visibility("default")))
