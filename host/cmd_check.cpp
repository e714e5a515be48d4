// vantor-rules check: a STEP assembly against the part-relation rules of a settings file.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>

#include "framework/text_convert.h"
#include "host/assembly_check.h"
#include "host/host_command.h"
#include "host/settings_file.h"

namespace {
std::atomic<bool> g_interrupted{false};

void OnInterrupt(int) { g_interrupted = true; }

// Takes --rule and --format out of `words`; false, after the message, for a bad value.
bool TakeCheckOptions(std::vector<std::string>& words, std::vector<std::wstring>& rules,
                      std::string& format) {
    std::vector<std::string> rest;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] != "--rule" && words[i] != "--format") {
            rest.push_back(words[i]);
            continue;
        }
        if (i + 1 >= words.size()) {
            std::fprintf(stderr, "vantor-rules: option %s needs a value\n", words[i].c_str());
            return false;
        }
        if (words[i] == "--rule")
            rules.push_back(FromUtf8(words[++i]));
        else
            format = words[++i];
    }
    if (format != "text" && format != "json" && format != "html") {
        std::fprintf(stderr, "vantor-rules: --format takes text, json or html, not '%s'\n",
                     format.c_str());
        return false;
    }
    words = std::move(rest);
    return true;
}

// One line on standard error whenever the stage or the tenth of the work changes.
void ShowProgress(double done, const std::wstring& stage) {
    static std::wstring lastStage;
    static int lastTenth = -1;
    const int tenth = static_cast<int>(done * 10);
    if (stage == lastStage && tenth == lastTenth) return;
    lastStage = stage;
    lastTenth = tenth;
    std::fprintf(stderr, "vantor-rules: %3d%% %s\n", static_cast<int>(done * 100),
                 ToUtf8(stage).c_str());
}

int RunCheck(const std::vector<std::string>& given) {
    std::vector<std::string> words = given;
    std::vector<std::wstring> rules;
    std::string format = "text";
    CommandArgs args;
    if (!TakeCheckOptions(words, rules, format) || !ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() != 2 || args.unit) {
        std::fprintf(stderr,
                     "vantor-rules: check needs a settings file and an assembly, and no --unit "
                     "(see vantor-rules --help)\n");
        return 2;
    }
    ZebXMLDocument settings;
    if (!ReadSettingsFile(args.positional[0], settings)) return 2;
    ModuleLoader module;
    if (!LoadModule(module, args)) return 2;
    EngineLoader engine;
    std::string error;
    if (!engine.Load(ModuleLoader::ModuleFolder(args.moduleDir), error)) {
        std::fprintf(stderr, "vantor-rules: %s\n", error.c_str());
        return 2;
    }
    ZebCheckRequest request;
    request.assemblyPath = args.positional[1];
    request.onlyRules = rules;
    request.progress = &ShowProgress;
    request.cancel = &g_interrupted;
    std::signal(SIGINT, &OnInterrupt);
    ZebCheckReport report;
    const int status = RunAssemblyCheck(engine, module, settings, request, report, error);
    std::signal(SIGINT, SIG_DFL);
    if (status == ZebCheckCancelled) {
        std::fprintf(stderr, "vantor-rules: check cancelled; no report written\n");
        return 2;
    }
    if (status != ZebCheckDone) {
        std::fprintf(stderr, "vantor-rules: %s\n", error.c_str());
        return 2;
    }
    const std::string text = format == "json"   ? ReportJson(report)
                             : format == "html" ? ReportHtml(report)
                                                : ReportText(report);
    if (args.output.empty()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
        std::ofstream out(args.output, std::ios::binary | std::ios::trunc);
        if (!(out << text) || !out.flush()) {
            std::fprintf(stderr, "vantor-rules: cannot write %s\n", args.output.c_str());
            return 2;
        }
    }
    std::fprintf(stderr, "vantor-rules: %zu parts, %zu findings\n", report.parts.size(),
                 report.findings.size());
    return report.findings.empty() ? 0 : 1;
}
}  // namespace

VANTOR_HOST_COMMAND(
    check, "check",
    "SETTINGS ASSEMBLY [--rule NAME]... [--format text|json|html] [-o REPORT] [--module-dir DIR]",
    "Checks the STEP assembly ASSEMBLY against the rules of SETTINGS that are switched on\n"
    "(only the rules named by --rule, identity or display name, when given), in the settings'\n"
    "length unit. Writes one finding per line (text), a JSON document or one HTML page to\n"
    "REPORT or standard output; progress goes to standard error. Exit status 0 without\n"
    "findings, 1 with findings, 2 when an input cannot be read or the check was interrupted.",
    &RunCheck);
