#include "controls/zeb_asm_rule_list_ctrl.h"

#include "app/assembly_rules_app.h"

namespace {
constexpr int kNumberColumn = 3;
const wchar_t* const kPartFilter = L"(*.prt)|*.prt||";
}  // namespace

void CZEBAsmRuleListCtrl::SetMode(Mode mode, PartFileNaming naming) {
    m_mode = mode;
    m_pairNaming = naming;
}

void CZEBAsmRuleListCtrl::SetUpColumns(const std::vector<std::wstring>& headers, int width,
                                       int rows) {
    SetRuleTableLook();
    SetNumberedColumns(headers, width);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    FitWidthToColumns();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    AppendEmptyRows(rows);
}

bool CZEBAsmRuleListCtrl::IsBrowseColumn(int column) const {
    return IsPreferredComponentsMode() ? column >= 2 && column <= 4 : column == 1 || column == 2;
}

bool CZEBAsmRuleListCtrl::IsNumberCell(int /*row*/, int column) const {
    return !IsPreferredComponentsMode() && column == kNumberColumn;
}

CZEBListCtrl::CellEditor CZEBAsmRuleListCtrl::EditorOf(int /*row*/, int column) const {
    return column >= 1 && column <= 4 && column < GetColumnCount() ? CellEditor::Text
                                                                   : CellEditor::None;
}

bool CZEBAsmRuleListCtrl::OnCellRightClick(const QPoint& point) {
    CommitCellEdit();
    int row = -1, column = -1;
    HitTest(point, row, column);
    if (row < 0 || !IsBrowseColumn(column) || IsCellEditOpen()) return true;
    BrowseFileIntoCell(row, column, kPartFilter,
                       IsPreferredComponentsMode() ? PartFileNaming::FileName : m_pairNaming);
    return true;
}

std::wstring CZEBAsmRuleListCtrl::GetCellTooltip(int row, int column) const {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= GetColumnCount() ||
        !IsBrowseColumn(column))
        return {};
    // The tooltip's own buffer holds 80 characters with its terminator.
    return LoadLocalizedString(IDS_TIP_CHOOSE_PART_FILE).substr(0, kTooltipBuffer - 1);
}
