#include "controls/zeb_list_ctrl.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "controls/cell_text_edit.h"
#include "controls/custom_combo_box.h"
#include "framework/case_fold.h"
#include "framework/ui/control_id.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"

namespace {
QString ToQ(const std::wstring& text) { return QString::fromStdWString(text); }

// Moves an in-place editor over the cell and shows it; on first use it is created there, with
// the table's font, its control id and its text limit (later openings keep the first limit).
// It comes right after the table in the window's tab order, so that Tab leaves the table for
// the next control.
template <class Editor, class SetLimit>
void PlaceEditor(QPointer<Editor>& editor, QWidget* table, int id, const QRect& rect, SetLimit setLimit) {
    if (!editor) {
        editor = new Editor(table);
        QWidget::setTabOrder(table, editor);
        SetZebControlId(editor, id);
        editor->setFont(table->font());
        setLimit(editor.data());
    }
    editor->setGeometry(rect);
    editor->show();
    editor->raise();
}

// Hides an editor; the table takes the keyboard focus back when the editor had it.
void HideEditor(QWidget* editor, QWidget* table) {
    const bool hadFocus = editor->hasFocus();
    editor->hide();
    if (hadFocus) table->setFocus();
}

}  // namespace

CZEBListCtrl::CZEBListCtrl(QWidget* parent) : QTableView(parent), m_model(new CZebGridModel(this)) {
    setModel(m_model);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setWordWrap(false);
    // Tab moves between controls, not cells: the key handlers move the editor themselves.
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(false);
    horizontalHeader()->setMinimumSectionSize(0);
    // Scrolled rows are repainted at once, behind editors that stay where they were opened.
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { viewport()->repaint(); });
}

CZEBListCtrl::~CZEBListCtrl() {
    delete m_textEditor;
    delete m_choiceEditor;
}

void CZEBListCtrl::SetColumns(const std::vector<std::wstring>& headers) {
    if (GetColumnCount() > 0) return;
    SetEditableColumns(0, static_cast<int>(headers.size()) - 1);
    for (const std::wstring& header : headers) InsertColumn(header, 300);
}

void CZEBListCtrl::InsertColumn(const std::wstring& header, int width) {
    m_model->AddColumn(header);
    setColumnWidth(GetColumnCount() - 1, width);
}

void CZEBListCtrl::SetNumberedColumns(const std::vector<std::wstring>& headers, int totalWidth) {
    if (GetColumnCount() > 0 || headers.empty()) return;
    const int count = static_cast<int>(headers.size());
    SetEditableColumns(1, count - 1);
    InsertColumn(headers[0], 20);
    for (int i = 1; i < count; ++i) InsertColumn(headers[i], (totalWidth - 20) / (count - 1));
}

void CZEBListCtrl::FitWidthToColumns() {
    int width = 2 * frameWidth();
    for (int column = 0; column < GetColumnCount(); ++column) width += columnWidth(column);
    if (verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff)
        width += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    setMinimumWidth(width);
}

void CZEBListCtrl::SetCourierHeadings() {
    QFont courier(QStringLiteral("Courier"), 12);
    courier.setStyleHint(QFont::TypeWriter);
    horizontalHeader()->setFont(courier);
}

void CZEBListCtrl::SetRuleTableLook() {
    setShowGrid(true);
    horizontalHeader()->setSectionsMovable(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    SetCourierHeadings();
}

void CZEBListCtrl::SetEditableColumns(int first, int last) {
    m_firstEditable = first;
    m_lastEditable = last;
}

QRect CZEBListCtrl::GetCellRect(int row, int column) const {
    return visualRect(m_model->index(row, column)).adjusted(0, -2, 0, 2);
}

QRect CZEBListCtrl::EditorRect(int row, int column) const {
    // Editors are children of the table, not of the scrolled viewport.
    return GetCellRect(row, column).translated(viewport()->pos());
}

void CZEBListCtrl::HitTest(const QPoint& point, int& row, int& column) const {
    const QModelIndex index = indexAt(point);
    row = index.isValid() ? index.row() : -1;
    column = index.isValid() ? index.column() : columnAt(point.x());
}

void CZEBListCtrl::RememberEditedCell(int row, int column, const std::wstring& text) {
    m_editRow = row;
    m_editColumn = column;
    m_originalText = text;
}

void CZEBListCtrl::BeginCellEdit(int row, int column, int maxChars) {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= GetColumnCount()) return;
    const QRect rect = EditorRect(row, column);
    const std::wstring text = GetCellText(row, column);
    PlaceEditor(m_textEditor, this, kTextEditorId, rect,
                [maxChars](CZebCellTextEdit* editor) { editor->SetTypingLimit(maxChars); });
    m_textEditor->SetCellText(ToQ(text));
    m_textEditor->selectAll();
    m_textEditor->setFocus();
    RememberEditedCell(row, column, text);
}

