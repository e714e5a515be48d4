#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "util/table_export.h"

class CZEBListCtrl;
class QWidget;

// "Export..." in the context menu of the table's column headings, running `run`. The cells keep
// their own right-click (the component tables browse for a part file there). Offered once per
// table, however often a dialog builds its columns.
void OfferTableExport(CZEBListCtrl& table, std::function<void()> run);

// Writes a table as `kind`'s sheet to a file the user chooses (".xlsx" added when the name lacks
// it). A failed write is shown and leaves no file; rows the import could not read back are left
// out, and the user is told how many. A table of lengths records `lengthUnit`. False when
// nothing was written.
bool ExportTableToChosenFile(QWidget* parent, TableSheetKind kind, const TextRows& table,
                             std::optional<int32_t> lengthUnit = std::nullopt);

// The texts of `count` columns of every row of `table`, from column `first` on.
TextRows TableTexts(const CZEBListCtrl& table, int first, int count);
