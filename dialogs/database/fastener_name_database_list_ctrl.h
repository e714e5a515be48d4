#pragma once

#include <string>

#include "controls/zeb_list_ctrl.h"

class QWidget;

// Adds a typed or browsed name to the database as it stands, once the database folder is known
// to be usable. Every refusal is reported (error icon); false when the name was not added.
bool AddFastenerNameGuarded(QWidget* parent, const std::wstring& name);

// The one-column table of the fastener name database dialog. Every change goes to the database
// at once: a committed new row adds its name, a committed existing row renames it, deleted rows
// delete their names.
class CZEBFastenerNameDatabaseListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    explicit CZEBFastenerNameDatabaseListCtrl(QWidget* parent = nullptr);

    // Opens the text editor on the name of `row`, scrolled into view first.
    void EditName(int row);
    // Commits an open editor. A new row (empty before editing) adds its text to the database;
    // an existing row renames its name. A row the database refuses leaves the table. An empty
    // text commits nothing and the editor stays open.
    void CommitEdit();
    // Removes the selected rows and deletes their names from the database; with
    // `reportFailure`, names the database could not delete are reported once. The table keeps
    // a spare empty last row. False when no row was selected.
    bool DeleteSelectedNames(bool reportFailure);
    // Asks for part files and adds their base names to the database and the table.
    void AddPartFileNames();
    // Enter commits, Escape abandons the editor (and a fresh row with it), Delete deletes the
    // selected names. Keys that close the editor are consumed so the dialog stays open.
    long KeyHandler(QEvent* event) override;

    // Removes one row; false when there is no such row.
    bool RemoveRow(int row);

    // Names are edited by a double click (EditName) only: a click selects.
    CellEditor EditorOf(int, int) const override { return CellEditor::None; }
    // CommitEdit, and a spare row kept at the end.
    long CommitOpenEditor() override;

protected:
    bool OnCellActivated(int row, int column) override;
    // A right click adds part files' names.
    bool OnCellRightClick(const QPoint& point) override;
    bool UsesRightClick() const override { return true; }
    // Rows are names in the database: they come and go through its own buttons.
    bool OffersRowEditing() const override { return false; }
};
