#pragma once

#include <QPointer>
#include <QTableView>
#include <string>
#include <vector>

#include "controls/grid_model.h"

class CCustomComboBox;
class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;
class CZebCellTextEdit;

// How a part file chosen for a cell is named: by its file name, or by its display name (the
// name cut before its first point when the file is a part).
enum class PartFileNaming { FileName, DisplayName };

// Base of every editable table of the dialogs: one in-place text editor (control 6031) and one
// in-place drop-down editor (control 6038), both created on first use and then reused, and the
// remembered cell of the most recent edit with the text it held when the editor opened. The
// remembered cell survives the editor closing; keyboard handlers navigate from it.
class CZEBListCtrl : public QTableView {
    Q_OBJECT
public:
    enum : int { kTextEditorId = 6031, kChoiceEditorId = 6038, kEditLimit = 260 };

    explicit CZEBListCtrl(QWidget* parent = nullptr);
    ~CZEBListCtrl() override;

    // Only on a table without columns: one left-aligned column of 300 pixels per text; every
    // column becomes editable by keyboard navigation.
    void SetColumns(const std::vector<std::wstring>& headers);
    void InsertColumn(const std::wstring& header, int width);
    // Only on a table without columns: a 20 pixel column 0, the others sharing the rest of
    // `totalWidth`; columns 1 to the last are editable.
    void SetNumberedColumns(const std::vector<std::wstring>& headers, int totalWidth);
    // At least as wide as all its columns (and its scroll bar, when it has one).
    void FitWidthToColumns();
    // The look of the component tables: grid lines, movable headings, whole rows selected.
    void SetRuleTableLook();
    int GetColumnCount() const { return m_model->HeaderCount(); }
    int GetFirstEditableColumn() const { return m_firstEditable; }
    int GetLastEditableColumn() const { return m_lastEditable; }
    void SetEditableColumns(int first, int last);

    void BeginCellEdit(int row, int column, int maxChars);
    int EndCellEdit(std::wstring& text);
    int CancelCellEdit();
    // Commits the text editor as every key and click of the tables does: a text the cell cannot
    // take (IsNumberCell: a value that cannot be read, or below zero) is refused where it was
    // typed, the editor left open and marked, after a message naming the row, column and text; a
    // value is stored in the rules' form ('.' as its separator). 0 when no edit was open; after a
    // refusal IsCellEditOpen() stays true.
    long CommitCellEdit();
    // True while the text editor holds a text CommitCellEdit refused.
    bool HoldsRefusedText() const;
    void BeginCellChoice(int row, int column, int maxChars);
    int EndCellChoice(std::wstring& text, const std::wstring& messageSuffix);
    int HideCellChoice();
    // An edit counts as open only while its editor is shown.
    bool IsCellEditOpen() const;
    bool IsCellChoiceOpen() const;
    int GetCellEditText(std::wstring& text) const;
    int GetEditRow() const { return m_editRow; }
    int GetEditColumn() const { return m_editColumn; }
    std::wstring GetOriginalText() const { return m_originalText; }

    // Entries of the drop-down editor, in order.
    std::vector<std::wstring>& ChoiceList() { return m_choices; }

    int GetRowCount() const { return m_model->rowCount(); }
    // Inserts a row whose first cell is `text` at `index`, or at the end when `index` lies past
    // it; returns the row's index, -1 for a negative index.
    int InsertRow(int index, const std::wstring& text);
    void SetCellText(int row, int column, const std::wstring& text);
    const std::wstring& GetCellText(int row, int column) const {
        return m_model->Text(row, column);
    }
    bool FindInFirstColumn(const std::wstring& text) const;
    void AppendEmptyRowIfLastFilled();

    // Bulk work in one model reset or insertion.
    void SetRows(std::vector<CZebGridModel::Row> rows) { m_model->SetRows(std::move(rows)); }
    void AppendEmptyRows(int count) { m_model->AppendEmptyRows(count); }
    void DeleteAllRows() { m_model->RemoveAllRows(); }
    const std::vector<CZebGridModel::Row>& GetRows() const { return m_model->Rows(); }

