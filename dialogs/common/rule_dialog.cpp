#include "dialogs/common/rule_dialog.h"

#include <QHBoxLayout>
#include <QLabel>

#include "app/assembly_rules_app.h"
#include "controls/wrapper_combo_ctrl.h"
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

void CZEBRuleDialog::OnOK() {
    CommitEdits();
    if (m_rule) {
        if (std::optional<ZebRefusal> refusal = Validate(*m_rule)) {
            ShowRefusal(*refusal);
            return;
        }
        StoreIntoRule(*m_rule);
    }
    CZEBRuleDlgBase::OnOK();
}

void CZEBRuleDialog::ShowRefusal(const ZebRefusal& refusal) {
    if (!refusal.message.empty())
        ZebUiMessage(this, refusal.message, refusal.icon, ZebMsgButtons::Ok);
    if (refusal.control) refusal.control->setFocus();
}

QString LocalizedText(ZebStringId id) { return QString::fromStdWString(LoadLocalizedString(id)); }

QBoxLayout* SeverityRow(QWidget* parent, CWrapperComboCtrl* list) {
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), parent));
    row->addWidget(list);
    row->addStretch();
    return row;
}
