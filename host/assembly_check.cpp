#include "host/assembly_check.h"

#include <dlfcn.h>

#include <cmath>
#include <cstdio>
#include <map>

#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "host/settings_lint.h"

bool EngineLoader::Load(const std::string& folder, std::string& error) {
    const std::string path = folder + "/" + kEngineFile;
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) {
        const char* reason = dlerror();
        error = "cannot load " + path + ": " + (reason ? reason : "unknown reason");
        return false;
    }
    Check = reinterpret_cast<ZebCheckAssemblyFn>(dlsym(handle, kEngineEntry));
    if (!Check) error = path + " does not export " + kEngineEntry;
    return Check != nullptr;
}

int RunAssemblyCheck(const EngineLoader& engine, const ModuleLoader& module,
                     ZebXMLDocument& settings, ZebCheckRequest& request, ZebCheckReport& report,
                     std::string& error) {
    request.settings = &settings;
    request.setXMLDoc = module.SetXMLDoc;
    request.getRule = module.GetRule;
    request.deleteRule = module.DeleteRule;
    return engine.Check(request, report, error);
}

std::string SeverityName(int severity) {
    static const char* const names[] = {"Critical", "Major", "Moderate", "Minor", "Info"};
    return severity >= 1 && severity <= 5 ? names[severity - 1] : "Unknown";
}

namespace {
std::string UnitName(long code) {
    const ZebLengthUnit* unit = CZEBUnitConvertor::FindUnit(code);
    return unit ? unit->name : std::to_string(code);
}

std::string Number(const std::optional<double>& value) {
    if (!value) return "null";
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", std::fabs(*value) < 5e-13 ? 0.0 : *value);
    return text;
}

// JSON texts are escaped as lint escapes them.
std::string JsonText(const std::wstring& wide) { return JsonString(ToUtf8(wide)); }

std::string Html(const std::wstring& wide) {
    std::string out;
    for (const char c : ToUtf8(wide)) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string JoinedParts(const ZebFinding& finding, const char* separator) {
    std::string text;
    for (const std::wstring& part : finding.parts)
        text += (text.empty() ? "" : separator) + ToUtf8(part);
    return text;
}
}  // namespace

std::string ReportText(const ZebCheckReport& report) {
    std::string text;
    for (const ZebFinding& finding : report.findings)
        text += ToUtf8(finding.rule) + "\t" + SeverityName(finding.severity) + "\t" +
                JoinedParts(finding, " | ") + "\t" + Number(finding.value) + "\t" +
                Number(finding.limit) + "\t" + ToUtf8(finding.message) + "\n";
    return text;
}

std::string ReportJson(const ZebCheckReport& report) {
    std::string json = "{\"assembly\": " + JsonText(report.assembly) +
                       ", \"unit\": " + JsonText(FromUtf8(UnitName(report.unit))) +
                       ", \"parts\": " + std::to_string(report.parts.size()) + ", \"findings\": [";
    for (size_t i = 0; i < report.findings.size(); ++i) {
        const ZebFinding& finding = report.findings[i];
        json += i ? ",\n  " : "\n  ";
        json += "{\"rule\": " + JsonText(finding.rule) +
                ", \"severity\": " + JsonText(FromUtf8(SeverityName(finding.severity))) +
                ", \"parts\": [";
        for (size_t k = 0; k < finding.parts.size(); ++k)
            json += (k ? ", " : "") + JsonText(finding.parts[k]);
        json += "], \"value\": " + Number(finding.value) + ", \"limit\": " + Number(finding.limit) +
                ", \"message\": " + JsonText(finding.message) + "}";
    }
    return json + (report.findings.empty() ? "]}\n" : "\n]}\n");
}

std::string ReportHtml(const ZebCheckReport& report) {
    // Grouped by rule in the order the rules were checked, then by severity, most severe first.
    std::map<std::pair<size_t, int>, std::vector<const ZebFinding*>> groups;
    for (const ZebFinding& finding : report.findings) {
        size_t rule = 0;
        while (rule < report.rules.size() && report.rules[rule] != finding.rule) ++rule;
        groups[{rule, finding.severity}].push_back(&finding);
    }
    std::string html =
        "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Assembly check: " +
        Html(report.assembly) +
        "</"
        "title>\n<style>body{font-family:sans-serif;margin:2em}table{border-collapse:collapse;"
        "width:100%}"
        "th,td{border:1px solid #bbb;padding:4px "
        "8px;text-align:left;vertical-align:top}th{background:#eee}"
        "td.n{text-align:right;white-space:nowrap}h2{margin-top:1.5em}</style></head><body>\n"
        "<h1>Assembly check</h1>\n<p>Assembly: " +
        Html(report.assembly) + "<br>Parts: " + std::to_string(report.parts.size()) +
        "<br>Unit: " + UnitName(report.unit) +
        "<br>Findings: " + std::to_string(report.findings.size()) + "</p>\n";
    if (report.findings.empty()) html += "<p>No findings.</p>\n";
    for (const auto& [key, findings] : groups) {
        html +=
            "<h2>" + Html(findings.front()->rule) + " &mdash; " + SeverityName(key.second) + " (" +
            std::to_string(findings.size()) +
            ")</h2>\n<table><tr><th>Parts</th><th>Value</th><th>Limit</th><th>Message</th></tr>\n";
        for (const ZebFinding* finding : findings) {
            std::string parts;
            for (const std::wstring& part : finding->parts)
                parts += (parts.empty() ? "" : "<br>") + Html(part);
            html += "<tr><td>" + parts + "</td><td class=\"n\">" +
                    (finding->value ? Number(finding->value) : "") + "</td><td class=\"n\">" +
                    (finding->limit ? Number(finding->limit) : "") + "</td><td>" +
                    Html(finding->message) + "</td></tr>\n";
        }
        html += "</table>\n";
    }
    // What was checked, so that a reader of a mailed report sees what the findings are out of.
    html += "<h2>Parts checked (" + std::to_string(report.parts.size()) +
            ")</h2>\n<table><tr><th>Part</th><th>Product</th><th>Material</th></tr>\n";
    for (const ZebCheckedPart& part : report.parts)
        html += "<tr><td>" + Html(part.path) + "</td><td>" + Html(part.product) + "</td><td>" +
                (part.material.empty() ? std::string("no material") : Html(part.material)) +
                "</td></tr>\n";
    return html + "</table>\n</body></html>\n";
}
