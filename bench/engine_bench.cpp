// The assembly engine on grids of N x N plates (neighbours 0.05 apart, every seventh plate moved
// onto its neighbour): interference and minimum clearance per size, against checking every pair
// exactly, and against the exact computations of the near pairs alone. Then grids of N x N bolted
// joints against every rule, with feature recognition timed alone (see joints::Grids).
#include <malloc.h>
#include <sys/resource.h>

#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include "database/service/data_helper.h"
#include "engine/assembly.h"
#include "engine/features.h"
#include "engine/pair_search.h"
#include "engine/rule_checks.h"
#include "engine/step_writer.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "host/assembly_check.h"
#include "host/settings_file.h"
#include "tests/engine/joint_shapes.h"
#include "util/rule_params.h"
#include "util/string_table.h"

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

void PlateGrids(const std::filesystem::path& folder) {
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
}

// Bolted joints: N x N pairs of plates 40 x 40 x 10, 2 apart, each pair held by an M8 bolt through
// holes 9 into a nut 6.5 thick, with a slot 6 x 20 through both plates. Every seventh upper plate
// has its hole 0.7 off, into the bolt's shank, and its slot 1 off; odd joints have bolts 2 longer.
// The whole check of every rule the engine checks, through its entry point as the command line runs
// it.
namespace joints {
constexpr double kPlate = 40.0, kJointGap = 2.0;

// Resident memory's peak since the last ResetPeak, in MiB.
double PeakSinceReset() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::strtod(line.c_str() + 6, nullptr) / 1024.0;
    return 0.0;
}
// Starts the peak over from the memory held now, after what earlier grids freed went back.
void ResetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

// The parts of one joint at the origin; a grid places copies, each a shape of its own as in a
// file whose parts were modelled one by one.
struct JointShapes {
    TopoDS_Shape lower, upper, upperOff, bolt, longBolt, nut;
};

JointShapes MakeJoint() {
    using namespace joint_shapes;
    const double c = kPlate / 2;
    JointShapes s;
    s.lower = CutSlot(Drill(Plate(0, 0, 0, kPlate, kPlate, 10), gp_Pnt(c, c, -1), gp::DZ(), 9, 12),
                      c, 8, -1, 6, 20, 12);
    const TopoDS_Shape upper = Plate(0, 0, 10, kPlate, kPlate, 10);
    s.upper = Drill(CutSlot(upper, c, 8, 9, 6, 20, 12), gp_Pnt(c, c, 9), gp::DZ(), 9, 12);
    s.upperOff = Drill(CutSlot(upper, c, 9, 9, 6, 20, 12), gp_Pnt(c + 0.7, c, 9), gp::DZ(), 9, 12);
    s.bolt = Bolt(gp_Pnt(c, c, 25.6), -gp::DZ(), 8, 30, 13, 5.6);
    s.longBolt = Bolt(gp_Pnt(c, c, 25.6), -gp::DZ(), 8, 32, 13, 5.6);
    s.nut = Nut(gp_Pnt(c, c, 0), -gp::DZ(), 8, 6.5);
    return s;
}

std::string WriteGrid(int n, const JointShapes& s, const std::filesystem::path& folder) {
    std::vector<SolidToWrite> solids;
    const auto place = [&](const wchar_t* name, const TopoDS_Shape& shape, const gp_Trsf& at,
                           const wchar_t* material) {
        solids.push_back({name, BRepBuilderAPI_Transform(shape, at, true).Shape(), L"", material});
    };
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const int k = i * n + j;
            gp_Trsf at;
            at.SetTranslation(gp_Vec(j * (kPlate + kJointGap), i * (kPlate + kJointGap), 0));
            place(L"lower", s.lower, at, L"Aluminium");
            place(L"upper", k % 7 == 3 ? s.upperOff : s.upper, at, L"Steel");
            place(L"bolt", k % 2 ? s.longBolt : s.bolt, at, L"Steel");
            place(L"nut", s.nut, at, L"Steel");
        }
    const std::string path = (folder / ("joints" + std::to_string(n * n) + ".stp")).string();
    std::string error;
    if (!WriteStepAssembly(path, L"joints", solids, "MM", error))
        std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
    return path;
}

