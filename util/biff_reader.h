#pragma once

#include <cstdint>
#include <string>

#include "util/sheet_cells.h"

// BIFF workbooks (".xls", a compound document) are read with libfreexl, which cannot be trusted
// with hostile files, so the module never parses them itself: ReadBiffSheet runs the reader
// program (kBiffReaderProgram, beside the module's libraries) under resource limits and takes
// the cells it sends back over a pipe. A crash, a limit, or a short or malformed answer reads as
// a workbook that cannot be opened.

constexpr const char* kBiffReaderProgram = "vantor-xls-reader";
// Overrides where the reader program is looked for.
constexpr const char* kBiffReaderEnvironment = "VANTOR_XLS_READER";

// Address space of the reader program: libfreexl's cell slots (16 bytes each, for at most the
// declared cells accepted), the workbook stream and the libraries. The address and thread
// sanitizers map terabytes of shadow memory at start, so a checking build leaves it open (0) and
// relies on the sanitizer's own allocation checks.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VANTOR_SHADOW_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VANTOR_SHADOW_SANITIZER 1
#endif
#endif
#ifdef VANTOR_SHADOW_SANITIZER
constexpr uint64_t kBiffReaderAddressSpace = 0;
#else
constexpr uint64_t kBiffReaderAddressSpace = uint64_t(1) << 30;
#endif

// Reads the requested columns of the active sheet in the reader program.
SheetReadStatus ReadBiffSheet(const std::string& path, const SheetRequest& request,
                              CSheetCellSink& sink, SheetExtent& extent);

// True when the file starts with the compound document signature.
bool LooksLikeCompoundFile(const std::string& path);

// The answer on the pipe, in the host's byte order: the magic, then cell records
// ('C', u32 column, u32 row, u8 kind, then f64 number for a number or u32 length and UTF-8 bytes
// for a text), then one end record ('E', u8 status, u32 used rows), then nothing.
constexpr char kBiffAnswerMagic[4] = {'V', 'X', 'R', '1'};
constexpr char kBiffCellRecord = 'C';
constexpr char kBiffEndRecord = 'E';
// Longest text one cell may carry; a BIFF cell holds at most 32,767 characters.
constexpr uint32_t kMaxBiffCellTextBytes = 1u << 20;