bool CZEBListCtrl::IsCellEditOpen() const { return m_textEditor && !m_textEditor->isHidden(); }

bool CZEBListCtrl::IsCellChoiceOpen() const { return m_choiceEditor && !m_choiceEditor->isHidden(); }

int CZEBListCtrl::EndCellEdit(std::wstring& text) {
    if (!IsCellEditOpen()) return 0;
    const std::wstring edited = m_textEditor->text().toStdWString();
    HideEditor(m_textEditor, this);
    SetCellText(m_editRow, m_editColumn, edited);
    text = edited;
    return 1;
}

int CZEBListCtrl::CancelCellEdit() {
    if (!m_textEditor) return 0;
    HideEditor(m_textEditor, this);
    return 1;
}

int CZEBListCtrl::GetCellEditText(std::wstring& text) const {
    if (!m_textEditor) return 0;
    text = m_textEditor->text().toStdWString();
    return 1;
}

void CZEBListCtrl::BeginCellChoice(int row, int column, int maxChars) {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= GetColumnCount()) return;
    const QRect rect = EditorRect(row, column);
    const std::wstring text = GetCellText(row, column);
    PlaceEditor(m_choiceEditor, this, kChoiceEditorId, rect,
                [maxChars](CCustomComboBox* editor) { editor->SetTextLimit(maxChars); });
    m_choiceEditor->clear();
    int selected = 0;
    for (size_t i = 0; i < m_choices.size(); ++i) {
        m_choiceEditor->addItem(ToQ(m_choices[i]));
        if (ZebEqualsNoCase(m_choices[i], text)) selected = static_cast<int>(i);
    }
    m_choiceEditor->setCurrentIndex(m_choices.empty() ? -1 : selected);
    m_choiceEditor->setFocus();
    RememberEditedCell(row, column, text);
}

int CZEBListCtrl::EndCellChoice(std::wstring& text, const std::wstring& messageSuffix) {
    const std::wstring old = GetCellText(m_editRow, m_editColumn);
    if (!m_choiceEditor) return 0;
    const std::wstring chosen = m_choiceEditor->currentText().toStdWString();
    HideEditor(m_choiceEditor, this);
    if (!ZebEqualsNoCase(chosen, old) && FindInFirstColumn(chosen)) {
        ZebUiMessage(window(), chosen + L" " + messageSuffix, ZebMsgIcon::Information,
                     ZebMsgButtons::Ok);
        return 0;
    }
    SetCellText(m_editRow, m_editColumn, chosen);
    text = chosen;
    return 1;
}

int CZEBListCtrl::HideCellChoice() {
    if (!m_choiceEditor) return 0;
    m_choiceEditor->hide();
    return 1;
}

int CZEBListCtrl::InsertRow(int index, const std::wstring& text) {
    if (index < 0) return -1;
    index = std::min(index, GetRowCount());
    return m_model->InsertRowAt(index, {text}) ? index : -1;
}

void CZEBListCtrl::SetCellText(int row, int column, const std::wstring& text) {
    m_model->SetText(row, column, text);
}

bool CZEBListCtrl::FindInFirstColumn(const std::wstring& text) const {
    for (const CZebGridModel::Row& row : GetRows()) {
        if (ZebEqualsNoCase(row.empty() ? std::wstring() : row[0], text)) return true;
    }
    return false;
}

void CZEBListCtrl::AppendEmptyRowIfLastFilled() {
    const int count = GetRowCount();
    if (count > 0 && !GetCellText(count - 1, 0).empty()) InsertRow(count, L"");
}

std::vector<int> CZEBListCtrl::GetSelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void CZEBListCtrl::GetSelectedFirstColumnTexts(std::vector<std::wstring>& texts) const {
    for (int row : GetSelectedRows()) texts.push_back(GetCellText(row, 0));
}

