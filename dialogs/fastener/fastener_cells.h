#pragma once

class CZEBListCtrl;
class QPoint;

// What the fastener tables (clearance and engagement length) share in their cells: column 0 holds
// the fastener name, chosen from the database's names and never the same in two rows; the columns
// after it hold numbers.
inline constexpr int kFastenerNameColumn = 0;

// Commits whichever editor is open. A name another row holds is refused with a message (the
// name, a blank and string 2073) and its cell keeps the old name; a value that is not a number
// (digits and points only) leaves its cell empty. Returns the commit's result: 1 when a cell was
// written, 0 otherwise.
long CommitFastenerEditor(CZEBListCtrl& grid);
// Enter in a fastener table: commits, and keeps the key from the dialog whenever an editor was
// open, so that a refused name does not press the dialog's OK.
long CommitOnEnter(CZEBListCtrl& grid);

// Closes both editors without writing anything.
long CloseFastenerEditors(CZEBListCtrl& grid);

// Opens the editor of a cell: the name choice in column 0, the text editor elsewhere.
void OpenFastenerCell(CZEBListCtrl& grid, int row, int column);

// A double click on a name opens the name choice there; false when the point is on no name cell.
bool ChooseNameAt(CZEBListCtrl& grid, const QPoint& point);