// A settings document with every rule of the module, those the engine checks set to find
// something in every joint or in every seventh.
struct Settings {
    ModuleLoader& module;
    ZebXMLDocument doc;

    explicit Settings(ModuleLoader& loaded) : module(loaded) {
        module.SetXMLDoc(&doc);
        std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(doc, 0));
        ZebArray<CZebRule*> all;
        module.GetAllRules(&all);
        for (CZebRule* rule : all) {
            Tune(*rule);
            std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
            parent->AppendNode(exported.get());
            module.DeleteRule(&rule);
        }
    }
    ~Settings() { module.SetXMLDoc(nullptr); }

    template <class T>
    static ZebTypedParam<T>* Param(CZebRule& rule, long id) {
        CZebParamStorage* storage = rule.FindParameterInArray(id);
        return storage ? storage->As<T>() : nullptr;
    }
    template <class T>
    static void Set(CZebRule& rule, long id, std::initializer_list<T> values) {
        if (ZebTypedParam<T>* p = Param<T>(rule, id)) {
            p->values.RemoveAll();
            for (const T& v : values) p->values.Add(v);
        }
    }

    static void Tune(CZebRule& rule) {
        // Minimum clearance 1: the bolt's shank lies 0.5 from the lower plate's hole.
        Set<double>(rule, MinClearanceParams::kGeneral.id, {1.0, 1.0});
        Set<ZebRow>(rule, ContactMaterialParams::kPairs.id, {{L"Aluminium;", L"Steel;"}});
        Set<std::wstring>(
            rule, PrefCompParams::kTable.id,
            {CZEBStringTableParser::Compose({{L"locking nut", L"nut-lock", L"", L"nut"}})});
        // Play 0.5 in each hole against at least 0.6; the head's free space against 1.
        Set<ZebRow>(rule, FastenerClearanceParams::kConditionA.id, {{L"bolt", L"0.6", L""}});
        Set<ZebRow>(rule, FastenerClearanceParams::kConditionB.id, {{L"bolt", L"1", L""}});
        Set<ZebRow>(rule, FastenerEngagementParams::kLengths.id, {{L"bolt", L"8"}});
        // The second tool, 2.5 x the head, switched on.
        Set<double>(rule, FastenerAccessibilityParams::kSecondSwitch.id, {1.0});
        // M10 threads recommended: each M8 bolt in its M8 nut is found.
        Set<ZebRow>(rule, RecommThreadParams::kThreadPairs.id, {{L"M10", L"M10"}});
    }
};

struct JointRun {
    size_t parts = 0, findings = 0;
    double check = 0.0, cpu = 0.0, reading = 0.0, recognition = 0.0, peak = 0.0;
    std::map<std::wstring, double> stages;  // seconds per stage of the check
    std::map<std::wstring, size_t> found;   // findings per stage
};

