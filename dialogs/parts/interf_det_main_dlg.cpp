#include "dialogs/parts/interf_det_main_dlg.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "dialogs/parts/interf_det_check_comp_dlg.h"
#include "dialogs/parts/interf_det_ignore_comp_dlg.h"
#include "dialogs/parts/interf_main_tab_ctrl.h"
#include "dialogs/parts/zeb_asm_interf_ignore_comp_list_ctrl.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"
#include "util/texts.h"

namespace {
constexpr long kCheckAllSwitch = InterferenceParams::kCheckAll.id;
constexpr long kFirstOption = InterferenceParams::kFirstOption.id;
constexpr long kSecondOption = InterferenceParams::kSecondOption.id;
constexpr long kVolumeLimit = InterferenceParams::kVolumeLimit.id;
// A volume limit this close to 0 limits nothing.
constexpr double kSmallest = 0.000001;
}  // namespace

ZEBASMInterfDetMainDlg::ZEBASMInterfDetMainDlg(CZebRule* rule, const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_tabs(WithZebControlId(new ZEBASMInterfMainTabCtrl(Body()), kTabsId)),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_operator(WithZebControlId(new CWrapperComboCtrl(Body()), kVolumeOperatorId)),
      m_volumeSwitch(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_INTERFERENCE_VOLUME_CHECK), Body()), kVolumeSwitchId)),
      m_volume(WithZebControlId(new CDoubleEditEx(Body()), kVolumeValueId)),
      m_volumeUnit(WithZebControlId(new QLabel(Body()), kVolumeUnitId)),
      m_firstOption(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_INTERFERENCE_SAME_SUBASSEMBLY), Body()), kFirstOptionId)),
      m_secondOption(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_INTERFERENCE_TOUCHING), Body()), kSecondOptionId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicInterferenceDetection);
    auto* volume = new QHBoxLayout;
    volume->addWidget(m_volumeSwitch);
    volume->addWidget(m_operator);
    volume->addWidget(m_volume);
    volume->addWidget(m_volumeUnit);
    volume->addStretch();
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(SeverityRow(Body(), m_severity));
    layout->addWidget(m_firstOption);
    layout->addWidget(m_secondOption);
    layout->addLayout(volume);
    layout->addWidget(m_tabs, 1);

    connect(m_volumeSwitch, &QCheckBox::clicked, this, [this] { UpdateVolumeControls(); });
    UseImportKey();
}

void ZEBASMInterfDetMainDlg::LoadFromRule(CZebRule& rule) {
    if (!rule.FindParameterInArray(kCheckAllSwitch)) return;
    m_checkPage = WithZebControlId(new ZEBASMInterfDetCheckCompDlg(&rule, m_tabs),
                                   ZEBASMInterfDetCheckCompDlg::kTemplateId);
    m_ignorePage = WithZebControlId(new ZEBASMInterfDetIgnoreCompDlg(&rule, m_tabs),
                                    ZEBASMInterfDetIgnoreCompDlg::kTemplateId);
    m_checkPage->OnInitDialog();
    m_ignorePage->OnInitDialog();
    m_tabs->AddPage(LoadLocalizedString(IDS_TAB_COMPONENTS_TO_CHECK), m_checkPage);
    m_tabs->AddPage(LoadLocalizedString(IDS_TAB_COMPONENTS_TO_IGNORE), m_ignorePage);
    m_tabs->SelectPage(kCheckPage);

    const ZebTypedParam<bool>* first = FindTyped<bool>(rule, kFirstOption);
    const ZebTypedParam<bool>* second = FindTyped<bool>(rule, kSecondOption);
    if (!first || !second) return;
    LoadSwitchBox(*m_firstOption, *first);
    LoadSwitchBox(*m_secondOption, *second);
    LoadSeverityList(*m_severity, rule.Severity);
    const ZebTypedParam<double>* volume = FindTyped<double>(rule, kVolumeLimit);
    if (!volume) return;
    LoadFlagBox(*m_volumeSwitch, *volume, ParamFlag::Enabled);
    LoadOperatorList(*m_operator, {ZebOp_Less, ZebOp_LessEqual}, &OperatorToText, volume->op);
    LoadFirstValue(*m_volume, *volume);
    m_volumeUnit->setText(QString::fromStdWString(GetUnitText() + L"\u00b3"));
    UpdateVolumeControls();
}

void ZEBASMInterfDetMainDlg::UpdateVolumeControls() {
    m_volume->setEnabled(m_volumeSwitch->isChecked());
    m_operator->setEnabled(m_volumeSwitch->isChecked());
}

std::optional<ZebRefusal> ZEBASMInterfDetMainDlg::Validate(CZebRule& /*rule*/) {
    if (!m_checkPage || !m_ignorePage) return ZebRefusal{};
    if (m_volumeSwitch->isChecked() && std::fabs(ReadNumberField(*m_volume)) < kSmallest)
        return ZebRefusal{LoadLocalizedString(IDS_VOLUME_LIMIT_REQUIRED), m_volume,
                          ZebMsgIcon::Information};
    if (std::optional<ZebRefusal> refusal = m_checkPage->Validate()) {
        m_tabs->SelectPage(kCheckPage);
        return refusal;
    }
    return std::nullopt;
}

void ZEBASMInterfDetMainDlg::StoreIntoRule(CZebRule& rule) {
    m_checkPage->StoreIntoRule(rule);
    // A list the database refused is reported by the page; the rule's settings still count.
    m_ignorePage->OnOK();
    if (ZebTypedParam<bool>* first = FindTyped<bool>(rule, kFirstOption))
        StoreSwitchBox(*m_firstOption, *first);
    if (ZebTypedParam<bool>* second = FindTyped<bool>(rule, kSecondOption))
        StoreSwitchBox(*m_secondOption, *second);
    StoreSeverityList(*m_severity, rule.Severity);
    ZebTypedParam<double>* volume = FindTyped<double>(rule, kVolumeLimit);
    if (!volume) return;
    StoreFlagBox(*m_volumeSwitch, *volume, ParamFlag::Enabled);
    StoreOperatorList(*m_operator, volume->op);
    if (!m_volume->text().isEmpty())
        StoreFirstValue(*volume, ReadNumberField(*m_volume), LongerList::FirstReplaced);
}

void ZEBASMInterfDetMainDlg::ImportSpreadsheet() {
    switch (m_tabs->GetCurrentPage()) {
        case kCheckPage:
            if (m_checkPage) m_checkPage->ImportSpreadsheet();
            break;
        case kIgnorePage:
            if (m_ignorePage) m_ignorePage->ImportSpreadsheet();
            break;
        default:
            break;
    }
}
