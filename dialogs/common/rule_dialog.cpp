#include "dialogs/common/rule_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSettings>
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

namespace {
// Where a dialog keeps the size the user last gave it, by its template.
QString SizeKey(unsigned templateId) { return QStringLiteral("DialogSize/%1").arg(templateId); }
QSettings DialogSettings() {
    return QSettings(QStringLiteral("Vantor"), QStringLiteral("AssemblyRules"));
}
}  // namespace

bool CZEBRuleDialog::OnInitDialog() {
    if (m_importKey) m_importKey->Register();
    CZEBRuleDlgBase::OnInitDialog();
    if (m_rule) LoadFromRule(*m_rule);
    return true;
}

namespace {
// The dialog's own controls that Tab reaches, in reading order: by rows from the top, each row
// from the left. A control belongs to the row of the first control above whose middle it starts.
std::vector<QWidget*> ReadingOrder(QWidget* dialog) {
    std::vector<QWidget*> controls;
    for (QWidget* widget : dialog->findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || widget->focusProxy() ||
            widget->window() != dialog || !widget->isVisibleTo(dialog) ||
            qobject_cast<CZEBListCtrl*>(widget->parentWidget()))
            continue;
        controls.push_back(widget);
    }
    const auto topLeft = [dialog](const QWidget* widget) {
        return widget->mapTo(dialog, QPoint(0, 0));
    };
    std::stable_sort(controls.begin(), controls.end(), [&](const QWidget* a, const QWidget* b) {
        return topLeft(a).y() < topLeft(b).y();
    });
    for (size_t start = 0; start < controls.size();) {
        const int middle = topLeft(controls[start]).y() + controls[start]->height() / 2;
        size_t end = start + 1;
        while (end < controls.size() && topLeft(controls[end]).y() < middle) ++end;
        std::stable_sort(
            controls.begin() + static_cast<long>(start), controls.begin() + static_cast<long>(end),
            [&](const QWidget* a, const QWidget* b) { return topLeft(a).x() < topLeft(b).x(); });
        start = end;
    }
    return controls;
}
}  // namespace

void CZEBRuleDialog::FollowLayoutInTabOrder() {
    const std::vector<QWidget*> controls = ReadingOrder(this);
    for (size_t i = 1; i < controls.size(); ++i) QWidget::setTabOrder(controls[i - 1], controls[i]);
}

void CZEBRuleDialog::showEvent(QShowEvent* event) {
    // The size the user gave the dialog last time, once it has its own, never smaller than its
    // controls need.
    if (!m_sizeRestored) {
        m_sizeRestored = true;
        const QSize saved = DialogSettings().value(SizeKey(GetTemplateId())).toSize();
        if (saved.isValid() && GetTemplateId() != 0) resize(saved.expandedTo(minimumSizeHint()));
        if (layout()) layout()->activate();
        FollowLayoutInTabOrder();
    }
    CZEBRuleDlgBase::showEvent(event);
}

void CZEBRuleDialog::hideEvent(QHideEvent* event) {
    if (GetTemplateId() != 0) DialogSettings().setValue(SizeKey(GetTemplateId()), size());
    CZEBRuleDlgBase::hideEvent(event);
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