// Processor seconds of this process and of its finished children: on a machine shared with other
// work they grow with the work done, where the wall clock grows with the load too.
double ProcessorSeconds() {
    double seconds = 0.0;
    for (int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        seconds += usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
                   1e-6 * (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
    }
    return seconds;
}

JointRun CheckGrid(const std::string& path, ModuleLoader& module, const EngineLoader& engine) {
    JointRun run;
    Settings settings(module);
    ZebCheckRequest request;
    request.assemblyPath = path;
    std::wstring stage;
    std::vector<std::wstring> order;  // the stages: reading, then one per rule checked
    auto stageStart = std::chrono::steady_clock::now();
    request.progress = [&](double, const std::wstring& now) {
        if (now == stage) return;
        const auto t = std::chrono::steady_clock::now();
        if (!stage.empty())
            run.stages[stage] += std::chrono::duration<double>(t - stageStart).count();
        stage = now;
        stageStart = t;
        order.push_back(now);
    };
    ZebCheckReport report;
    std::string error;
    int status = ZebCheckBadInput;
    ResetPeak();
    const double cpu = ProcessorSeconds();
    run.check = Seconds(
        [&] { status = RunAssemblyCheck(engine, module, settings.doc, request, report, error); });
    run.cpu = ProcessorSeconds() - cpu;
    run.peak = PeakSinceReset();
    if (status != ZebCheckDone) std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
    run.parts = report.parts.size();
    run.findings = report.findings.size();
    for (const ZebFinding& finding : report.findings)
        for (size_t r = 0; r < report.rules.size() && r + 1 < order.size(); ++r)
            if (report.rules[r] == finding.rule) ++run.found[order[r + 1]];

    // Reading in this process and recognition alone on the same assembly, on as many threads as
    // the check uses.
    Assembly assembly;
    run.reading = Seconds([&] {
        if (!ReadStepAssemblyHere(path, assembly, error))
            std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
    });
    std::vector<PartFeatures> features;
    run.recognition = Seconds([&] { RecognizeAssembly(assembly, 0, nullptr, features); });
    return run;
}

void Grids(const std::filesystem::path& folder, const std::vector<int>& sides) {
    // A database of its own in the benchmark's folder, and the resources of the build tree.
    setenv("VANTOR_DATABASE_DIR", folder.c_str(), 1);
    setenv("VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res", 1);
    ModuleLoader module;
    EngineLoader engine;
    std::string error;
    if (!module.Load(VANTOR_BUILD_DIR "/lib/vantor", error) ||
        !engine.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) {
        std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
        return;
    }
    // Bolts and nuts are fasteners by the fastener name database.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db || db->AddFastenerName(L"bolt") != ZebDbOk || db->AddFastenerName(L"nut") != ZebDbOk)
        std::fprintf(stderr, "engine_bench: the fastener name database cannot be written\n");

    const JointShapes shapes = MakeJoint();
    std::map<int, JointRun> runs;
    std::printf("%6s %6s %8s %8s %7s %13s %6s %9s %9s\n", "joints", "parts", "check s", "cpu s",
                "read s", "recognition s", "share", "findings", "peak MiB");
    for (int n : sides) {
        JointRun run = CheckGrid(WriteGrid(n, shapes, folder), module, engine);
        std::printf("%6d %6zu %8.2f %8.2f %7.2f %13.2f %5.1f%% %9zu %9.0f\n", n * n, run.parts,
                    run.check, run.cpu, run.reading, run.recognition,
                    100 * run.recognition / run.check, run.findings, run.peak);
        runs[n] = std::move(run);
    }
    const JointRun &small = runs[sides.front()], &large = runs[sides.back()];
    std::printf("t(%d) / t(%d): %.2f (target at most 12 for 900 / 100); processor time %.2f\n",
                sides.back() * sides.back(), sides.front() * sides.front(),
                large.check / small.check, large.cpu / small.cpu);
    double share = 0.0;
    for (const auto& [n, run] : runs) share = std::max(share, run.recognition / run.check);
    std::printf("feature recognition: at most %.1f%% of the whole check (target at most half)\n",
                100 * share);
    std::printf("seconds (findings) per stage of the check, by joints:\n%-40s", "");
    for (int n : sides) std::printf(" %15d", n * n);
    for (const auto& [stage, seconds] : large.stages) {
        std::printf("\n%-40s", ToUtf8(stage).c_str());
        for (int n : sides) {
            const auto it = runs[n].stages.find(stage);
            const auto found = runs[n].found.find(stage);
            std::printf(" %7.2f (%5zu)", it == runs[n].stages.end() ? 0.0 : it->second,
                        found == runs[n].found.end() ? size_t(0) : found->second);
        }
    }
    std::printf("\n");
}
}  // namespace joints
}  // namespace

// engine_bench [plates] [joints] [SIDE...]: both grids when neither is named; joint grids of
// SIDE x SIDE joints when given, else 10, 20 and 30.
int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // each size's line as soon as it is measured
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / "vantor_engine_bench";
    std::filesystem::create_directories(folder);
    const auto named = [&](const char* name) {
        for (int i = 1; i < argc; ++i)
            if (std::strcmp(argv[i], name) == 0) return true;
        return false;
    };
    const auto wanted = [&](const char* name) {
        return named(name) || (!named("plates") && !named("joints"));
    };
    if (wanted("plates")) PlateGrids(folder);
    std::vector<int> sides;
    for (int i = 1; i < argc; ++i)
        if (const int side = std::atoi(argv[i]); side > 0) sides.push_back(side);
    if (sides.empty()) sides = {10, 20, 30};
    if (wanted("joints")) joints::Grids(folder, sides);
    std::filesystem::remove_all(folder);
}
