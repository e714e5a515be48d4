#include "dialogs/fastener/bolt_screw_rationalization_dlg.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/database_module.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/common/hardware_database.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "framework/ui/control_id.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/ui_service.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"
#include "util/texts.h"

namespace {
constexpr long kSameHead = BoltScrewParams::kSameHead.id;
constexpr long kSameMaterial = BoltScrewParams::kSameMaterial.id;
constexpr long kLengthStep = BoltScrewParams::kLengthStep.id;
constexpr long kDiameterStep = BoltScrewParams::kDiameterStep.id;
constexpr long kTogether = BoltScrewParams::kTogether.id;
constexpr unsigned kPictureBitmap = 9014;
// A step below this is no step.
constexpr double kSmallest = 0.000001;
}  // namespace

CDFASMBoltScrewRationalizationDlg::CDFASMBoltScrewRationalizationDlg(CZebRule* rule,
                                                                     const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_database(WithZebControlId(new CWrapperComboCtrl(Body()), kDatabaseListId)),
      m_sameHead(
          WithZebControlId(new QCheckBox(LocalizedText(IDS_SAME_HEAD_TYPE), Body()), kSameHeadId)),
      m_sameMaterial(WithZebControlId(new QCheckBox(LocalizedText(IDS_SAME_MATERIAL), Body()),
                                      kSameMaterialId)),
      m_length{WithZebControlId(new QCheckBox(LocalizedText(IDS_LENGTH_STEP_CHECK), Body()),
                                kLengthSwitchId),
               WithZebControlId(new CWrapperComboCtrl(Body()), kLengthOperatorId),
               WithZebControlId(new CDoubleEditEx(Body()), kLengthValueId)},
      m_diameter{WithZebControlId(new QCheckBox(LocalizedText(IDS_DIAMETER_STEP_CHECK), Body()),
                                  kDiameterSwitchId),
                 WithZebControlId(new CWrapperComboCtrl(Body()), kDiameterOperatorId),
                 WithZebControlId(new CDoubleEditEx(Body()), kDiameterValueId)},
      m_together(WithZebControlId(
          new QRadioButton(LocalizedText(IDS_BOLTS_SCREWS_TOGETHER), Body()), kTogetherId)),
      m_separate(WithZebControlId(
          new QRadioButton(LocalizedText(IDS_BOLTS_SCREWS_SEPARATE), Body()), kSeparateId)),
      m_picture(WithZebControlId(new PictureControl(Body()), kPictureId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicBoltScrewRationalization);
    auto* hardware = WithZebControlId(
        new QPushButton(LocalizedText(IDS_OPEN_HARDWARE_DATABASE), Body()), kHardwareDatabaseId);
    hardware->setAutoDefault(false);
    auto* separator = new QFrame(Body());
    separator->setFrameShape(QFrame::HLine);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), 0, 0);
    grid->addWidget(m_severity, 0, 1, 1, 2);
    grid->addWidget(new QLabel(LocalizedText(IDS_DATABASE_LABEL), Body()), 1, 0);
    grid->addWidget(m_database, 1, 1, 1, 2);
    grid->addWidget(hardware, 1, 3);
    grid->addWidget(separator, 2, 0, 1, 5);
    grid->addWidget(new QLabel(LocalizedText(IDS_RATIONALIZE_BY_LABEL), Body()), 3, 0, 1, 5);
    grid->addWidget(m_sameHead, 4, 0, 1, 5);
    grid->addWidget(m_sameMaterial, 5, 0, 1, 5);
    int row = 6;
    for (const Step* step : {&m_length, &m_diameter}) {
        grid->addWidget(step->on, row, 0, 1, 2);
        grid->addWidget(step->op, row, 2);
        grid->addWidget(step->value, row, 3);
        ++row;
    }
    grid->addWidget(m_together, row, 0, 1, 5);
    grid->addWidget(m_separate, row + 1, 0, 1, 5);
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(row + 2, 1);
    auto* layout = new QHBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid, 1);
    layout->addWidget(m_picture, 0, Qt::AlignTop);

    for (QCheckBox* box : {m_sameHead, m_sameMaterial, m_length.on, m_diameter.on})
        connect(box, &QCheckBox::clicked, this, [this] { UpdateOk(); });
    for (const Step* step : {&m_length, &m_diameter}) {
        connect(step->on, &QCheckBox::toggled, step->op, &QWidget::setEnabled);
        connect(step->on, &QCheckBox::toggled, step->value, &QWidget::setEnabled);
    }
    connect(hardware, &QPushButton::clicked, this, [this] { OpenHardwareDatabase(); });
}