    // Selected rows in ascending order.
    std::vector<int> GetSelectedRows() const;
    void GetSelectedFirstColumnTexts(std::vector<std::wstring>& texts) const;
    int GetSelectedRowCount() const;
    int ClearSelectedRows();
    // Deletes the selected rows; as many empty rows as it took from the end of the table are
    // appended again, so that rows can still be added.
    int DeleteSelectedRows();
    // Empty rows below the last row that holds a text.
    int TrailingEmptyRows() const;

    void BrowseFileIntoCell(int row, int column, const std::wstring& filter, PartFileNaming naming);
    void BrowsePartFiles(std::vector<std::wstring>& names);

    // Row and column under a point of the viewport; row -1 when the point is on no cell.
    void HitTest(const QPoint& point, int& row, int& column) const;
    // The cell's rectangle in viewport coordinates, 2 pixels taller above and below.
    QRect GetCellRect(int row, int column) const;

    // What opens a cell: the text editor (on a click, F2, Enter or typing), the drop-down (on a
    // double click, F2, Enter or Alt+Down), nothing, or nothing with clicks there ignored.
    enum class CellEditor { None, Text, Choice, Locked };
    // Is this cell editable, and how. By default the editable columns take text.
    virtual CellEditor EditorOf(int row, int column) const;
    // Commits whatever editor is open, as every click and key does before it acts.
    virtual long CommitOpenEditor();

    // The table's own keys; non-zero consumes the event. The table sees the keys of its editors
    // and its own before the dialog does, so Enter and Escape in a table never press the
    // dialog's buttons. Acts on key presses only.
    virtual long KeyHandler(QEvent* event);

    // Rows as the spreadsheet clipboard holds them: tab-separated cells from the first editable
    // column on, one line a row.
    std::wstring SelectedRowsAsText() const;
    // Puts tab-separated rows into the cells from (row, column) on, adding rows as needed. Cells
    // that are not editable keep their text; values that cannot be read are refused with a
    // message naming them. The number of cells written.
    int PasteText(int row, int column, const std::wstring& text);
    // Inserts an empty row at `row` (at the end when past it).
    void InsertEmptyRow(int row);

protected:
    // Keys with the standard map: see KeyHandler.
    long StandardKeyHandler(QKeyEvent* event);
    // Delete on the table (no editor open): empties the selected rows.
    virtual long OnDeleteKey() { return ClearSelectedRows(); }
    // A double click on a cell whose editor is none of the in-place ones; true when handled.
    virtual bool OnCellActivated(int /*row*/, int /*column*/) { return false; }
    // A right click on the table; true when handled (the component tables browse there). Tables
    // that do not handle it offer their row menu there.
    virtual bool OnCellRightClick(const QPoint& /*point*/) { return false; }
    virtual bool UsesRightClick() const { return false; }
    // Whether the row menu (and the Insert key) may add and delete rows.
    virtual bool OffersRowEditing() const { return true; }
    // Cells that hold a value that must not be below zero.
    virtual bool IsNumberCell(int /*row*/, int /*column*/) const { return false; }
    // Tooltip of a cell; empty gives none.
    virtual std::wstring GetCellTooltip(int /*row*/, int /*column*/) const { return {}; }

    // Opens the editor EditorOf gives the cell; false when it has none.
    bool OpenCell(int row, int column);
    // The next cell with an editor from (row, column) in `step` direction along the row; -1 past
    // the row's end.
    int NextEditableColumn(int row, int column, int step) const;

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    // Tab and Shift+Tab from the open editor: the next editable cell along the row, then on the
    // next row; out of the table at its first and last cell.
    long TabFromEditor(bool forward);
    // The key press of the table itself, no editor open.
    long TableKey(QKeyEvent* event);
    void ShowRowMenu(const QPoint& globalPos);
    QRect EditorRect(int row, int column) const;
    void RememberEditedCell(int row, int column, const std::wstring& text);

    CZebGridModel* m_model;
    int m_firstEditable = 0;
    int m_lastEditable = 0;
    std::vector<std::wstring> m_choices;
    QPointer<CZebCellTextEdit> m_textEditor;
    QPointer<CCustomComboBox> m_choiceEditor;
    int m_editRow = -1;
    int m_editColumn = -1;
    std::wstring m_originalText;
};