int CZEBListCtrl::GetSelectedRowCount() const {
    return static_cast<int>(selectionModel()->selectedRows().size());
}

int CZEBListCtrl::ClearSelectedRows() {
    const std::vector<int> selected = GetSelectedRows();
    if (selected.empty()) return 0;
    // Each selected row gives way to an empty, unselected row at the same index; done in one
    // pass so that clearing a large selection stays linear.
    selectionModel()->clearSelection();
    m_model->ClearRows(selected);
    return 1;
}

int CZEBListCtrl::DeleteSelectedRows() {
    const std::vector<int> selected = GetSelectedRows();
    if (selected.empty()) return 1;
    if (selected.back() >= GetRowCount()) return 0;
    m_model->RemoveRows(selected);
    return 1;
}

void CZEBListCtrl::BrowseFileIntoCell(int row, int column, const std::wstring& filter,
                                      PartFileNaming naming) {
    IZebUiService* service = GetZebUiService();
    if (!service) return;
    ZebOpenFileRequest request;
    request.filter = filter;
    std::vector<std::wstring> paths;
    std::wstring name;
    if (service->OpenFiles(window(), request, paths) && !paths.empty()) {
        const std::wstring& path = paths.front();
        name = GetFileNameFromPath(path);
        if (naming == PartFileNaming::DisplayName) name = GetPartDisplayName(path, name);
    } else {
        name = GetCellText(row, column);
    }
    if (!name.empty()) SetCellText(row, column, name);
}

void CZEBListCtrl::BrowsePartFiles(std::vector<std::wstring>& names) {
    IZebUiService* service = GetZebUiService();
    if (!service) return;
    ZebOpenFileRequest request;
    request.filter = L"(*.prt.*;*.prt)|*.prt.*;*.prt";
    request.multiSelect = true;
    std::vector<std::wstring> paths;
    if (!service->OpenFiles(window(), request, paths)) return;
    for (const std::wstring& path : paths) {
        const std::wstring base = GetBaseFileName(path);
        if (!ContainsNoCase(base, names)) names.push_back(base);
    }
}

long CZEBListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    return StandardKeyHandler(static_cast<QKeyEvent*>(event)->key());
}

long CZEBListCtrl::StandardKeyHandler(int key) {
    std::wstring text;
    const int row = m_editRow, column = m_editColumn;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return EndCellEdit(text);
    case Qt::Key_Escape:
        return CancelCellEdit();
    case Qt::Key_Tab: {
        if (column >= m_lastEditable) return 0;
        const long result = EndCellEdit(text);
        BeginCellEdit(row, column + 1, kEditLimit);
        return result;
    }
    case Qt::Key_Left: {
        const long result = EndCellEdit(text);
        if (column > m_firstEditable) BeginCellEdit(row, column - 1, kEditLimit);
        return result;
    }
    case Qt::Key_Right: {
        const long result = EndCellEdit(text);
        if (column < m_lastEditable) BeginCellEdit(row, column + 1, kEditLimit);
        return result;
    }
    case Qt::Key_Up: {
        const long result = EndCellEdit(text);
        if (row > 0) BeginCellEdit(row - 1, column, kEditLimit);
        return result;
    }
    case Qt::Key_Down: {
        const long result = EndCellEdit(text);
        BeginCellEdit(row + 1, column, kEditLimit);
        return result;
    }
    case Qt::Key_Delete:
        return IsCellEditOpen() ? 0 : ClearSelectedRows();
    default:
        return 0;
    }
}

bool CZEBListCtrl::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        int row = -1, column = -1;
        HitTest(help->pos(), row, column);
        const std::wstring tip = row >= 0 && column >= 0 ? GetCellTooltip(row, column) : std::wstring();
        if (tip.empty()) {
            QToolTip::hideText();
            event->ignore();
        } else {
            QToolTip::showText(help->globalPos(), ToQ(tip), viewport());
        }
        return true;
    }
    return QTableView::viewportEvent(event);
}

long CZEBListCtrl::KeyHandlerFor(QObject* target, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(target);
    if (!widget || (widget != this && !isAncestorOf(widget))) return 0;
    return KeyHandler(event);
}
