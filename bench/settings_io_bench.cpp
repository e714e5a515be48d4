// Reading, converting and writing a settings document with large fastener tables, against the
// bare XML library loading and saving the same file. Every phase runs in a child process of its
// own, so that its time and its peak memory (above what the process held when the phase began)
// are its alone; the phases take turns. Prints both and their ratios, for 10,000 and 100,000 rows
// per table.
//
//   build/bench/settings_io_bench [ROWS...]
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "host/module_loader.h"
#include "host/settings_file.h"
#include "util/rule_params.h"

namespace fs = std::filesystem;

namespace {
constexpr int kRuns = 9;

// Resident memory now and its peak since the last reset, in KiB.
long StatusKiB(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::strtol(line.c_str() + std::strlen(field), nullptr, 10);
    return 0;
}

// Starts the peak over from the memory held now.
void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

// The middle of `times`, which it sorts.
double Median(std::vector<double>& times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

struct Sample {
    double seconds;
    long peakKiB;
};

// Runs `body` in a child process and hands back what it returns (a plain value), or nothing
// when the child could not say. Memory this process freed but still holds would let a child
// reuse resident pages that another run paid for; it goes back first, so every child starts
// alike.
template <class T>
std::optional<T> InChild(const std::function<std::optional<T>()>& body) {
    static_assert(std::is_trivially_copyable_v<T>);
    int pipeFds[2];
    if (pipe(pipeFds) != 0) std::abort();
    malloc_trim(0);
    const pid_t child = fork();
    if (child == 0) {
        close(pipeFds[0]);
        const std::optional<T> result = body();
        if (!result || write(pipeFds[1], &*result, sizeof(T)) != sizeof(T)) _exit(2);
        _exit(0);
    }
    close(pipeFds[1]);
    T result{};
    const bool ok = read(pipeFds[0], &result, sizeof result) == sizeof result;
    close(pipeFds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return ok ? std::optional<T>(result) : std::nullopt;
}

// Runs `phase` in a child: its wall time and how far its resident memory rose above the start.
std::optional<Sample> RunInChild(const std::function<bool()>& phase) {
    return InChild<Sample>([&]() -> std::optional<Sample> {
        ResetPeak();
        const long start = StatusKiB("VmRSS:");
        const auto t0 = std::chrono::steady_clock::now();
        if (!phase()) return std::nullopt;
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        return Sample{seconds, StatusKiB("VmHWM:") - start};
    });
}

// No run starts with another's output still on the disk being written back or freed.
void StartAlike(const fs::path& output) {
    std::error_code ignored;
    fs::remove(output, ignored);
    sync();
}

struct Phase {
    const char* name;
    std::function<bool()> run;
};

// Each phase `kRuns` times, taking turns, so that whatever else the machine does at a time falls
// on every phase alike. Before each run the output goes and the disk is synced: no phase starts
// with another's file still being written back or freed. The median time and the largest peak
// of each phase, in order.
std::vector<Sample> Measure(const std::vector<Phase>& phases, const fs::path& output) {
    std::vector<std::vector<double>> times(phases.size());
    std::vector<long> peaks(phases.size(), 0);
    for (int i = 0; i < kRuns; ++i) {
        for (size_t p = 0; p < phases.size(); ++p) {
            StartAlike(output);
            const std::optional<Sample> s = RunInChild(phases[p].run);
            if (!s) {
                std::fprintf(stderr, "settings_io_bench: %s failed\n", phases[p].name);
                std::exit(1);
            }
            times[p].push_back(s->seconds);
            peaks[p] = std::max(peaks[p], s->peakKiB);
        }
    }
    std::vector<Sample> samples;
    for (size_t p = 0; p < phases.size(); ++p) samples.push_back({Median(times[p]), peaks[p]});
    return samples;
}

// Every rule at its defaults, with `rows` rows like "M8X123-ISO4017 | 3.5 | 5.25" in each of the
// fastener clearance tables of conditions A and B.
bool WriteDocument(const ModuleLoader& loader, const fs::path& path, int rows) {
    ZebXMLDocument doc;
    std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(doc, 0));
    loader.SetXMLDoc(&doc);
    AppendDefaultRules(loader, parent.get(), 0);
    loader.SetXMLDoc(nullptr);
    std::string text = doc.GetXML();

    pugi::xml_document xml;
    if (!xml.load_string(text.c_str())) return false;
    for (const pugi::xpath_node& found :
         xml.select_nodes("//Rule[@Name='Fastener Clearance']/Parameter")) {
        pugi::xml_node rule = found.node();
        const std::string type = rule.attribute("Type").value();
        if (type != std::to_string(FastenerClearanceParams::kConditionA.id) &&
            type != std::to_string(FastenerClearanceParams::kConditionB.id))
            continue;
        pugi::xml_node before = rule.child("ResultCriteria");
        for (int i = 0; i < rows; ++i) {
            pugi::xml_node value =
                before ? rule.insert_child_before("Value", before) : rule.append_child("Value");
            value.append_attribute("Attribute1") =
                ("M" + std::to_string(8 + i % 40) + "X" + std::to_string(i) + "-ISO4017").c_str();
            value.append_attribute("Attribute2") = "3.500000";
            value.append_attribute("Attribute3") = "5.250000";
        }
    }
    return xml.save_file(path.c_str(), "  ", pugi::format_default, pugi::encoding_utf8);
}

// Where the time of one convert goes, step by step as RewriteAndWrite takes them: the median of
// each step over `kRuns` children, each running the steps once in order.
void PrintSteps(const ModuleLoader& loader, const fs::path& input, const fs::path& output) {
    static const char* const kSteps[] = {"load",       "read",  "drop input",
                                         "convert",    "write", "save (the rules go meanwhile)",
                                         "free output"};
    constexpr size_t kCount = sizeof kSteps / sizeof kSteps[0];
    std::vector<std::vector<double>> times(kCount);
    for (int run = 0; run < kRuns; ++run) {
        StartAlike(output);
        const auto laps =
            InChild<std::array<double, kCount>>([&]() -> std::optional<std::array<double, kCount>> {
                std::array<double, kCount> laps{};
                size_t step = 0;
                using Clock = std::chrono::steady_clock;
                auto start = Clock::now();
                const auto lap = [&] {
                    const auto now = Clock::now();
                    laps[step++] = std::chrono::duration<double>(now - start).count();
                    start = now;
                };
                ZebXMLDocument in, out;
                std::string message;
                if (!LoadSettingsFile(input.string(), in, message)) return std::nullopt;
                lap();
                std::vector<std::unique_ptr<RuleHandle>> rules;
                loader.SetXMLDoc(&in);
                for (const auto& node : SettingsRuleElements(in))
                    if (CZebRule* rule = RecreateRule(loader, node.get()))
                        rules.push_back(std::make_unique<RuleHandle>(loader, rule));
                lap();
                in.Clear();
                lap();
                const UnitSetting from{0, 0}, to{3, 0};
                for (const auto& rule : rules) (*rule)->ConvertUnits(&from, &to);
                lap();
                std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(out, 3));
                loader.SetXMLDoc(&out);
                for (const auto& rule : rules) {
                    std::unique_ptr<ZebXMLNode> exported((*rule)->ExportToXML());
                    if (exported) parent->AppendNode(exported.get());
                }
                lap();
                std::thread release([&rules] { rules.clear(); });
                const bool saved = SaveSettingsFile(out, output.string(), message);
                release.join();
                if (!saved) return std::nullopt;
                lap();
                out.Clear();
                lap();
                loader.SetXMLDoc(nullptr);
                return laps;
            });
        if (!laps) {
            std::fprintf(stderr, "settings_io_bench: the steps failed\n");
            std::exit(1);
        }
        for (size_t i = 0; i < kCount; ++i) times[i].push_back((*laps)[i]);
    }
    std::printf("  steps of convert (medians):");
    for (size_t i = 0; i < kCount; ++i)
        std::printf(" %s %.4f s%s", kSteps[i], Median(times[i]), i + 1 < kCount ? "," : "\n");
}

void Print(const char* what, const Sample& s, const Sample& floor) {
    std::printf("  %-28s %8.3f s %9.1f MiB   time %5.2fx  memory %5.2fx\n", what, s.seconds,
                s.peakKiB / 1024.0, s.seconds / floor.seconds,
                static_cast<double>(s.peakKiB) / static_cast<double>(floor.peakKiB));
}
}  // namespace