void CDFASMBoltScrewRationalizationDlg::LoadStep(const Step& step,
                                                 const ZebTypedParam<double>& param) {
    LoadFirstValue(*step.value, param);
    LoadOperatorList(*step.op, {ZebOp_GreaterEqual, ZebOp_Greater}, &OperatorToText, param.op);
    LoadFlagBox(*step.on, param, ParamFlag::Criteria);
    step.op->setEnabled(step.on->isChecked());
    step.value->setEnabled(step.on->isChecked());
}

void CDFASMBoltScrewRationalizationDlg::LoadFromRule(CZebRule& rule) {
    LoadSeverityList(*m_severity, rule.Severity);
    CZebParamStorage* sameHead = rule.FindParameterInArray(kSameHead);
    CZebParamStorage* sameMaterial = rule.FindParameterInArray(kSameMaterial);
    CZebParamStorage* together = rule.FindParameterInArray(kTogether);
    if (!sameHead || !sameMaterial || !together) return;
    LoadFlagBox(*m_sameHead, *sameHead->GetParam(), ParamFlag::Enabled);
    LoadFlagBox(*m_sameMaterial, *sameMaterial->GetParam(), ParamFlag::Enabled);
    ZebTypedParam<double>* length = FindTyped<double>(rule, kLengthStep);
    if (!length) return;
    LoadStep(m_length, *length);
    ZebTypedParam<double>* diameter = FindTyped<double>(rule, kDiameterStep);
    if (!diameter) return;
    LoadStep(m_diameter, *diameter);
    if (!FillDatabaseModuleList(*m_database)) return;
    m_picture->SetBitmapId(kPictureBitmap);
    (together->GetParam()->status ? m_together : m_separate)->setChecked(true);
    // Both choices are reached with Tab, not only the chosen one.
    for (QRadioButton* radio : {m_together, m_separate}) radio->setFocusPolicy(Qt::StrongFocus);
}

void CDFASMBoltScrewRationalizationDlg::UpdateOk() {
    bool any = false;
    for (QCheckBox* box : {m_sameHead, m_sameMaterial, m_length.on, m_diameter.on})
        any = any || box->isChecked();
    if (QWidget* ok = GetDlgItem(kIdOk)) ok->setEnabled(any);
}

std::optional<ZebRefusal> CDFASMBoltScrewRationalizationDlg::Validate(CZebRule& rule) {
    for (long id : {kSameHead, kSameMaterial, kLengthStep, kDiameterStep, kTogether})
        if (!rule.FindParameterInArray(id)) return ZebRefusal{};
    if (m_length.on->isChecked() && ReadNumberField(*m_length.value) < kSmallest)
        return ZebRefusal{LoadLocalizedString(IDS_LENGTH_STEP_REQUIRED), m_length.value,
                          ZebMsgIcon::Information};
    if (m_diameter.on->isChecked() && ReadNumberField(*m_diameter.value) < kSmallest)
        return ZebRefusal{LoadLocalizedString(IDS_DIAMETER_STEP_REQUIRED), m_diameter.value,
                          ZebMsgIcon::Information};
    return std::nullopt;
}

void CDFASMBoltScrewRationalizationDlg::StoreStep(const Step& step, ZebTypedParam<double>& param) {
    StoreOperatorList(*step.op, param.op);
    StoreFlagBox(*step.on, param, ParamFlag::Criteria);
    // Kept while switched off, for the next time it is switched on.
    StoreFirstValue(param, ReadNumberField(*step.value), LongerList::FirstReplaced);
}

void CDFASMBoltScrewRationalizationDlg::StoreIntoRule(CZebRule& rule) {
    // Only this dialog leaves a rule without a severity when none is chosen.
    const bool noSeverity = m_severity->currentIndex() < 0;
    StoreSeverityList(*m_severity, rule.Severity);
    if (noSeverity) rule.Severity = 0;
    StoreFlagBox(*m_sameHead, *rule.FindParameterInArray(kSameHead)->GetParam(),
                 ParamFlag::Enabled);
    StoreFlagBox(*m_sameMaterial, *rule.FindParameterInArray(kSameMaterial)->GetParam(),
                 ParamFlag::Enabled);
    StoreStep(m_length, *FindTyped<double>(rule, kLengthStep));
    StoreStep(m_diameter, *FindTyped<double>(rule, kDiameterStep));
    StoreFlagBox(*m_together, *rule.FindParameterInArray(kTogether)->GetParam(),
                 ParamFlag::Enabled);
}

void CDFASMBoltScrewRationalizationDlg::OpenHardwareDatabase() {
    if (ReadHardwareList().empty()) {
        CZebResourceScope scope;
        ZebUiMessage(this, LoadLocalizedString(IDS_NO_HARDWARE_DATABASE), ZebMsgIcon::Warning);
        return;
    }
    LaunchHardwareDatabase(this);
}
