#include "controls/zeb_list_ctrl.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "app/assembly_rules_app.h"
#include "controls/cell_text_edit.h"
#include "controls/custom_combo_box.h"
#include "controls/number_entry.h"
#include "framework/case_fold.h"
#include "framework/resource_library.h"
#include "framework/ui/control_id.h"
#include "framework/ui/ui_service.h"
#include "util/file_helpers.h"
#include "util/number_text.h"

namespace {
QString ToQ(const std::wstring& text) { return QString::fromStdWString(text); }

// Moves an in-place editor over the cell and shows it; on first use it is created there, with
// the table's font, its control id and its text limit (later openings keep the first limit).
// It comes right after the table in the window's tab order, so that Tab leaves the table for
// the next control.
template <class Editor, class SetLimit>
void PlaceEditor(QPointer<Editor>& editor, QWidget* table, int id, const QRect& rect,
                 SetLimit setLimit) {
    if (!editor) {
        editor = new Editor(table);
        QWidget::setTabOrder(table, editor);
        // The table takes its editors' keys before they do (Enter, Tab and the arrows move).
        editor->installEventFilter(table);
        SetZebControlId(editor, id);
        editor->setFont(table->font());
        setLimit(editor.data());
    }
    editor->setGeometry(rect);
    editor->show();
    editor->raise();
}

void SetClipboardText(const std::wstring& text) {
    QGuiApplication::clipboard()->setText(ToQ(text));
}
std::wstring ClipboardText() { return QGuiApplication::clipboard()->text().toStdWString(); }

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
    setContextMenuPolicy(Qt::DefaultContextMenu);
    setWordWrap(false);
    // Tab moves between controls, not cells: the key handlers move the editor themselves.
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // The last column takes the room a wider dialog gives the table.
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setMinimumSectionSize(0);
    // Scrolled rows are repainted behind editors that stay where they were opened. The repaint
    // is scheduled: the value also changes while the view lays itself out inside its own paint
    // (a scrolled table that shrinks), where an immediate repaint would recurse.
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { viewport()->update(); });
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
    // Never narrower than its heading: longer translations are not cut.
    const int column = GetColumnCount() - 1;
    setColumnWidth(column, header.empty()
                               ? width
                               : std::max(width, horizontalHeader()->sectionSizeHint(column)));
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

