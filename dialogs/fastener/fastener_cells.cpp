#include "dialogs/fastener/fastener_cells.h"

#include <string>

#include "app/assembly_rules_app.h"
#include "controls/zeb_list_ctrl.h"
#include "util/number_text.h"

long CommitFastenerEditor(CZEBListCtrl& grid) {
    std::wstring text;
    if (grid.IsCellChoiceOpen())
        return grid.EndCellChoice(text, LoadLocalizedString(IDS_FASTENER_NAME_ALREADY_LISTED));
    const long result = grid.EndCellEdit(text);
    if (result && grid.GetEditColumn() != kFastenerNameColumn && !IsNumericText(text))
        grid.SetCellText(grid.GetEditRow(), grid.GetEditColumn(), L"");
    return result;
}

long CommitOnEnter(CZEBListCtrl& grid) {
    const bool open = grid.IsCellEditOpen() || grid.IsCellChoiceOpen();
    const long result = CommitFastenerEditor(grid);
    return open ? 1 : result;
}

long CloseFastenerEditors(CZEBListCtrl& grid) {
    const bool open = grid.IsCellEditOpen() || grid.IsCellChoiceOpen();
    grid.CancelCellEdit();
    grid.HideCellChoice();
    return open ? 1 : 0;
}

void OpenFastenerCell(CZEBListCtrl& grid, int row, int column) {
    if (column == kFastenerNameColumn) grid.BeginCellChoice(row, column, CZEBListCtrl::kEditLimit);
    else grid.BeginCellEdit(row, column, CZEBListCtrl::kEditLimit);
}

bool ChooseNameAt(CZEBListCtrl& grid, const QPoint& point) {
    int row = -1, column = -1;
    grid.HitTest(point, row, column);
    if (row < 0 || column != kFastenerNameColumn) return false;
    grid.BeginCellChoice(row, column, CZEBListCtrl::kEditLimit);
    return true;
}
