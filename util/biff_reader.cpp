#include "util/biff_reader.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "framework/location_helper.h"
#include "framework/text_convert.h"
#include "util/child_program.h"

bool LooksLikeCompoundFile(const std::string& path) {
    static const unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    unsigned char head[8] = {};
    const size_t n = std::fread(head, 1, sizeof head, file);
    std::fclose(file);
    return n == sizeof head && std::memcmp(head, kSignature, sizeof head) == 0;
}

namespace {
// Processor time of one read: the 60,000-row benchmark workbook needs well under a second.
constexpr uint64_t kReaderSeconds = 10;

std::string ReaderProgramPath() {
    if (const char* path = std::getenv(kBiffReaderEnvironment); path && *path) return path;
    return ToUtf8(CLocationHelper::GetLibraryFolder()) + "/" + kBiffReaderProgram;
}

// Buffered reads from the reader program's pipe.
class AnswerReader {
public:
    explicit AnswerReader(int fd) : m_fd(fd) {}

    bool Take(void* out, size_t size) {
        char* to = static_cast<char*>(out);
        while (size > 0) {
            if (m_at == m_end && !Fill()) return false;
            const size_t n = std::min(size, m_end - m_at);
            std::memcpy(to, m_buffer + m_at, n);
            m_at += n;
            to += n;
            size -= n;
        }
        return true;
    }
    bool AtEnd() { return m_at == m_end && !Fill(); }

private:
    bool Fill() {
        for (;;) {
            const ssize_t n = read(m_fd, m_buffer, sizeof m_buffer);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            m_at = 0;
            m_end = static_cast<size_t>(n);
            return true;
        }
    }

    int m_fd;
    char m_buffer[1 << 16];
    size_t m_at = 0;
    size_t m_end = 0;
};

// Hands the answer's cells on; true when it was complete and well-formed, with the status and
// extent of its end record.
bool TakeAnswer(AnswerReader& answer, const SheetRequest& request, CSheetCellSink& sink,
                SheetReadStatus& status, SheetExtent& extent) {
    char magic[sizeof kBiffAnswerMagic];
    if (!answer.Take(magic, sizeof magic) ||
        std::memcmp(magic, kBiffAnswerMagic, sizeof magic) != 0)
        return false;
    std::string text;
    for (;;) {
        char tag = 0;
        if (!answer.Take(&tag, 1)) return false;
        if (tag == kBiffEndRecord) {
            uint8_t statusByte = 0;
            uint32_t usedRows = 0;
            if (!answer.Take(&statusByte, 1) || !answer.Take(&usedRows, sizeof usedRows) ||
                statusByte > static_cast<uint8_t>(SheetReadStatus::CannotStart) ||
                usedRows > kMaxSheetRows || !answer.AtEnd())
                return false;
            status = static_cast<SheetReadStatus>(statusByte);
            extent.usedRows = usedRows;
            return true;
        }
        uint32_t column = 0;
        uint32_t row = 0;
        uint8_t kindByte = 0;
        if (tag != kBiffCellRecord || !answer.Take(&column, sizeof column) ||
            !answer.Take(&row, sizeof row) || !answer.Take(&kindByte, 1) ||
            !request.Wants(column) || row >= kMaxSheetRows)
            return false;
        const CellKind kind = static_cast<CellKind>(kindByte);
        double number = 0.0;
        text.clear();
        if (kind == CellKind::Number) {
            if (!answer.Take(&number, sizeof number)) return false;
        } else if (kind == CellKind::Text) {
            uint32_t length = 0;
            if (!answer.Take(&length, sizeof length) || length > kMaxBiffCellTextBytes)
                return false;
            text.resize(length);
            if (!answer.Take(text.data(), length)) return false;
        } else if (kind != CellKind::Other) {
            return false;
        }
        sink.Cell(column, row, kind, number, text);
    }
}

// Reaps the reader program; its exit status, or -1 when it did not exit by itself.
int Reap(pid_t pid) {
    const int status = WaitForChildProgram(pid);
    return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
}  // namespace

SheetReadStatus ReadBiffSheet(const std::string& path, const SheetRequest& request,
                              CSheetCellSink& sink, SheetExtent& extent) {
    const std::string program = ReaderProgramPath();
    if (access(program.c_str(), X_OK) != 0) return SheetReadStatus::CannotStart;
    std::string columns;
    for (uint32_t column = 0; column < request.wanted.size(); ++column) {
        if (!request.Wants(column)) continue;
        if (!columns.empty()) columns += ',';
        columns += std::to_string(column);
    }
    int answerFd = -1;
    const pid_t pid = StartChildProgram({program, path, columns},
                                        {kBiffReaderAddressSpace, kReaderSeconds}, answerFd);
    if (pid < 0) return SheetReadStatus::CannotStart;
    // The parent only reads, so a reader that dies cannot raise SIGPIPE here; one that stops
    // answering properly is killed rather than waited for.
    SheetReadStatus status = SheetReadStatus::NotReadable;
    bool complete = false;
    {
        AnswerReader answer(answerFd);
        complete = TakeAnswer(answer, request, sink, status, extent);
    }
    if (!complete) kill(pid, SIGKILL);
    close(answerFd);
    const int exitStatus = Reap(pid);
    if (!complete || exitStatus != 0) {
        extent = {};
        return SheetReadStatus::NotReadable;
    }
    return status;
}
