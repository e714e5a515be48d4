#pragma once

#include <string>
#include <vector>

#include "controls/zeb_list_ctrl.h"
#include "dialogs/database/material_tree.h"

class CZebRule;

// The material pairs of the contact material dialog: each cell lists the materials of one side
// of a contact ("A;B;"), chosen in the material pair editor that a double click opens.
class CZEBAsmContactMaterialListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kTooltipBuffer = 500 };

    explicit CZEBAsmContactMaterialListCtrl(QWidget* parent = nullptr) : CZEBListCtrl(parent) {}

    // The dialog the pair editor opens over and the rule it is handed; without both, a double
    // click opens nothing.
    void SetOwner(QWidget* owner, CZebRule* rule);
    // Runs the pair editor on a cell of columns 1 and 2 and writes the choice back; false when
    // nothing was chosen (Cancel, or a cell of another column).
    bool EditCellMaterials(int row, int column);

    // The names of a cell: each up to its ";"; text after the last ";" is no name.
    static std::vector<std::wstring> CellNames(const std::wstring& text);
    // The cell text of a choice, groups in order: a group's materials, or the group itself when
    // none of its materials is named, each followed by ";".
    static std::wstring CellText(const MaterialChoice& choice);

protected:
    // The cell's whole text, as long lists do not fit their column.
    std::wstring GetCellTooltip(int row, int column) const override;
    // Cells are filled by the pair editor only, which a double click, F2 or Enter opens.
    CellEditor EditorOf(int, int) const override { return CellEditor::None; }
    bool OnCellActivated(int row, int column) override { return EditCellMaterials(row, column); }

private:
    QWidget* m_owner = nullptr;
    CZebRule* m_rule = nullptr;
};
