// vantor-rules sheet: shows what a dialog's spreadsheet import reads from a workbook.
#include <algorithm>
#include <cstdio>
#include <list>
#include <string>
#include <vector>

#include "app/assembly_rules_app.h"
#include "framework/text_convert.h"
#include "host/host_command.h"
#include "util/spreadsheet.h"

namespace {
int RunSheet(const std::vector<std::string>& args) {
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: vantor-rules sheet FILE COL[:4] ...\n");
        return 2;
    }
    std::vector<SpreadsheetColumn> columns;
    for (size_t i = 1; i < args.size(); ++i) {
        std::string word = args[i];
        SpreadsheetColumn column;
        if (word.size() > 2 && word.compare(word.size() - 2, 2, ":4") == 0) {
            column.kind = kSpreadsheetDecimalColumn;
            word.resize(word.size() - 2);
        }
        column.letter = FromUtf8(word);
        columns.push_back(column);
    }
    // The error texts come from the resource libraries the application object loads.
    StartAssemblyRulesApp();
    SpreadsheetTable table;
    SpreadsheetError error;
    const bool ok = ReadSpreadsheet(FromUtf8(args[0]), columns, table, error);
    const std::wstring message = ok ? std::wstring() : SpreadsheetErrorText(error);
    StopAssemblyRulesApp();
    if (!ok) {
        std::fprintf(
            stderr, "%s\n",
            message.empty() ? "The spreadsheet could not be read." : ToUtf8(message).c_str());
        return 2;
    }
    std::vector<std::list<std::wstring>::const_iterator> next;
    size_t rows = 0;
    for (const auto& texts : table) {
        next.push_back(texts.begin());
        rows = std::max(rows, texts.size());
    }
    std::string line;
    for (size_t row = 0; row < rows; ++row) {
        line.clear();
        for (size_t c = 0; c < table.size(); ++c) {
            if (c > 0) line += '\t';
            if (next[c] != table[c].end()) line += ToUtf8(*next[c]++);
        }
        line += '\n';
        std::fputs(line.c_str(), stdout);
    }
    return 0;
}
}  // namespace

VANTOR_HOST_COMMAND(
    sheet, "sheet", "FILE COL[:4] ...",
    "Reads the named columns of a workbook as a dialog's import does and prints one\n"
    "line per row, columns separated by tabs; COL:4 marks a decimal column.\n"
    "Exit 0 done, 2 bad arguments or a file the import cannot read (its message on\n"
    "standard error).",
    RunSheet);
