#include "dialogs/parts/zeb_asm_contact_material_list_ctrl.h"

#include "app/assembly_rules_app.h"
#include "dialogs/database/material_pair_dlg.h"

void CZEBAsmContactMaterialListCtrl::SetOwner(QWidget* owner, CZebRule* rule) {
    m_owner = owner;
    m_rule = rule;
}

std::vector<std::wstring> CZEBAsmContactMaterialListCtrl::CellNames(const std::wstring& text) {
    std::vector<std::wstring> names;
    size_t start = 0;
    for (size_t end = text.find(L';'); end != std::wstring::npos; end = text.find(L';', start)) {
        names.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

std::wstring CZEBAsmContactMaterialListCtrl::CellText(const MaterialChoice& choice) {
    std::wstring text;
    for (const auto& [group, materials] : choice) {
        if (materials.empty()) text += group + L";";
        for (const std::wstring& material : materials) text += material + L";";
    }
    return text;
}

bool CZEBAsmContactMaterialListCtrl::EditCellMaterials(int row, int column) {
    if (row < 0 || (column != 1 && column != 2) || !m_owner || !m_rule) return false;
    CZebResourceScope scope;
    MaterialChoice selection;
    CEditMaterialPairDlg editor(m_owner, m_rule, selection, CellNames(GetCellText(row, column)));
    const bool chosen = editor.DoModal() == CEditMaterialPairDlg::kIdOk;
    if (chosen) SetCellText(row, column, CellText(selection));
    return chosen;
}

std::wstring CZEBAsmContactMaterialListCtrl::GetCellTooltip(int row, int column) const {
    if (row < 0 || row >= GetRowCount() || column < 1 || column >= GetColumnCount()) return {};
    return GetCellText(row, column).substr(0, kTooltipBuffer - 1);
}