int main(int argc, char** argv) {
    std::vector<int> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty()) sizes = {10000, 100000};

    ModuleLoader loader;
    std::string error;
    if (!loader.Load(ModuleLoader::ModuleFolder(""), error)) {
        std::fprintf(stderr, "settings_io_bench: %s\n", error.c_str());
        return 1;
    }
    const fs::path dir =
        fs::temp_directory_path() / ("vantor-settings-bench-" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path input = dir / "settings.xml", output = dir / "out.xml";

    for (int rows : sizes) {
        if (!WriteDocument(loader, input, rows)) {
            std::fprintf(stderr, "settings_io_bench: cannot write the document\n");
            return 1;
        }
        std::printf(
            "%d rows per table, %.1f MB document (median of %d runs, peak memory above the "
            "start)\n",
            rows, fs::file_size(input) / 1e6, kRuns);
        // As `vantor-rules resave` and `convert` do.
        const auto rewrite = [&](std::optional<int> unit) {
            ZebXMLDocument in;
            std::string message;
            return LoadSettingsFile(input.string(), in, message) &&
                   RewriteAndWrite(loader, in, unit, output.string());
        };
        const std::vector<Phase> phases = {
            {"XML library load + save",
             [&] {
                 pugi::xml_document doc;
                 return doc.load_file(input.c_str()) && doc.save_file(output.c_str(), "  ");
             }},
            {"read (show)",
             [&] {
                 ZebXMLDocument in;
                 std::string message;
                 if (!LoadSettingsFile(input.string(), in, message)) return false;
                 loader.SetXMLDoc(&in);
                 for (const auto& node : SettingsRuleElements(in)) {
                     CZebRule* rule = RecreateRule(loader, node.get());
                     if (!rule) return false;
                     RuleHandle handle(loader, rule);
                 }
                 return true;
             }},
            {"read + write (resave)", [&] { return rewrite(std::nullopt); }},
            {"read + convert + write", [&] { return rewrite(3); }},
        };
        const std::vector<Sample> samples = Measure(phases, output);
        for (size_t p = 0; p < phases.size(); ++p) Print(phases[p].name, samples[p], samples[0]);
        PrintSteps(loader, input, output);
    }
    fs::remove_all(dir);
    return 0;
}
