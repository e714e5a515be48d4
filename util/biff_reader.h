#pragma once

#include <string>

#include "util/sheet_cells.h"

// Reads the requested columns of the active sheet of a BIFF workbook (".xls", a compound
// document) with libfreexl. Workbooks whose workbook stream is too small for libfreexl are read
// from a padded copy held in memory.
SheetReadStatus ReadBiffSheet(const std::string& path, const SheetRequest& request,
                              CSheetCellSink& sink, SheetExtent& extent);

// True when the file starts with the compound document signature.
bool LooksLikeCompoundFile(const std::string& path);
