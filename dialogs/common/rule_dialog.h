#pragma once

#include <QPointer>
#include <cstdint>
#include <optional>
#include <string>

#include "controls/zeb_list_ctrl.h"
#include "framework/ui/rule_dlg_base.h"
#include "framework/ui_message.h"
#include "resources/string_ids.h"
#include "util/table_export.h"

class CZebHotKey;
class CZebRule;
class CWrapperComboCtrl;
class QBoxLayout;

// An entry OK refuses: the message to show (none: the dialog only stays open) and the control to
// put the user back in.
struct ZebRefusal {
    std::wstring message;
    QPointer<QWidget> control;
    ZebMsgIcon icon = ZebMsgIcon::Information;
};

// Refuses row `row` (from 0) of `table`: chosen in the table and named in the message `text`,
// whose one placeholder takes the row's number as the user counts it.
ZebRefusal RowRefusal(CZEBListCtrl& table, size_t row, ZebStringId text);

// Base of the rule dialogs, so that each reads as its step list. LoadFromRule fills the controls
// when the dialog opens (after the base has shown the dialog image; not at all without a rule).
// On OK, CommitEdits closes what the user left open in the tables, Validate checks the entries in
// the dialog's order, and the first refusal is shown while the dialog stays open; only then
// StoreIntoRule writes the rule, so a refused OK leaves the rule as it was. Cancel writes nothing.
class CZEBRuleDialog : public CZEBRuleDlgBase {
    Q_OBJECT
public:
    // `unitText` is the text of the rule's current length unit, for the dialog's unit label.
    CZEBRuleDialog(CZebRule* rule, std::wstring unitText, unsigned templateId, long imageId,
                   QWidget* parent = nullptr);
    ~CZEBRuleDialog() override;

    CZebRule* GetRule() const { return m_rule; }
    const std::wstring& GetUnitText() const { return m_unitText; }
    // The length unit code of the rule's values (0 without a rule).
    int32_t GetLengthUnit() const;
    // "Export..." on the table's headings: the table written to a chosen workbook in the layout
    // its import reads, lengths with the rule's unit. Nothing without a table that has columns.
    void ExportTable();

    bool OnInitDialog() override;
    void OnOK() override;

protected:
    virtual void LoadFromRule(CZebRule& rule) = 0;
    // The dialog's table: what OK commits (CommitEdits) and, given `kind`, what ExportTable
    // writes: `count` columns from `first` on.
    void UseTable(CZEBListCtrl* table, std::optional<TableSheetKind> kind = std::nullopt,
                  int first = 0, int count = 0);
    CZEBListCtrl* GetTable() const { return m_table; }
    // Closes an open editor of the table.
    virtual void CommitEdits();
    // The rows ExportTable writes.
    virtual TextRows ExportRows() const;
    virtual std::optional<ZebRefusal> Validate(CZebRule& rule) = 0;
    virtual void StoreIntoRule(CZebRule& rule) = 0;

    // A refused entry in a message box (caption "Vantor", the refusal's icon); the keyboard focus
    // then goes to its control.
    void ShowRefusal(const ZebRefusal& refusal);

    // Ctrl+I runs ImportSpreadsheet from the dialog's first showing until it goes. Called from
    // the constructor of a dialog that imports.
    void UseImportKey();
    virtual void ImportSpreadsheet() {}

private:
    CZebRule* m_rule;
    std::wstring m_unitText;
    CZebHotKey* m_importKey = nullptr;
    QPointer<CZEBListCtrl> m_table;
    std::optional<TableSheetKind> m_tableKind;
    int m_firstExported = 0;
    int m_exportedCount = 0;
};

// The severity row of a rule dialog: its label and `list`, on the left.
QBoxLayout* SeverityRow(QWidget* parent, CWrapperComboCtrl* list);

// String `id` of the module's resources in the user's language, for a control's text.
QString LocalizedText(ZebStringId id);

// The runner a rule's dialog registers (see rules/rule_dialog_registry.h): the dialog over the
// rule, without a parent window, run modally.
template <class Dialog>
void RunRuleDialogModal(CZebRule& rule, const std::wstring& unitText) {
    Dialog dialog(&rule, unitText);
    dialog.DoModal();
}