void CZEBListCtrl::SetRuleTableLook() {
    setShowGrid(true);
    horizontalHeader()->setSectionsMovable(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
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

bool CZEBListCtrl::HoldsRefusedText() const {
    return IsCellEditOpen() && IsMarkedRefused(*m_textEditor);
}

void CZEBListCtrl::BeginCellEdit(int row, int column, int maxChars) {
    // A refused text stays where it was typed until it is corrected or the edit cancelled.
    if (HoldsRefusedText()) return;
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

bool CZEBListCtrl::IsCellChoiceOpen() const {
    return m_choiceEditor && !m_choiceEditor->isHidden();
}

int CZEBListCtrl::EndCellEdit(std::wstring& text) {
    if (!IsCellEditOpen()) return 0;
    const std::wstring edited = m_textEditor->text().toStdWString();
    MarkRefused(*m_textEditor, false);
    HideEditor(m_textEditor, this);
    SetCellText(m_editRow, m_editColumn, edited);
    text = edited;
    return 1;
}

long CZEBListCtrl::CommitCellEdit() {
    if (!IsCellEditOpen()) return 0;
    std::wstring text = m_textEditor->text().toStdWString();
    if (IsNumberCell(m_editRow, m_editColumn)) {
        const NumberEntry entry = ReadNumberEntry(text);
        if (!entry.Ok() && entry.fault != NumberTextFault::Empty) {
            MarkRefused(*m_textEditor, true);
            const std::wstring heading =
                m_model->headerData(m_editColumn, Qt::Horizontal, Qt::DisplayRole)
                    .toString()
                    .toStdWString();
            ZebUiMessage(window(),
                         ZebFormatText(LoadLocalizedString(IDS_CELL_VALUE_REFUSED),
                                       {std::to_wstring(m_editRow + 1), heading, text,
                                        NumberFaultText(entry.fault)}),
                         ZebMsgIcon::Warning, ZebMsgButtons::Ok);
            m_textEditor->setFocus();
            return 1;
        }
        if (entry.Ok()) m_textEditor->setText(QString::fromStdWString(entry.text));
    }
    return EndCellEdit(text);
}

int CZEBListCtrl::CancelCellEdit() {
    if (!m_textEditor) return 0;
    MarkRefused(*m_textEditor, false);
    HideEditor(m_textEditor, this);
    return 1;
}

int CZEBListCtrl::GetCellEditText(std::wstring& text) const {
    if (!m_textEditor) return 0;
    text = m_textEditor->text().toStdWString();
    return 1;
}

void CZEBListCtrl::BeginCellChoice(int row, int column, int maxChars) {
    if (HoldsRefusedText()) return;
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
    HideEditor(m_choiceEditor, this);
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

int CZEBListCtrl::TrailingEmptyRows() const {
    const std::vector<CZebGridModel::Row>& rows = GetRows();
    const auto isEmpty = [](const CZebGridModel::Row& row) {
        return std::all_of(row.begin(), row.end(),
                           [](const std::wstring& cell) { return cell.empty(); });
    };
    const auto filled = std::find_if_not(rows.rbegin(), rows.rend(), isEmpty);
    return static_cast<int>(filled - rows.rbegin());
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
    const int spare = TrailingEmptyRows();
    m_model->RemoveRows(selected);
    // New rows are typed into the spare rows at the end: a deletion that took them (select all,
    // then Delete) gives them back.
    const int lost = spare - TrailingEmptyRows();
    if (lost > 0) AppendEmptyRows(lost);
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

bool CZEBListCtrl::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        int row = -1, column = -1;
        HitTest(help->pos(), row, column);
        const std::wstring tip =
            row >= 0 && column >= 0 ? GetCellTooltip(row, column) : std::wstring();
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

CZEBListCtrl::CellEditor CZEBListCtrl::EditorOf(int /*row*/, int column) const {
    return column >= m_firstEditable && column <= m_lastEditable ? CellEditor::Text
                                                                 : CellEditor::None;
}

long CZEBListCtrl::CommitOpenEditor() {
    std::wstring text;
    return IsCellChoiceOpen() ? EndCellChoice(text, {}) : CommitCellEdit();
}

bool CZEBListCtrl::OpenCell(int row, int column) {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= GetColumnCount()) return false;
    switch (EditorOf(row, column)) {
        case CellEditor::Text:
            BeginCellEdit(row, column, kEditLimit);
            return true;
        case CellEditor::Choice:
            BeginCellChoice(row, column, kEditLimit);
            return true;
        case CellEditor::None:
        case CellEditor::Locked:
            break;
    }
    return false;
}

int CZEBListCtrl::NextEditableColumn(int row, int column, int step) const {
    for (int next = column + step; next >= 0 && next < GetColumnCount(); next += step) {
        const CellEditor editor = EditorOf(row, next);
        if (editor == CellEditor::Text || editor == CellEditor::Choice) return next;
    }
    return -1;
}

long CZEBListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    return StandardKeyHandler(static_cast<QKeyEvent*>(event));
}

long CZEBListCtrl::TabFromEditor(bool forward) {
    const int row = m_editRow, column = m_editColumn;
    CommitOpenEditor();
    if (HoldsRefusedText()) return 1;
    const int step = forward ? 1 : -1;
    int next = NextEditableColumn(row, column, step);
    if (next >= 0) {
        OpenCell(row, next);
        return 1;
    }
    const int nextRow = row + step;
    if (nextRow >= 0 && nextRow < GetRowCount()) {
        next = NextEditableColumn(nextRow, forward ? -1 : GetColumnCount(), step);
        if (next >= 0 && OpenCell(nextRow, next)) return 1;
    }
    // The ends of the table lead out of it, to the controls before and after it.
    setFocus();
    focusNextPrevChild(forward);
    return 1;
}

long CZEBListCtrl::StandardKeyHandler(QKeyEvent* event) {
    const int key = event->key();
    const int row = m_editRow, column = m_editColumn;
    if (key == Qt::Key_Backtab || (key == Qt::Key_Tab && (event->modifiers() & Qt::ShiftModifier)))
        return IsCellEditOpen() || IsCellChoiceOpen() ? TabFromEditor(false) : 0;
    if (IsCellChoiceOpen()) {
        // The drop-down keeps its arrows and Alt+Down; Enter takes the entry.
        switch (key) {
            case Qt::Key_Return:
            case Qt::Key_Enter:
                CommitOpenEditor();
                return 1;
            case Qt::Key_Escape:
                return HideCellChoice();
            case Qt::Key_Tab:
                return TabFromEditor(true);
            default:
                return 0;
        }
    }
    if (!IsCellEditOpen()) return TableKey(event);
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            // Enter commits and goes on down the column, never to the dialog's default button.
            CommitOpenEditor();
            if (!HoldsRefusedText() && row + 1 < GetRowCount()) OpenCell(row + 1, column);
            return 1;
        }
        case Qt::Key_Escape:
            return CancelCellEdit();
        case Qt::Key_Tab:
            return TabFromEditor(true);
        case Qt::Key_Left:
        case Qt::Key_Right: {
            const long result = CommitOpenEditor();
            const int next = NextEditableColumn(row, column, key == Qt::Key_Left ? -1 : 1);
            if (next >= 0) OpenCell(row, next);
            return result;
        }
        case Qt::Key_Up:
        case Qt::Key_Down: {
            const long result = CommitOpenEditor();
            const int target = row + (key == Qt::Key_Up ? -1 : 1);
            if (target >= 0) OpenCell(target, column);
            return result;
        }
        default:
            return 0;
    }
}

long CZEBListCtrl::TableKey(QKeyEvent* event) {
    const QModelIndex current = currentIndex();
    const int row = current.isValid() ? current.row() : -1;
    const int column = current.isValid() ? current.column() : NextEditableColumn(row, -1, 1);
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (event->matches(QKeySequence::Copy)) {
        const std::wstring text = SelectedRowsAsText();
        if (!text.empty()) SetClipboardText(text);
        return 1;
    }
    if (event->matches(QKeySequence::Paste)) {
        PasteText(std::max(row, 0), column, ClipboardText());
        return 1;
    }
    switch (event->key()) {
        case Qt::Key_F2:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            // Enter in a table opens its cell; it never presses the dialog's default button.
            if (row >= 0 && !OpenCell(row, column)) OnCellActivated(row, column);
            return 1;
        case Qt::Key_Down:
            if (modifiers != Qt::AltModifier || row < 0 ||
                EditorOf(row, column) != CellEditor::Choice)
                return 0;
            BeginCellChoice(row, column, kEditLimit);
            if (m_choiceEditor) m_choiceEditor->showPopup();
            return 1;
        case Qt::Key_Delete:
            if (modifiers & Qt::ShiftModifier) return OffersRowEditing() ? DeleteSelectedRows() : 0;
            return OnDeleteKey();
        case Qt::Key_Insert:
            if (!OffersRowEditing() || modifiers != Qt::NoModifier) return 0;
            InsertEmptyRow(row < 0 ? GetRowCount() : row);
            return 1;
        default:
            break;
    }
    // Typing on a text cell opens it with what was typed, as spreadsheets do.
    const QString typed = event->text();
    if (row >= 0 && !typed.isEmpty() && typed.at(0).isPrint() &&
        !(modifiers & (Qt::ControlModifier | Qt::AltModifier)) &&
        EditorOf(row, column) == CellEditor::Text) {
        BeginCellEdit(row, column, kEditLimit);
        if (IsCellEditOpen()) m_textEditor->setText(typed);
        return 1;
    }
    return 0;
}

std::wstring CZEBListCtrl::SelectedRowsAsText() const {
    std::wstring text;
    for (int row : GetSelectedRows()) {
        for (int column = m_firstEditable; column <= m_lastEditable; ++column) {
            if (column > m_firstEditable) text += L'\t';
            text += GetCellText(row, column);
        }
        text += L'\n';
    }
    return text;
}

int CZEBListCtrl::PasteText(int row, int column, const std::wstring& text) {
    if (row < 0 || column < 0) return 0;
    std::vector<std::vector<std::wstring>> lines(1);
    for (wchar_t c : text) {
        if (c == L'\r') continue;
        if (c == L'\n')
            lines.emplace_back();
        else if (c == L'\t')
            lines.back().emplace_back();
        else {
            if (lines.back().empty()) lines.back().emplace_back();
            lines.back().back() += c;
        }
    }
    if (!text.empty() && text.back() == L'\n') lines.pop_back();
    const int needed = row + static_cast<int>(lines.size()) - GetRowCount();
    if (needed > 0) AppendEmptyRows(needed);
    int written = 0;
    std::wstring refused;
    for (size_t i = 0; i < lines.size(); ++i) {
        const int r = row + static_cast<int>(i);
        for (size_t k = 0; k < lines[i].size(); ++k) {
            const int c = column + static_cast<int>(k);
            if (c >= GetColumnCount() || EditorOf(r, c) == CellEditor::None ||
                EditorOf(r, c) == CellEditor::Locked)
                continue;
            std::wstring cell = TrimBlanks(lines[i][k]);
            const auto refuse = [&](const std::wstring& why) {
                const std::wstring heading = m_model->headerData(c, Qt::Horizontal, Qt::DisplayRole)
                                                 .toString()
                                                 .toStdWString();
                refused += ZebFormatText(LoadLocalizedString(IDS_CELL_VALUE_REFUSED),
                                         {std::to_wstring(r + 1), heading, cell, why}) +
                           L"\n";
            };
            if (EditorOf(r, c) == CellEditor::Choice && !cell.empty()) {
                // Pasted as the drop-down would take it: a name it offers, in its spelling, once.
                // The rest of the row belongs to that name and goes with it.
                const auto offered = std::find_if(
                    m_choices.begin(), m_choices.end(),
                    [&](const std::wstring& name) { return ZebEqualsNoCase(name, cell); });
                if (offered == m_choices.end()) {
                    refuse(LoadLocalizedString(IDS_CHOICE_NOT_OFFERED));
                    break;
                }
                if (!ZebEqualsNoCase(*offered, GetCellText(r, c)) && FindInFirstColumn(*offered)) {
                    refuse(LoadLocalizedString(IDS_CHOICE_ALREADY_LISTED));
                    break;
                }
                cell = *offered;
            } else if (IsNumberCell(r, c) && !cell.empty()) {
                const NumberEntry entry = ReadNumberEntry(cell);
                if (!entry.Ok()) {
                    refuse(NumberFaultText(entry.fault));
                    continue;
                }
                cell = entry.text;
            }
            SetCellText(r, c, cell);
            ++written;
        }
    }
    // Rows are added in the spare rows: a paste into them keeps one below.
    if (written > 0 && TrailingEmptyRows() == 0) AppendEmptyRows(1);
    if (!refused.empty()) ZebUiMessage(window(), refused, ZebMsgIcon::Warning, ZebMsgButtons::Ok);
    return written;
}

void CZEBListCtrl::InsertEmptyRow(int row) {
    CommitOpenEditor();
    if (HoldsRefusedText()) return;
    m_model->InsertRowAt(std::clamp(row, 0, GetRowCount()), {});
}

void CZEBListCtrl::ShowRowMenu(const QPoint& globalPos) {
    const QModelIndex current = currentIndex();
    const int row = current.isValid() ? current.row() : GetRowCount();
    QMenu menu(this);
    if (OffersRowEditing()) {
        menu.addAction(QString::fromStdWString(LoadLocalizedString(IDS_INSERT_ROW)), this,
                       [this, row] { InsertEmptyRow(row); });
        menu.addAction(QString::fromStdWString(LoadLocalizedString(IDS_DELETE_ROWS)), this,
                       [this] { DeleteSelectedRows(); })
            ->setEnabled(GetSelectedRowCount() > 0);
    }
    menu.addAction(QString::fromStdWString(LoadLocalizedString(IDS_COPY_ROWS)), this,
                   [this] { SetClipboardText(SelectedRowsAsText()); })
        ->setEnabled(GetSelectedRowCount() > 0);
    const int column = current.isValid() ? current.column() : NextEditableColumn(row, -1, 1);
    menu.addAction(QString::fromStdWString(LoadLocalizedString(IDS_PASTE_ROWS)), this,
                   [this, row, column] { PasteText(row, column, ClipboardText()); });
    menu.exec(globalPos);
}

bool CZEBListCtrl::event(QEvent* event) {
    // Tab is taken here, before the widget moves the focus with it.
    if (event->type() == QEvent::KeyPress && KeyHandler(event) != 0) return true;
    return QTableView::event(event);
}

bool CZEBListCtrl::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched &&
        (watched == m_textEditor || watched == m_choiceEditor) && KeyHandler(event) != 0)
        return true;
    return QTableView::eventFilter(watched, event);
}

void CZEBListCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QTableView::mousePressEvent(event);
        return;
    }
    CommitOpenEditor();
    if (HoldsRefusedText()) return;
    int row = -1, column = -1;
    HitTest(event->position().toPoint(), row, column);
    switch (EditorOf(row, column)) {
        case CellEditor::Text:
            BeginCellEdit(row, column, kEditLimit);
            return;
        case CellEditor::Locked:
            return;
        case CellEditor::None:
        case CellEditor::Choice:
            break;
    }
    QTableView::mousePressEvent(event);
}

void CZEBListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    int row = -1, column = -1;
    HitTest(event->position().toPoint(), row, column);
    if (event->button() == Qt::LeftButton && row >= 0) {
        if (EditorOf(row, column) == CellEditor::Choice) {
            BeginCellChoice(row, column, kEditLimit);
            return;
        }
        if (OnCellActivated(row, column)) return;
    }
    QTableView::mouseDoubleClickEvent(event);
}

void CZEBListCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && OnCellRightClick(event->position().toPoint())) return;
    QTableView::mouseReleaseEvent(event);
}

void CZEBListCtrl::contextMenuEvent(QContextMenuEvent* event) {
    // Tables that browse on a right click offer the menu from the keyboard only.
    if (event->reason() == QContextMenuEvent::Mouse && UsesRightClick()) return;
    ShowRowMenu(event->globalPos());
}
