// Costs of the database service as the dialogs use it: fetched afresh at each use, one read,
// one change per transaction.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <list>
#include <string>

#include "database/service/data_helper.h"

namespace {

// A database folder of its own for the run, removed at exit.
struct BenchFolderOwner {
    std::filesystem::path folder;
    BenchFolderOwner() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantor_bench_XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        ::setenv("VANTOR_DATABASE_DIR", folder.c_str(), 1);
    }
    ~BenchFolderOwner() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

void BenchFolder() { static BenchFolderOwner owner; }

// Fetching the service again for a folder already open costs an environment lookup and a stat of
// the file (a few microseconds), so callers can fetch it at every use.
void BM_GetInstance(benchmark::State& state) {
    BenchFolder();
    zeb_db::ZEBDataHelper::getInstance();
    for (auto _ : state) benchmark::DoNotOptimize(zeb_db::ZEBDataHelper::getInstance());
}
BENCHMARK(BM_GetInstance);

void BM_GetFastenerNames(benchmark::State& state) {
    BenchFolder();
    std::list<std::wstring> names;
    for (auto _ : state) zeb_db::ZEBDataHelper::getInstance()->GetFastenerNames(names);
    state.counters["names"] = static_cast<double>(names.size());
}
BENCHMARK(BM_GetFastenerNames);

// One durable transaction per change: dominated by the disk's flush.
void BM_AddFastenerName(benchmark::State& state) {
    BenchFolder();
    long n = 0;
    for (auto _ : state)
        zeb_db::ZEBDataHelper::getInstance()->AddFastenerName(L"Bench " + std::to_wstring(n++));
}
BENCHMARK(BM_AddFastenerName)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
