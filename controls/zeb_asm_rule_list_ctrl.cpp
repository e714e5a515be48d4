#include "controls/zeb_asm_rule_list_ctrl.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "app/assembly_rules_app.h"
#include "util/number_text.h"

namespace {
constexpr int kNumberColumn = 3;
const wchar_t* const kPartFilter = L"(*.prt)|*.prt||";
}  // namespace

void CZEBAsmRuleListCtrl::SetMode(Mode mode, PartFileNaming naming) {
    m_mode = mode;
    m_pairNaming = naming;
}

void CZEBAsmRuleListCtrl::SetUpColumns(const std::vector<std::wstring>& headers, int width, int rows) {
    SetRuleTableLook();
    SetNumberedColumns(headers, width);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    FitWidthToColumns();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    AppendEmptyRows(rows);
}

bool CZEBAsmRuleListCtrl::IsBrowseColumn(int column) const {
    return IsPreferredComponentsMode() ? column >= 2 && column <= 4 : column == 1 || column == 2;
}

long CZEBAsmRuleListCtrl::CommitCellEdit() {
    std::wstring text;
    const long result = EndCellEdit(text);
    if (result && !IsPreferredComponentsMode() && GetEditColumn() == kNumberColumn &&
        !IsNumericText(text))
        SetCellText(GetEditRow(), kNumberColumn, L"");
    return result;
}

bool CZEBAsmRuleListCtrl::OnLeftButtonDown(const QPoint& point) {
    if (IsCellEditOpen()) CommitCellEdit();
    int row = -1, column = -1;
    HitTest(point, row, column);
    if (column < 1 || column > 4) return false;
    BeginCellEdit(row, column, kEditLimit);
    return true;
}

void CZEBAsmRuleListCtrl::OnRightClick(const QPoint& point) {
    std::wstring text;
    EndCellEdit(text);
    int row = -1, column = -1;
    HitTest(point, row, column);
    if (row < 0 || !IsBrowseColumn(column)) return;
    BrowseFileIntoCell(row, column, kPartFilter,
                       IsPreferredComponentsMode() ? PartFileNaming::FileName : m_pairNaming);
}

std::wstring CZEBAsmRuleListCtrl::GetCellTooltip(int row, int column) const {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= GetColumnCount() ||
        !IsBrowseColumn(column))
        return {};
    // The tooltip's own buffer holds 80 characters with its terminator.
    return LoadLocalizedString(IDS_TIP_CHOOSE_PART_FILE).substr(0, kTooltipBuffer - 1);
}

long CZEBAsmRuleListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) return CommitCellEdit();
    return StandardKeyHandler(key);
}

void CZEBAsmRuleListCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && OnLeftButtonDown(event->position().toPoint())) return;
    CZEBListCtrl::mousePressEvent(event);
}

void CZEBAsmRuleListCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        OnRightClick(event->position().toPoint());
        return;
    }
    CZEBListCtrl::mouseReleaseEvent(event);
}
