#pragma once

#include <QPointer>
#include <QTableView>
#include <string>
#include <vector>

#include "controls/grid_model.h"

class CCustomComboBox;
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
    // The headings of the rule dialogs' tables: 12 point "Courier".
    void SetCourierHeadings();
    // The look of the component tables: grid lines, movable "Courier" headings, whole rows
    // selected.
    void SetRuleTableLook();
    int GetColumnCount() const { return m_model->HeaderCount(); }
    int GetFirstEditableColumn() const { return m_firstEditable; }
    int GetLastEditableColumn() const { return m_lastEditable; }
    void SetEditableColumns(int first, int last);

    void BeginCellEdit(int row, int column, int maxChars);
    int EndCellEdit(std::wstring& text);
    int CancelCellEdit();
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
    const std::wstring& GetCellText(int row, int column) const { return m_model->Text(row, column); }
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
    int DeleteSelectedRows();

    void BrowseFileIntoCell(int row, int column, const std::wstring& filter, PartFileNaming naming);
    void BrowsePartFiles(std::vector<std::wstring>& names);

    // Row and column under a point of the viewport; row -1 when the point is on no cell.
    void HitTest(const QPoint& point, int& row, int& column) const;
    // The cell's rectangle in viewport coordinates, 2 pixels taller above and below.
    QRect GetCellRect(int row, int column) const;

    // Key handler, offered every event by the owning dialog's pre-translation; non-zero
    // consumes the event. Acts on key presses only.
    virtual long KeyHandler(QEvent* event);
    // KeyHandler for an event of this table or of a widget inside it (its editors); 0 for others.
    long KeyHandlerFor(QObject* target, QEvent* event);

protected:
    // Standard key map: commit, cancel and moving the editor between cells.
    long StandardKeyHandler(int key);
    // Tooltip of a cell; empty gives none.
    virtual std::wstring GetCellTooltip(int /*row*/, int /*column*/) const { return {}; }
    bool viewportEvent(QEvent* event) override;

private:
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
