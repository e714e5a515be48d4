// The assembly engine on grids of N x N plates (neighbours 0.05 apart, every seventh plate moved
// onto its neighbour): interference and minimum clearance per size, against checking every pair
// exactly, and against the exact computations of the near pairs alone.
#include <sys/resource.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>

#include "engine/assembly.h"
#include "engine/pair_search.h"
#include "engine/rule_checks.h"
#include "engine/step_writer.h"

namespace {
constexpr double kSize = 10.0, kThickness = 1.0, kGap = 0.05, kClearance = 0.1;

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double PeakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

Assembly Grid(int n, const std::filesystem::path& folder) {
    std::vector<SolidToWrite> plates;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            // Every seventh plate overlaps its left neighbour by 0.05.
            const double shift = (i * n + j) % 7 == 3 && j > 0 ? -2 * kGap : 0.0;
            const gp_Pnt corner(j * (kSize + kGap) + shift, i * (kSize + kGap), 0);
            plates.push_back({L"plate",
                              BRepPrimAPI_MakeBox(corner, kSize, kSize, kThickness).Shape(), L"",
                              L""});
        }
    const std::string path = (folder / ("grid" + std::to_string(n) + ".stp")).string();
    std::string error;
    Assembly assembly;
    if (!WriteStepAssembly(path, L"grid", plates, "MM", error) ||
        !ReadStepAssembly(path, assembly, error))
        std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
    return assembly;
}

struct Run {
    double seconds = 0;
    size_t findings = 0;
};

Run Check(const Assembly& assembly) {
    CheckContext context;
    context.unitText = L"mm";
    InterferenceOptions interference;
    ClearanceOptions clearance;
    clearance.general = kClearance;
    std::vector<ZebFinding> findings;
    Run run;
    run.seconds = Seconds([&] {
        CheckInterference(assembly, interference, context, findings);
        CheckClearance(assembly, clearance, context, findings);
    });
    run.findings = findings.size();
    return run;
}

// What the checks compute exactly, for the given pairs: a distance each, a common volume for those
// that touch; on as many threads as the checks use.
double Exact(const Assembly& assembly, const std::vector<PartPair>& pairs, bool volumes) {
    return Seconds([&] {
        RunParallel(
            pairs.size(), 0,
            [&](size_t k) {
                const AssemblyPart& a = assembly.parts[pairs[k].first];
                const AssemblyPart& b = assembly.parts[pairs[k].second];
                if (MeasureDistance(a, b).distance <= kTouchTolerance && volumes)
                    CommonVolume(a, b);
            },
            nullptr, nullptr);
    });
}

std::vector<PartPair> AllPairs(size_t count) {
    std::vector<PartPair> pairs;
    for (size_t i = 0; i < count; ++i)
        for (size_t j = i + 1; j < count; ++j) pairs.emplace_back(int(i), int(j));
    return pairs;
}
}  // namespace

int main() {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / "vantor_engine_bench";
    std::filesystem::create_directories(folder);
    std::map<int, Run> runs;
    std::map<int, Assembly> grids;
    std::printf("%6s %10s %10s %10s %14s\n", "parts", "check s", "findings", "near pairs",
                "peak MiB");
    for (int n : {10, 20, 30}) {
        grids[n] = Grid(n, folder);
        const Run run = Check(grids[n]);
        runs[n] = run;
        std::printf("%6zu %10.3f %10zu %10zu %14.1f\n", grids[n].parts.size(), run.seconds,
                    run.findings, NearPairs(grids[n].parts, kClearance).size(), PeakMegabytes());
    }
    std::printf("t(900) / t(100): %.2f (target at most 12)\n", runs[30].seconds / runs[10].seconds);

    // Every pair exactly on the 100-part grid, scaled by the 900-part grid's pair count.
    const Assembly& small = grids[10];
    const double allSmall = Exact(small, AllPairs(small.parts.size()), true);
    const double pairsSmall = small.parts.size() * (small.parts.size() - 1) / 2.0;
    const double pairsLarge = grids[30].parts.size() * (grids[30].parts.size() - 1) / 2.0;
    const double allLarge = allSmall * pairsLarge / pairsSmall;
    std::printf(
        "every pair exactly, 100 parts: %.3f s; scaled to 900 parts: %.1f s; engine faster by "
        "%.0fx (target at least 20)\n",
        allSmall, allLarge, allLarge / runs[30].seconds);

    // The exact computations of the near pairs alone on the 900-part grid.
    const Assembly& large = grids[30];
    const double exact = Exact(large, NearPairs(large.parts, 0.0), true) +
                         Exact(large, NearPairs(large.parts, kClearance), false);
    std::printf(
        "exact computations of the near pairs alone, 900 parts: %.3f s; whole check / exact: %.2f "
        "(target at most 1.5)\n",
        exact, runs[30].seconds / exact);
    std::filesystem::remove_all(folder);
}
