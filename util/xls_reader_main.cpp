// vantor-xls-reader PATH COLUMNS: reads the active sheet of the BIFF workbook PATH with libfreexl
// and writes the cells of COLUMNS (0-based indices separated by commas) to standard output in the
// answer format of util/biff_reader.h. Run by the module's import under resource limits, never
// by hand: a hostile workbook can end this process, not the module's.
#include <signal.h>

#include <charconv>
#include <new>
#include <string_view>

#include "util/biff_parser.h"
#include "util/biff_reader.h"

namespace {
bool ParseColumns(std::string_view text, SheetRequest& request) {
    request.wanted.assign(kMaxSheetColumns, false);
    while (!text.empty()) {
        const size_t comma = text.find(',');
        const std::string_view item = text.substr(0, comma);
        uint32_t column = 0;
        const auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), column);
        if (error != std::errc{} || end != item.data() + item.size() || column >= kMaxSheetColumns)
            return false;
        request.wanted[column] = true;
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return true;
}
}  // namespace

int main(int argc, char** argv) {
    // The module closing the pipe early ends the read.
    signal(SIGPIPE, SIG_DFL);
    SheetRequest request;
    if (argc != 3 || !ParseColumns(argv[2], request)) return 2;
    try {
        CBiffAnswerWriter writer(1);
        SheetExtent extent;
        const SheetReadStatus status = ParseBiffSheet(argv[1], request, writer, extent);
        return writer.Finish(status, extent) ? 0 : 1;
    } catch (const std::bad_alloc&) {
        return 1;
    }
}
