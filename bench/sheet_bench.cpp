// Spreadsheet import speed and memory: a 100,000-row, 6-column ".xlsx" (written here with
// libxlsxwriter) through the reader library, and a 60,000-row ".xls" (written by
// bench/compare_sheetjs.sh with SheetJS) through the built-in reader.
//
//   sheet_bench                    figures for both files, then the Google Benchmark runs
//   sheet_bench --make-xlsx PATH   only writes the ".xlsx"
//
// Files: VANTOR_BENCH_XLSX (default /tmp/vantor-bench-100k.xlsx, made when missing) and
// VANTOR_BENCH_XLS (default /tmp/vantor-bench-60k.xls; skipped when missing).
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "framework/text_convert.h"
#include "util/spreadsheet.h"

namespace {
constexpr int kXlsxRows = 100000;

std::string EnvOr(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}
std::string XlsxPath() { return EnvOr("VANTOR_BENCH_XLSX", "/tmp/vantor-bench-100k.xlsx"); }
std::string XlsPath() { return EnvOr("VANTOR_BENCH_XLS", "/tmp/vantor-bench-60k.xls"); }

// Part names, numbers, thread texts and decimals: the mix the importing dialogs see. Strings go
// to the shared string table, as spreadsheet applications write them.
bool MakeXlsx(const std::string& path) {
    lxw_workbook* workbook = workbook_new(path.c_str());
    if (!workbook) return false;
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    char text[64];
    for (int row = 0; row < kXlsxRows; ++row) {
        std::snprintf(text, sizeof text, "part-%06d.prt", row);
        worksheet_write_string(sheet, row, 0, text, nullptr);
        worksheet_write_number(sheet, row, 1, row, nullptr);
        worksheet_write_number(sheet, row, 2, row * 0.25, nullptr);
        std::snprintf(text, sizeof text, "M%d", 3 + row % 20);
        worksheet_write_string(sheet, row, 3, text, nullptr);
        worksheet_write_string(sheet, row, 4, row % 2 ? "steel" : "aluminium", nullptr);
        worksheet_write_number(sheet, row, 5, 1.0 / (row + 1), nullptr);
    }
    return workbook_close(workbook) == LXW_NO_ERROR;
}

std::vector<SpreadsheetColumn> SixColumns() {
    std::vector<SpreadsheetColumn> columns;
    for (const wchar_t* letter : {L"A", L"B", L"C", L"D", L"E", L"F"})
        columns.push_back({letter, 0});
    columns[2].kind = kSpreadsheetDecimalColumn;
    return columns;
}

size_t ReadRows(const std::string& path) {
    SpreadsheetTable table;
    SpreadsheetError error;
    if (!ReadSpreadsheet(FromUtf8(path), SixColumns(), table, error)) {
        std::fprintf(stderr, "cannot read %s: %s\n", path.c_str(),
                     ToUtf8(SpreadsheetErrorText(error)).c_str());
        return 0;
    }
    return table.empty() ? 0 : table[0].size();
}

// Reads the file once so that the figures do not depend on the disk cache.
void WarmCache(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<char> chunk(1 << 20);
    while (in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()))) {
    }
}

// One read in a child process, so that its peak memory is the read's own.
void PrintFigures(const char* label, const std::string& path) {
    WarmCache(path);
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return;
    const pid_t child = fork();
    if (child == 0) {
        const auto start = std::chrono::steady_clock::now();
        const size_t rows = ReadRows(path);
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const double figures[2] = {static_cast<double>(rows), seconds};
        (void)!write(pipeFds[1], figures, sizeof figures);
        _exit(rows ? 0 : 1);
    }
    close(pipeFds[1]);
    double figures[2] = {0, 0};
    const bool got =
        read(pipeFds[0], figures, sizeof figures) == static_cast<ssize_t>(sizeof figures);
    close(pipeFds[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!got || figures[0] == 0) {
        std::printf("%s: read failed\n", label);
        return;
    }
    std::printf("%s: %.0f rows x 6 columns in %.3f s: %.0f rows/s, peak memory %.1f MiB\n", label,
                figures[0], figures[1], figures[0] / figures[1], usage.ru_maxrss / 1024.0);
    std::fflush(stdout);
}

void BM_ReadXlsx(benchmark::State& state) {
    const std::string path = XlsxPath();
    size_t rows = 0;
    for (auto _ : state) rows = ReadRows(path);
    state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows),
                                                  benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_ReadXlsx)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_ReadXls(benchmark::State& state) {
    const std::string path = XlsPath();
    if (!std::filesystem::exists(path)) {
        state.SkipWithError("no .xls benchmark file (bench/compare_sheetjs.sh writes it)");
        return;
    }
    size_t rows = 0;
    for (auto _ : state) rows = ReadRows(path);
    state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows),
                                                  benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_ReadXls)->Unit(benchmark::kMillisecond)->MinTime(2.0);
}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--make-xlsx") return MakeXlsx(argv[2]) ? 0 : 1;
    if (!std::filesystem::exists(XlsxPath())) {
        // Written by a child, so that the writer's memory is not counted in the readers' figures.
        const pid_t child = fork();
        if (child == 0) _exit(MakeXlsx(XlsxPath()) ? 0 : 1);
        int status = 1;
        waitpid(child, &status, 0);
        if (status != 0) {
            std::fprintf(stderr, "cannot write %s\n", XlsxPath().c_str());
            return 1;
        }
    }
    PrintFigures("xlsx (reader library)", XlsxPath());
    if (std::filesystem::exists(XlsPath()))
        PrintFigures("xls (built-in reader)", XlsPath());
    else
        std::printf("xls: skipped, %s is missing (bench/compare_sheetjs.sh writes it)\n",
                    XlsPath().c_str());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
