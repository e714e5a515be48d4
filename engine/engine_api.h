#pragma once

// What the host and the engine library exchange. The host resolves ZebCheckAssembly from
// ZEBAssemblyEngine.so at run time and hands it the module's entry points, so the engine sees
// the rules exactly as the module makes them.

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "framework/module_entry_points.h"

class ZebXMLDocument;

struct ZebFinding {
    std::wstring rule;  // the rule's identity name
    int severity = 0;
    std::vector<std::wstring> parts;  // instance paths
    std::optional<double> value;      // in the report's unit (cubed for volumes)
    std::optional<double> limit;
    std::wstring message;
};

struct ZebCheckedPart {
    std::wstring path;
    std::wstring product;
    std::wstring material;
};

struct ZebCheckReport {
    std::wstring assembly;
    long unit = 0;  // the settings document's length unit code
    std::vector<ZebCheckedPart> parts;
    std::vector<std::wstring> rules;  // identity names of the rules checked, in settings order
    std::vector<ZebFinding> findings;
};

enum ZebCheckStatus : int { ZebCheckDone = 0, ZebCheckBadInput = 2, ZebCheckCancelled = 3 };

struct ZebCheckRequest {
    std::string assemblyPath;
    // The settings document and the module's entry points that recreate its rules.
    ZebXMLDocument* settings = nullptr;
    SetXMLDocFn setXMLDoc = nullptr;
    GetRuleFn getRule = nullptr;
    DeleteRuleFn deleteRule = nullptr;
    // Identity or display names of the rules to check (any letter case); empty: every rule the
    // engine evaluates.
    std::vector<std::wstring> onlyRules;
    // 0: one thread per processor.
    unsigned threads = 0;
    // Called now and then with the part of the work done (0 to 1) and what is being done.
    std::function<void(double done, const std::wstring& stage)> progress;
    // Set by the caller to stop the check; it then returns ZebCheckCancelled.
    const std::atomic<bool>* cancel = nullptr;
};

// Returns a ZebCheckStatus; with ZebCheckBadInput `error` says why.
using ZebCheckAssemblyFn = int (*)(const ZebCheckRequest& request, ZebCheckReport& report,
                                   std::string& error);
inline constexpr const char* kEngineFile = "ZEBAssemblyEngine.so";
inline constexpr const char* kEngineEntry = "ZebCheckAssembly";
