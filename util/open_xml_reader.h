#pragma once

#include <string>

#include "util/sheet_cells.h"

// Reads the requested columns of the active sheet of an Office Open XML workbook (".xlsx").
// Shared by the module's built-in reader and the reader library, so both read a sheet alike.
// Hostile files are bounded: each ZIP entry is read up to a size cap, entry names are only looked
// up inside the archive, rows and columns beyond the format's limits are refused, and so are empty
// tags, nested shared strings, more text than one read collects and more number formats than a
// workbook needs.
SheetReadStatus ReadOpenXmlSheet(const std::string& path, const SheetRequest& request,
                                 CSheetCellSink& sink, SheetExtent& extent);

// The text of the workbook's custom document property `name` (of any value type); empty when the
// file is no workbook or has no such property. Spreadsheets keep their cells as they are: the
// property travels beside them.
std::string ReadOpenXmlCustomProperty(const std::string& path, const std::string& name);

// True when the file starts like a ZIP archive.
bool LooksLikeZip(const std::string& path);

// Largest decompressed size of one ZIP entry the reader accepts.
constexpr uint64_t kMaxZipEntryBytes = 512ull * 1024 * 1024;
