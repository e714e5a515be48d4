#pragma once

#include <QWidget>
#include <optional>

#include "dialogs/common/rule_dialog.h"
#include "dialogs/parts/component_table_import.h"

class CZEBAsmRuleListCtrl;
class CZebRule;
class QCheckBox;
class QRadioButton;

// The page of the interference detection dialog that says which components are checked: all of
// them, or those listed in a table of pairs (each row a pair) or of two groups (each component of
// column 1 against each of column 2).
class ZEBASMInterfDetCheckCompDlg : public QWidget {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 9082,
        kAllComponentsId = 6067,
        kListedComponentsId = 6068,
        kTableId = 6069,
        kGroupsId = 6070,
    };
    // Empty rows the table always has.
    static constexpr int kSpareRows = 120;

    ZEBASMInterfDetCheckCompDlg(CZebRule* rule, QWidget* parent);

    void OnInitDialog();
    // What OK refuses in the list, before anything is stored.
    std::optional<ZebRefusal> Validate() const;
    void StoreIntoRule(CZebRule& rule);
    void ImportSpreadsheet();
    // "Export..." on the table's column headings: the table written to a chosen workbook in the
    // layout its import reads.
    void ExportTable();
    CZEBAsmRuleListCtrl* GetTable() const { return m_table; }

private:
    void OnAllComponents();
    void OnListedComponents();

    CZebRule* m_rule;
    QRadioButton* m_all;
    QRadioButton* m_listed;
    QCheckBox* m_groupsBox;
    CZEBAsmRuleListCtrl* m_table;
    SheetImportState m_import;
};
