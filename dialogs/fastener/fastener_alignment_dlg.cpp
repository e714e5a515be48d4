#include "dialogs/fastener/fastener_alignment_dlg.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/database_module.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "dialogs/database/fastener_name_database_dlg.h"
#include "framework/ui/control_id.h"
#include "framework/ui/picture_control.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"
#include "util/texts.h"

namespace {
constexpr long kLimit = FastenerAlignmentParams::kOffset.id;
constexpr long kSwitch = FastenerAlignmentParams::kSwitch.id;
// A limit closer to 0 than this cannot be told from 0.
constexpr double kAlignSmallest = 0.000001;
constexpr unsigned kAlignPicture = 8032;
}  // namespace

CZEBAssemblyFastenerAlignmentDlg::CZEBAssemblyFastenerAlignmentDlg(CZebRule* rule,
                                                                   const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_database(WithZebControlId(new CWrapperComboCtrl(Body()), kDatabaseListId)),
      m_value(WithZebControlId(new CDoubleEditEx(Body()), kValueId)),
      m_unitLabel(WithZebControlId(new QLabel(Body()), kUnitLabelId)),
      m_operator(WithZebControlId(new CWrapperComboCtrl(Body()), kOperatorId)),
      m_switch(WithZebControlId(new QCheckBox(LocalizedText(IDS_ALIGNMENT_PARALLEL_CHECK), Body()),
                                kSwitchId)),
      m_picture(WithZebControlId(new PictureControl(Body()), kPictureId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicFastenerAlignment);
    auto* names = WithZebControlId(new QPushButton(LocalizedText(IDS_OPEN_FASTENER_NAMES), Body()),
                                   kFastenerNamesId);
    names->setAutoDefault(false);
    auto* separator = new QFrame(Body());
    separator->setFrameShape(QFrame::HLine);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), 0, 0);
    grid->addWidget(m_severity, 0, 1);
    grid->addWidget(new QLabel(LocalizedText(IDS_DATABASE_LABEL), Body()), 1, 0);
    grid->addWidget(m_database, 1, 1);
    grid->addWidget(names, 1, 2);
    grid->addWidget(separator, 2, 0, 1, 4);
    grid->addWidget(new QLabel(LocalizedText(IDS_ALIGNMENT_LIMIT_LABEL), Body()), 3, 0, 1, 4);
    auto* limit = new QHBoxLayout;
    limit->addWidget(m_operator);
    limit->addWidget(m_value);
    limit->addWidget(m_unitLabel);
    limit->addStretch();
    grid->addLayout(limit, 4, 0, 1, 4);
    grid->addWidget(m_switch, 5, 0, 1, 4);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(6, 1);
    auto* layout = new QHBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid, 1);
    layout->addWidget(m_picture, 0, Qt::AlignTop);

    connect(m_operator, &QComboBox::currentIndexChanged, this, [this] { ApplyOperatorRule(); });
    connect(names, &QPushButton::clicked, this, [this] { OpenFastenerNames(); });
}

void CZEBAssemblyFastenerAlignmentDlg::LoadFromRule(CZebRule& rule) {
    LoadSeverityList(*m_severity, rule.Severity);
    ZebTypedParam<double>* limit = FindTyped<double>(rule, kLimit);
    if (!limit) return;
    LoadFirstValue(*m_value, *limit);
    LoadOperatorList(*m_operator, {ZebOp_Equal, ZebOp_LessEqual}, &OperatorSymbol, limit->op);
    m_unitLabel->setText(QString::fromStdWString(GetUnitText()));
    CZebParamStorage* enabled = rule.FindParameterInArray(kSwitch);
    if (!enabled) return;
    LoadFlagBox(*m_switch, *enabled->GetParam(), ParamFlag::Enabled);
    ApplyOperatorRule();
    if (FillDatabaseModuleList(*m_database)) m_picture->SetBitmapId(kAlignPicture);
}

void CZEBAssemblyFastenerAlignmentDlg::ApplyOperatorRule() {
    const bool fixed =
        m_operator->currentText() == QString::fromStdWString(OperatorSymbol(ZebOp_Equal));
    if (fixed) m_value->setText(QStringLiteral("0.0"));
    m_value->setEnabled(!fixed);
}

std::optional<ZebRefusal> CZEBAssemblyFastenerAlignmentDlg::Validate(CZebRule&) {
    const double value = ReadNumberField(*m_value);
    const bool lessEqual =
        m_operator->currentText() == QString::fromStdWString(OperatorSymbol(ZebOp_LessEqual));
    if (m_operator->currentIndex() < 0 ||
        (lessEqual && value > -kAlignSmallest && value < kAlignSmallest))
        return ZebRefusal{
            LoadLocalizedString(IDS_ALIGNMENT_OPERATOR_REQUIRED),
            m_operator->currentIndex() < 0 ? static_cast<QWidget*>(m_operator) : m_value};
    return std::nullopt;
}

void CZEBAssemblyFastenerAlignmentDlg::StoreIntoRule(CZebRule& rule) {
    if (ZebTypedParam<double>* limit = FindTyped<double>(rule, kLimit)) {
        // An empty list gets the value and keeps its operator; a single value takes both.
        const bool wasEmpty = limit->values.IsEmpty();
        if (StoreFirstValue(*limit, ReadNumberField(*m_value), LongerList::LeftAlone) && !wasEmpty)
            StoreOperatorList(*m_operator, limit->op);
    }
    if (CZebParamStorage* enabled = rule.FindParameterInArray(kSwitch))
        StoreFlagBox(*m_switch, *enabled->GetParam(), ParamFlag::Enabled);
    StoreSeverityList(*m_severity, rule.Severity);
}

void CZEBAssemblyFastenerAlignmentDlg::OpenFastenerNames() {
    CZebResourceScope scope;
    ZEBEditFastenerNameDatabaseDlg names(this);
    names.DoModal();
}
