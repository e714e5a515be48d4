#include "util/biff_parser.h"

#include <fcntl.h>
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

#include <algorithm>
#include <cerrno>
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

// Cells one record declares when it is a DIMENSIONS record.
uint64_t DeclaredCells(std::string_view stream, uint16_t type, uint16_t length, size_t body) {
    if (type != 0x0200) return 0;
    if (length >= 14) return uint64_t(Read32(stream, body + 4)) * Read16(stream, body + 10);
    if (length >= 10) return uint64_t(Read16(stream, body + 2)) * Read16(stream, body + 6);
    return 0;
}

// libfreexl parses every substream on open and allocates a cell slot for every row and column
// each DIMENSIONS record declares, whichever sheet is then read, and offers no way to skip a
// sheet. So the declared sizes are added up before it opens the file: over every record as it
// walks them, one after another through the whole stream, and from each sheet's offset in the
// globals when that offset does not fall on the walk. The reader program's address space limit
// stops whatever this does not foresee.
bool DeclaredSizesAcceptable(std::string_view stream) {
    uint64_t cells = 0;
    std::vector<std::pair<uint32_t, bool>> sheets;  // offset, met on the walk
    bool inGlobals = true;
    for (size_t at = 0; at + 4 <= stream.size();) {
        const uint16_t type = Read16(stream, at);
        const uint16_t length = Read16(stream, at + 2);
        const size_t body = at + 4;
        if (body + length > stream.size()) break;
        if (!inGlobals) {
            const auto sheet = std::lower_bound(sheets.begin(), sheets.end(),
                                                std::pair<uint32_t, bool>{uint32_t(at), false});
            if (sheet != sheets.end() && sheet->first == at) sheet->second = true;
        } else if (type == 0x0085 && length >= 4) {
            sheets.push_back({Read32(stream, body), false});
        } else if (type == 0x000A) {
            inGlobals = false;
            std::sort(sheets.begin(), sheets.end());
        }
        cells += DeclaredCells(stream, type, length, body);
        if (cells > kMaxDeclaredCells) return false;
        at = body + length;
    }
    for (const auto& [offset, met] : sheets) {
        for (size_t at = offset; !met && at + 4 <= stream.size();) {
            const uint16_t type = Read16(stream, at);
            const uint16_t length = Read16(stream, at + 2);
            const size_t body = at + 4;
            if (body + length > stream.size() || type == 0x000A) break;
            cells += DeclaredCells(stream, type, length, body);
            if (cells > kMaxDeclaredCells) return false;
            at = body + length;
        }
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

SheetReadStatus ParseBiffSheet(const std::string& path, const SheetRequest& request,
                               CSheetCellSink& sink, SheetExtent& extent) {
    std::string stream;
    if (!ReadWorkbookStream(path, stream)) return SheetReadStatus::NotReadable;
    unsigned sheetIndex = 0;
    uint32_t sheetOffset = 0;
    if (!FindActiveSheet(stream, sheetIndex, sheetOffset) || !DeclaredSizesAcceptable(stream))
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
        // Running out of memory here means the reader's limit: the file is refused.
        return SheetReadStatus::NotReadable;
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

CBiffAnswerWriter::CBiffAnswerWriter(int fd) : m_fd(fd) {
    m_buffer.reserve(1 << 16);
    Put(kBiffAnswerMagic, sizeof kBiffAnswerMagic);
}

void CBiffAnswerWriter::Put(const void* bytes, size_t size) {
    m_buffer.append(static_cast<const char*>(bytes), size);
    if (m_buffer.size() >= (1 << 16)) Flush();
}

bool CBiffAnswerWriter::Flush() {
    size_t done = 0;
    while (!m_failed && done < m_buffer.size()) {
        const ssize_t n = write(m_fd, m_buffer.data() + done, m_buffer.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0)
            m_failed = true;
        else
            done += static_cast<size_t>(n);
    }
    m_buffer.clear();
    return !m_failed;
}

void CBiffAnswerWriter::Cell(uint32_t column, uint32_t row, CellKind kind, double number,
                             std::string_view text) {
    const uint8_t kindByte = static_cast<uint8_t>(kind);
    Put(&kBiffCellRecord, 1);
    Put(&column, sizeof column);
    Put(&row, sizeof row);
    Put(&kindByte, 1);
    if (kind == CellKind::Number) Put(&number, sizeof number);
    if (kind == CellKind::Text) {
        if (text.size() > kMaxBiffCellTextBytes) text = text.substr(0, kMaxBiffCellTextBytes);
        const uint32_t length = static_cast<uint32_t>(text.size());
        Put(&length, sizeof length);
        Put(text.data(), text.size());
    }
}

bool CBiffAnswerWriter::Finish(SheetReadStatus status, const SheetExtent& extent) {
    const uint8_t statusByte = static_cast<uint8_t>(status);
    Put(&kBiffEndRecord, 1);
    Put(&statusByte, 1);
    Put(&extent.usedRows, sizeof extent.usedRows);
    return Flush();
}
