#pragma once

#include <string>

#include "dialogs/fastener/fastener_table_dlg.h"

class CWrapperComboCtrl;
class CZEBAsmFastenerClearanceRuleListCtrl;
struct FastenerTableKind;

// The fastener clearance rule's dialog: per fastener name two clearance conditions, each a lower
// bound (">=") or a range ("Between"), in the parameters 2052 (condition A) and 9450
// (condition B). The operators sit in drop-downs over the operator row above the table, whose
// column widths the table follows.
class CZEBAssemblyFastenerClearanceDlg : public CZEBFastenerTableDlg {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 6003,
        kImageId = 13040,
        kGridId = 6020,
        kOperatorGridId = 9449,
        kOperatorListId = 6038,
    };

    CZEBAssemblyFastenerClearanceDlg(CZebRule* rule, const std::wstring& unitText);

    CZEBAsmFastenerClearanceRuleListCtrl* GetGrid() const { return m_grid; }
    CZEBListCtrl* GetOperatorGrid() const { return m_operatorGrid; }
    // The operator drop-down of condition 0 (A) or 1 (B).
    CWrapperComboCtrl* GetOperatorList(int condition) const { return m_operatorLists[condition]; }

    // How sheets are imported into this table.
    static const FastenerTableKind& ImportKind();

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;
    void ImportSpreadsheet() override;

private:
    void BuildTables(size_t storedRows);
    void SetOperator(int condition, int code);
    void OperatorChosen();
    void PlaceOperatorLists();
    void FollowOperatorColumns();

    CZEBListCtrl* m_operatorGrid;
    CZEBAsmFastenerClearanceRuleListCtrl* m_grid;
    CWrapperComboCtrl* m_operatorLists[2] = {nullptr, nullptr};
    int m_operators[2] = {0, 0};
};
