#include "util/biff_reader.h"

#include <freexl.h>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-memory.h>
#include <gsf/gsf-utils.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <mutex>
#include <set>
#include <string_view>

namespace {
// libfreexl refuses workbook streams kept in the compound file's mini stream (under 4096 bytes).
constexpr size_t kMiniStreamCutoff = 4096;
// Largest workbook stream read; the format's own limits keep real ones far below.
constexpr size_t kMaxWorkbookStream = 256u * 1024 * 1024;
// libfreexl holds a cell slot for every row and column the sheet declares.
constexpr uint64_t kMaxDeclaredCells = 8u * 1024 * 1024;

template <typename T>
struct GObjectPtr {
    T* p = nullptr;
    ~GObjectPtr() {
        if (p) g_object_unref(p);
    }
};

uint16_t Read16(std::string_view data, size_t at) {
    return static_cast<uint16_t>(static_cast<unsigned char>(data[at]) |
                                 static_cast<unsigned char>(data[at + 1]) << 8);
}
uint32_t Read32(std::string_view data, size_t at) {
    return Read16(data, at) | uint32_t(Read16(data, at + 2)) << 16;
}

// The workbook stream of a compound file; false when there is none or it is too large.
bool ReadWorkbookStream(const std::string& path, std::string& stream) {
    static std::once_flag gsfStarted;
    std::call_once(gsfStarted, [] {
        gsf_init();
        // Damaged files are reported to the user by the caller, not on the terminal.
        g_log_set_handler(
            "libgsf:msole", G_LOG_LEVEL_MASK,
            [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
    });
    GObjectPtr<GsfInput> input{gsf_input_stdio_new(path.c_str(), nullptr)};
    if (!input.p) return false;
    GObjectPtr<GsfInfile> ole{gsf_infile_msole_new(input.p, nullptr)};
    if (!ole.p) return false;
    GObjectPtr<GsfInput> book{gsf_infile_child_by_name(ole.p, "Workbook")};
    if (!book.p) book.p = gsf_infile_child_by_name(ole.p, "Book");
    if (!book.p) return false;
    const gsf_off_t size = gsf_input_size(book.p);
    if (size <= 0 || static_cast<uint64_t>(size) > kMaxWorkbookStream) return false;
    stream.resize(static_cast<size_t>(size));
    return gsf_input_read(book.p, stream.size(), reinterpret_cast<guint8*>(stream.data())) !=
           nullptr;
}

struct SheetEntry {
    uint32_t offset;
    bool worksheet;
};

// Finds the active sheet (WINDOW1's selected tab) among the sheets the globals list, and the
// position libfreexl gives it (libfreexl counts worksheets only).
bool FindActiveSheet(std::string_view stream, unsigned& freexlIndex, uint32_t& sheetOffset) {
    std::vector<SheetEntry> sheets;
    unsigned activeTab = 0;
    size_t at = 0;
    while (at + 4 <= stream.size()) {
        const uint16_t type = Read16(stream, at);
        const uint16_t length = Read16(stream, at + 2);
        const size_t body = at + 4;
        if (body + length > stream.size()) return false;
        if (type == 0x000A) break;  // end of the globals
        if (type == 0x003D && length >= 12) activeTab = Read16(stream, body + 10);
        if (type == 0x0085 && length >= 6)
            sheets.push_back(
                {Read32(stream, body), static_cast<unsigned char>(stream[body + 5]) == 0});
        at = body + length;
    }
    if (activeTab >= sheets.size() || !sheets[activeTab].worksheet) return false;
    freexlIndex = 0;
    for (unsigned i = 0; i < activeTab; ++i)
        if (sheets[i].worksheet) ++freexlIndex;
    sheetOffset = sheets[activeTab].offset;
    return true;
}

// Refuses sheets whose declared size would make libfreexl allocate beyond reason.
bool DeclaredSizeAcceptable(std::string_view stream, uint32_t sheetOffset) {
    size_t at = sheetOffset;
    while (at + 4 <= stream.size()) {
        const uint16_t type = Read16(stream, at);
        const uint16_t length = Read16(stream, at + 2);
        const size_t body = at + 4;
        if (body + length > stream.size() || type == 0x000A) return true;
        if (type == 0x0200 && length >= 14) {
            const uint64_t rows = Read32(stream, body + 4);
            const uint64_t columns = Read16(stream, body + 10);
            return rows * columns <= kMaxDeclaredCells;
        }
        at = body + length;
    }
    return true;
}

// Cells of the sheet that hold a boolean or an error: libfreexl hands them on as integers.
std::set<std::pair<unsigned, unsigned>> BooleanAndErrorCells(std::string_view stream,
                                                             uint32_t sheetOffset) {
    std::set<std::pair<unsigned, unsigned>> cells;
    size_t at = sheetOffset;
    while (at + 4 <= stream.size()) {
        const uint16_t type = Read16(stream, at);
        const uint16_t length = Read16(stream, at + 2);
        const size_t body = at + 4;
        if (body + length > stream.size() || type == 0x000A) break;
        if (type == 0x0205 && length >= 4)
            cells.emplace(Read16(stream, body), Read16(stream, body + 2));
        at = body + length;
    }
    return cells;
}

// A compound file in memory with the same workbook stream padded past the mini stream cutoff;
// returns a descriptor libfreexl can open through /proc, or -1.
int PaddedCopy(const std::string& stream) {
    GObjectPtr<GsfOutput> memory{gsf_output_memory_new()};
    {
        GObjectPtr<GsfOutfile> ole{gsf_outfile_msole_new(memory.p)};
        if (!ole.p) return -1;
        GObjectPtr<GsfOutput> book{gsf_outfile_new_child(GSF_OUTFILE(ole.p), "Workbook", FALSE)};
        if (!book.p) return -1;
        std::string padded = stream;
        padded.resize(kMiniStreamCutoff + 512, '\0');
        if (!gsf_output_write(book.p, padded.size(),
                              reinterpret_cast<const guint8*>(padded.data())))
            return -1;
        gsf_output_close(book.p);
        gsf_output_close(GSF_OUTPUT(ole.p));
    }
    const guint8* bytes = gsf_output_memory_get_bytes(GSF_OUTPUT_MEMORY(memory.p));
    const gsf_off_t size = gsf_output_size(memory.p);
    const int fd = memfd_create("vantor-workbook", MFD_CLOEXEC);
    if (fd < 0) return -1;
    gsf_off_t written = 0;
    while (written < size) {
        const ssize_t n = write(fd, bytes + written, static_cast<size_t>(size - written));
        if (n <= 0) {
            close(fd);
            return -1;
        }
        written += n;
    }
    return fd;
}

struct FreexlHandle {
    const void* handle = nullptr;
    ~FreexlHandle() {
        if (handle) freexl_close(handle);
    }
};
}  // namespace

bool LooksLikeCompoundFile(const std::string& path) {
    static const unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    unsigned char head[8] = {};
    const size_t n = std::fread(head, 1, sizeof head, file);
    std::fclose(file);
    return n == sizeof head && std::memcmp(head, kSignature, sizeof head) == 0;
}

SheetReadStatus ReadBiffSheet(const std::string& path, const SheetRequest& request,
                              CSheetCellSink& sink, SheetExtent& extent) {
    std::string stream;
    if (!ReadWorkbookStream(path, stream)) return SheetReadStatus::NotReadable;
    unsigned sheetIndex = 0;
    uint32_t sheetOffset = 0;
    if (!FindActiveSheet(stream, sheetIndex, sheetOffset) ||
        !DeclaredSizeAcceptable(stream, sheetOffset))
        return SheetReadStatus::NotReadable;

    const std::set<std::pair<unsigned, unsigned>> notNumbers =
        BooleanAndErrorCells(stream, sheetOffset);
    std::string openPath = path;
    int copy = -1;
    if (stream.size() < kMiniStreamCutoff) {
        copy = PaddedCopy(stream);
        if (copy < 0) return SheetReadStatus::CannotStart;
        openPath = "/proc/self/fd/" + std::to_string(copy);
    }
    stream = std::string();  // libfreexl reads the file itself

    FreexlHandle xls;
    const int opened = freexl_open(openPath.c_str(), &xls.handle);
    if (copy >= 0) close(copy);
    if (opened != FREEXL_OK) {
        xls.handle = nullptr;
        return opened == FREEXL_INSUFFICIENT_MEMORY ? SheetReadStatus::CannotStart
                                                    : SheetReadStatus::NotReadable;
    }
    unsigned rows = 0;
    unsigned short columns = 0;
    if (freexl_select_active_worksheet(xls.handle, static_cast<unsigned short>(sheetIndex)) !=
            FREEXL_OK ||
        freexl_worksheet_dimensions(xls.handle, &rows, &columns) != FREEXL_OK)
        return SheetReadStatus::NotReadable;
    if (rows > kMaxSheetRows) rows = kMaxSheetRows;
    extent.usedRows = rows;
    for (unsigned short column = 0; column < columns; ++column) {
        if (!request.Wants(column)) continue;
        for (unsigned row = 0; row < rows; ++row) {
            FreeXL_CellValue cell{};
            if (freexl_get_cell_value(xls.handle, row, column, &cell) != FREEXL_OK) continue;
            if (cell.type == FREEXL_CELL_INT && notNumbers.count({row, column})) {
                sink.Cell(column, row, CellKind::Other, 0.0, {});
                continue;
            }
            switch (cell.type) {
                case FREEXL_CELL_INT:
                    sink.Cell(column, row, CellKind::Number, cell.value.int_value, {});
                    break;
                case FREEXL_CELL_DOUBLE:
                    sink.Cell(column, row, CellKind::Number, cell.value.double_value, {});
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                    sink.Cell(column, row, CellKind::Text, 0.0,
                              cell.value.text_value ? cell.value.text_value : "");
                    break;
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME:
                case FREEXL_CELL_TIME:
                    sink.Cell(column, row, CellKind::Other, 0.0, {});
                    break;
                default:
                    break;
            }
        }
    }
    return SheetReadStatus::Ok;
}
