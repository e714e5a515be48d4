#include "dialogs/common/rule_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <vector>

#include "app/assembly_rules_app.h"
#include "controls/double_edit_ex.h"
#include "controls/number_entry.h"
#include "controls/sheet_export.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_list_ctrl.h"
#include "framework/resource_library.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_rule.h"

CZEBRuleDialog::CZEBRuleDialog(CZebRule* rule, std::wstring unitText, unsigned templateId,
                               long imageId, QWidget* parent)
    : CZEBRuleDlgBase(templateId, imageId, ModuleHelpFilePath(), parent),
      m_rule(rule),
      m_unitText(std::move(unitText)) {}

CZEBRuleDialog::~CZEBRuleDialog() {
    if (m_importKey) m_importKey->Unregister();
}

void CZEBRuleDialog::UseImportKey() {
    if (m_importKey) return;
    m_importKey = new CZebHotKey(this);
    connect(m_importKey, &CZebHotKey::Pressed, this, [this] { ImportSpreadsheet(); });
}

bool CZEBRuleDialog::OnInitDialog() {
    if (m_importKey) m_importKey->Register();
    CZEBRuleDlgBase::OnInitDialog();
    if (m_rule) LoadFromRule(*m_rule);
    return true;
}

namespace {
// A number box whose text cannot be read is refused where it was typed: marked, named in the
// message, and given the focus. Boxes the user cannot reach are not checked.
bool RefuseUnreadableBox(QWidget* dialog) {
    for (CDoubleEditEx* box : dialog->findChildren<CDoubleEditEx*>()) {
        const NumberEntry entry = box->Read();
        const bool refused = !entry.Ok() && entry.fault != NumberTextFault::Empty &&
                             box->isVisibleTo(dialog) && box->isEnabled();
        MarkRefused(*box, refused);
        if (!refused) continue;
        ZebUiMessage(dialog,
                     ZebFormatText(LoadLocalizedString(IDS_FIELD_VALUE_REFUSED),
                                   {box->text().toStdWString(), NumberFaultText(entry.fault)}),
                     ZebMsgIcon::Warning, ZebMsgButtons::Ok);
        box->setFocus();
        box->selectAll();
        return true;
    }
    return false;
}

// A table cell refused on commit has told the user already; it keeps its editor open.
bool HoldsRefusedCell(QWidget* dialog) {
    const QList<CZEBListCtrl*> tables = dialog->findChildren<CZEBListCtrl*>();
    return std::any_of(tables.begin(), tables.end(),
                       [](const CZEBListCtrl* table) { return table->HoldsRefusedText(); });
}
}  // namespace

void CZEBRuleDialog::OnOK() {
    CommitEdits();
    if (HoldsRefusedCell(this) || RefuseUnreadableBox(this)) return;
    if (m_rule) {
        if (std::optional<ZebRefusal> refusal = Validate(*m_rule)) {
            ShowRefusal(*refusal);
            return;
        }
        StoreIntoRule(*m_rule);
    }
    CZEBRuleDlgBase::OnOK();
}

void CZEBRuleDialog::UseTable(CZEBListCtrl* table, std::optional<TableSheetKind> kind, int first,
                              int count) {
    m_table = table;
    m_tableKind = kind;
    m_firstExported = first;
    m_exportedCount = count;
}

void CZEBRuleDialog::CommitEdits() {
    if (m_table) m_table->CommitOpenEditor();
}

TextRows CZEBRuleDialog::ExportRows() const {
    return m_table ? TableTexts(*m_table, m_firstExported, m_exportedCount) : TextRows{};
}

void CZEBRuleDialog::ExportTable() {
    if (!m_table || !m_tableKind || m_table->GetColumnCount() == 0) return;
    CommitEdits();
    if (m_table->HoldsRefusedText()) return;
    ExportTableToChosenFile(this, *m_tableKind, ExportRows(), GetLengthUnit());
}

int32_t CZEBRuleDialog::GetLengthUnit() const {
    return m_rule ? m_rule->CurrentUnits.LengthUnit : 0;
}

void CZEBRuleDialog::ShowRefusal(const ZebRefusal& refusal) {
    if (!refusal.message.empty())
        ZebUiMessage(this, refusal.message, refusal.icon, ZebMsgButtons::Ok);
    if (refusal.control) refusal.control->setFocus();
}

ZebRefusal RowRefusal(CZEBListCtrl& table, size_t row, ZebStringId text) {
    table.selectRow(static_cast<int>(row));
    return ZebRefusal{ZebFormatText(LoadLocalizedString(text), {std::to_wstring(row + 1)}), &table};
}

QString LocalizedText(ZebStringId id) { return QString::fromStdWString(LoadLocalizedString(id)); }

QBoxLayout* SeverityRow(QWidget* parent, CWrapperComboCtrl* list) {
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), parent));
    row->addWidget(list);
    row->addStretch();
    return row;
}
