#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"
#include "dialogs/parts/component_table_import.h"

class CWrapperComboCtrl;
class CZEBAsmRuleListCtrl;

// The preferred components rule's dialog: a table of a description, a preferred component, an
// alternative and the component they replace, kept in the rule as one text (7002), and the
// severity. Ctrl+I imports the table from a spreadsheet.
class CZEBAssemblyCheckPrefCompDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int { kTemplateId = 6096, kImageId = 13070, kTableId = 6097, kSeverityId = 6098 };
    static constexpr int kSpareRows = 120;
    // Characters the editor opened on a refused cell takes.
    static constexpr int kRefusedCellLimit = 200;

    explicit CZEBAssemblyCheckPrefCompDlg(CZebRule* rule, const std::wstring& unitText = {});
    void ImportSpreadsheet() override;

protected:
    void LoadFromRule(CZebRule& rule) override;
    void CommitEdits() override;
    // The rows the rule keeps: the last row never belongs to the table's text.
    TextRows ExportRows() const override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    CWrapperComboCtrl* m_severity;
    CZEBAsmRuleListCtrl* m_table;
    SheetImportState m_import;
};
