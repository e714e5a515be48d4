#include "dialogs/fastener/fastener_accessibility_dlg.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

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
#include "rules/rule_record.h"
#include "util/rule_params.h"

namespace {
constexpr long kFirstValue = FastenerAccessibilityParams::kToolClearance.id;
constexpr long kSecondValue = FastenerAccessibilityParams::kSecondClearance.id;
constexpr long kSecondSwitch = FastenerAccessibilityParams::kSecondSwitch.id;
constexpr unsigned kAccessPictureBitmap = 6018;
// A clearance below this is no clearance.
constexpr double kSmallestClearance = 0.000001;
}  // namespace

CZEBAssemblyFastenerAccessibilityDlg::CZEBAssemblyFastenerAccessibilityDlg(
    CZebRule* rule, const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_database(WithZebControlId(new CWrapperComboCtrl(Body()), kDatabaseListId)),
      m_first(WithZebControlId(new CDoubleEditEx(Body()), kFirstValueId)),
      m_second(WithZebControlId(new CDoubleEditEx(Body()), kSecondValueId)),
      m_secondSwitch(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_SECOND_TOOL_CLEARANCE_CHECK), Body()), kSecondSwitchId)),
      m_picture(WithZebControlId(new PictureControl(Body()), kPictureId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicFastenerAccessibility);
    auto* hardware = WithZebControlId(
        new QPushButton(LocalizedText(IDS_OPEN_HARDWARE_DATABASE), Body()), kHardwareDatabaseId);
    hardware->setAutoDefault(false);
    // Kept for their ids; they have no part in this rule, and the layout closes over them.
    auto* spareCheck = WithZebControlId(new QCheckBox(Body()), kSpareCheckId);
    auto* spareButton = WithZebControlId(new QPushButton(Body()), kSpareButtonId);
    connect(spareCheck, &QCheckBox::toggled, spareButton, &QWidget::setEnabled);
    spareCheck->hide();
    spareButton->hide();

    auto* values = WithZebControlId(new QGroupBox(Body()), kValuesFrameId);
    auto* valueGrid = new QGridLayout(values);
    valueGrid->addWidget(new QLabel(LocalizedText(IDS_TOOL_CLEARANCE_LABEL), values), 0, 0);
    valueGrid->addWidget(m_first, 0, 1);
    valueGrid->addWidget(m_secondSwitch, 1, 0);
    valueGrid->addWidget(m_second, 1, 1);
    valueGrid->setColumnStretch(2, 1);

    auto* grid = new QGridLayout;
    grid->addWidget(
        WithZebControlId(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), kSeverityLabelId),
        0, 0);
    grid->addWidget(m_severity, 0, 1);
    grid->addWidget(new QLabel(LocalizedText(IDS_DATABASE_LABEL), Body()), 1, 0);
    grid->addWidget(m_database, 1, 1);
    grid->addWidget(hardware, 1, 2);
    grid->addWidget(values, 2, 0, 1, 4);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(3, 1);
    auto* layout = new QHBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid, 1);
    layout->addWidget(m_picture, 0, Qt::AlignTop);

    connect(m_secondSwitch, &QCheckBox::toggled, m_second, &QWidget::setEnabled);
    connect(hardware, &QPushButton::clicked, this, [this] {
        ReadHardwareList();
        LaunchHardwareDatabase(this);
    });
}

void CZEBAssemblyFastenerAccessibilityDlg::LoadFromRule(CZebRule& rule) {
    ZebTypedParam<double>* first = FindTyped<double>(rule, kFirstValue);
    ZebTypedParam<double>* second = FindTyped<double>(rule, kSecondValue);
    if (!first || !second) return;
    LoadFirstValue(*m_first, *first);
    LoadFirstValue(*m_second, *second);
    LoadSeverityList(*m_severity, rule.Severity);
    ZebTypedParam<double>* secondSwitch = FindTyped<double>(rule, kSecondSwitch);
    if (!secondSwitch) return;
    m_secondSwitch->setChecked(!secondSwitch->values.IsEmpty() &&
                               SwitchIsOn(secondSwitch->values[0]));
    if (!FillDatabaseModuleList(*m_database)) return;
    m_picture->SetBitmapId(kAccessPictureBitmap);
    m_second->setEnabled(m_secondSwitch->isChecked());
}

std::optional<ZebRefusal> CZEBAssemblyFastenerAccessibilityDlg::Validate(CZebRule&) {
    if (ReadNumberField(*m_first) < kSmallestClearance)
        return ZebRefusal{LoadLocalizedString(IDS_TOOL_CLEARANCE_REQUIRED), m_first,
                          ZebMsgIcon::Information};
    if (m_secondSwitch->isChecked() && ReadNumberField(*m_second) < kSmallestClearance)
        return ZebRefusal{LoadLocalizedString(IDS_SECOND_TOOL_CLEARANCE_REQUIRED), m_second,
                          ZebMsgIcon::Information};
    return std::nullopt;
}

void CZEBAssemblyFastenerAccessibilityDlg::StoreIntoRule(CZebRule& rule) {
    if (ZebTypedParam<double>* first = FindTyped<double>(rule, kFirstValue))
        StoreFirstValue(*first, ReadNumberField(*m_first), LongerList::LeftAlone);
    // The second value is kept while switched off, for the next time it is switched on.
    if (ZebTypedParam<double>* second = FindTyped<double>(rule, kSecondValue))
        StoreFirstValue(*second, ReadNumberField(*m_second), LongerList::LeftAlone);
    StoreSeverityList(*m_severity, rule.Severity);
    if (ZebTypedParam<double>* secondSwitch = FindTyped<double>(rule, kSecondSwitch))
        StoreFirstValue(*secondSwitch, m_secondSwitch->isChecked() ? 1.0 : 0.0,
                        LongerList::FirstReplaced);
}
