#pragma once

#include <string>
#include <string_view>

#include "util/biff_reader.h"
#include "util/sheet_cells.h"

// The reader program's side of ".xls" reads (see biff_reader.h): reads the workbook with
// libfreexl in this process. Only the reader program links it, so libfreexl is never loaded into
// the module. Workbooks whose workbook stream is too small for libfreexl are read from a padded
// copy held in memory.
SheetReadStatus ParseBiffSheet(const std::string& path, const SheetRequest& request,
                               CSheetCellSink& sink, SheetExtent& extent);

// Writes the answer in the format biff_reader.h gives to a descriptor; `Finish` sends the end
// record. False once a write failed.
class CBiffAnswerWriter : public CSheetCellSink {
public:
    explicit CBiffAnswerWriter(int fd);
    void Cell(uint32_t column, uint32_t row, CellKind kind, double number,
              std::string_view text) override;
    bool Finish(SheetReadStatus status, const SheetExtent& extent);
    // Sends what is buffered.
    bool Flush();

private:
    void Put(const void* bytes, size_t size);

    int m_fd;
    std::string m_buffer;
    bool m_failed = false;
};
