#include "dialogs/common/rule_dialog.h"

#include "app/assembly_rules_app.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_rule.h"

CZEBRuleDialog::CZEBRuleDialog(CZebRule* rule, std::wstring unitText, unsigned templateId,
                               long imageId, QWidget* parent)
    : CZEBRuleDlgBase(templateId, imageId, ModuleHelpFilePath(), parent),
      m_rule(rule),
      m_unitText(std::move(unitText)) {}

bool CZEBRuleDialog::OnInitDialog() {
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
