#pragma once

#include <string>

#include "engine/engine_api.h"
#include "host/module_loader.h"

// Loads ZEBAssemblyEngine.so from the module's folder and runs it on a settings document with the
// module the host has loaded. Kept loaded, as the module is.
class EngineLoader {
public:
    // False with `error` set when the engine cannot be loaded or lacks its entry point.
    bool Load(const std::string& folder, std::string& error);
    ZebCheckAssemblyFn Check = nullptr;
};

// Fills the module's entry points into `request` and runs the engine; returns a ZebCheckStatus.
int RunAssemblyCheck(const EngineLoader& engine, const ModuleLoader& module,
                     ZebXMLDocument& settings, ZebCheckRequest& request, ZebCheckReport& report,
                     std::string& error);

// The report as text (one finding per line), JSON, or one self-contained HTML page.
std::string ReportText(const ZebCheckReport& report);
std::string ReportJson(const ZebCheckReport& report);
std::string ReportHtml(const ZebCheckReport& report);
// The English name of a severity code 1 to 5 ("Critical" ... "Info").
std::string SeverityName(int severity);
