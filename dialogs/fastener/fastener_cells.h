#pragma once

class CZEBListCtrl;

// What the fastener tables (clearance and engagement length) share in their cells: column 0 holds
// the fastener name, chosen from the database's names and never the same in two rows; the columns
// after it hold numbers.
inline constexpr int kFastenerNameColumn = 0;

// Commits whichever editor is open. A name another row holds is refused with a message (the
// name, a blank and string 2073) and its cell keeps the old name; a value that cannot be read is
// refused where it was typed (CZEBListCtrl::CommitCellEdit). Returns the commit's result: 1 when a
// cell was written or a value refused, 0 otherwise.
long CommitFastenerEditor(CZEBListCtrl& grid);

// Closes both editors without writing anything.
long CloseFastenerEditors(CZEBListCtrl& grid);
