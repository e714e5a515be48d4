// The fastener clearance dialog with large tables: open it on a rule with 10,000 and with 100,000
// stored rows per table, press OK and close, and print both times and their ratio (target: at
// most 12, so that no step grows faster than the rows). Then import a 100,000-row ".xlsx" into
// the open dialog and print its time against the spreadsheet reader's own on the same file
// (target: at most 2).
#include <dlfcn.h>
#include <stdlib.h>
#include <xlsxwriter.h>

#include <QApplication>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/assembly_rules_app.h"
#include "dialogs/fastener/fastener_clearance_dlg.h"
#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/fastener_clearance_rule.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"
#include "util/spreadsheet.h"

namespace fs = std::filesystem;

namespace {
constexpr int kRuns = 3;

template <class F>
double Seconds(F run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    return took.count();
}

template <class F>
double BestSeconds(F run) {
    double best = 1e9;
    for (int i = 0; i < kRuns; ++i) best = std::min(best, Seconds(run));
    return best;
}

std::wstring Name(int i) { return L"FASTENER " + std::to_wstring(100000 + i); }

void Fill(CZebRule& rule, long id, int rows) {
    auto* table = FindTyped<ZebRow>(rule, id);
    table->op = ZebOp_Range;
    table->values.RemoveAll();
    for (int i = 0; i < rows; ++i) table->values.Add(ZebRow{Name(i), L"1.5", L"2.5"});
}

// Opens the dialog on a rule with `rows` rows per table, presses OK and closes it.
double OpenOkAndClose(int rows) {
    CZEBAssemblyFastenerClearanceRule rule;
    return BestSeconds([&] {
        Fill(rule, FastenerClearanceParams::kConditionA.id, rows);
        Fill(rule, FastenerClearanceParams::kConditionB.id, rows);
        CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
        dialog.show();
        if (dialog.GetGrid()->GetRowCount() != 2 * rows + 260)
            std::fprintf(stderr, "rows not loaded\n");
        dialog.OnOK();
        if (FindTyped<ZebRow>(rule, FastenerClearanceParams::kConditionA.id)->values.GetSize() <
            rows)
            std::fprintf(stderr, "rows lost\n");
    });
}

void WriteSheet(const fs::path& path, int rows) {
    lxw_workbook* workbook = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    const char* headings[] = {"F", "A", "A1", "B", "B1"};
    for (int c = 0; c < 5; ++c) worksheet_write_string(sheet, 0, c, headings[c], nullptr);
    for (int r = 1; r <= rows; ++r) {
        worksheet_write_string(sheet, r, 0,
                               ("SHEET FASTENER " + std::to_string(100000 + r)).c_str(), nullptr);
        for (int c = 1; c < 5; ++c) worksheet_write_number(sheet, r, c, 0.5 * c, nullptr);
    }
    workbook_close(workbook);
}
}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const fs::path scratch = fs::temp_directory_path() / "vantor-fastener-bench";
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    setenv("VANTOR_DATABASE_DIR", scratch.c_str(), 1);
    setenv("TMPDIR", scratch.c_str(), 1);
    QApplication application(argc, argv);
    StartAssemblyRulesApp();
    // The dialog loads stored rows only with the database module loaded beside it.
    void* databaseModule = dlopen(VANTOR_BENCH_DIR "/ZEBDatabaseu.so", RTLD_NOW | RTLD_LOCAL);
    if (!databaseModule) {
        std::fprintf(stderr, "cannot load the database module: %s\n", dlerror());
        return 1;
    }
    CZebRecordingUiService ui;

    const double small = OpenOkAndClose(10000);
    const double large = OpenOkAndClose(100000);
    std::printf("open, OK and close, 10,000 rows per table:  %.3f s\n", small);
    std::printf("open, OK and close, 100,000 rows per table: %.3f s\n", large);
    std::printf("ratio: %.1f (target: at most 12)\n", large / small);

    const fs::path sheet = scratch / "clearances-100k.xlsx";
    WriteSheet(sheet, 100000);
    const double reader = BestSeconds([&] {
        SpreadsheetTable table;
        SpreadsheetError error;
        ReadSpreadsheet(sheet.wstring(), {{L"A"}, {L"B"}, {L"C"}, {L"D"}, {L"E"}}, table, error);
    });
    CZEBAssemblyFastenerClearanceRule rule;
    double import = 1e9;
    for (int i = 0; i < kRuns; ++i) {
        CZEBAssemblyFastenerClearanceDlg dialog(&rule, L"mm");
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        ui.ChooseFiles({sheet.wstring()});
        import = std::min(import, Seconds([&] { QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    }));
    if (dialog.GetGrid()->GetCellText(99999, 0).empty())
        std::fprintf(stderr, "the import did not fill the table\n");
}
std::printf("reader alone, 100,000 rows:         %.3f s\n", reader);
std::printf("import into the open dialog:        %.3f s\n", import);
std::printf("ratio: %.2f (target: at most 2)\n", import / reader);

dlclose(databaseModule);
StopAssemblyRulesApp();
fs::remove_all(scratch);
return 0;
}
