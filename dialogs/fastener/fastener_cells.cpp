#include "dialogs/fastener/fastener_cells.h"

#include <string>

#include "app/assembly_rules_app.h"
#include "controls/zeb_list_ctrl.h"

long CommitFastenerEditor(CZEBListCtrl& grid) {
    std::wstring text;
    if (grid.IsCellChoiceOpen())
        return grid.EndCellChoice(text, LoadLocalizedString(IDS_FASTENER_NAME_ALREADY_LISTED));
    return grid.CommitCellEdit();
}

long CloseFastenerEditors(CZEBListCtrl& grid) {
    const bool open = grid.IsCellEditOpen() || grid.IsCellChoiceOpen();
    grid.CancelCellEdit();
    grid.HideCellChoice();
    return open ? 1 : 0;
}
