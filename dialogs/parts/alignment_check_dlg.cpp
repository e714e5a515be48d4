#include "dialogs/parts/alignment_check_dlg.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "framework/ui/control_id.h"
#include "framework/ui/picture_control.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/rule_params.h"
#include "util/texts.h"

CZEBAlignmentCheckDlg::CZEBAlignmentCheckDlg(CZebRule* rule, const std::wstring& unitText,
                                             AlignmentDialogLayout layout)
    : CZEBRuleDialog(rule, unitText, layout.templateId, layout.imageId),
      m_layout(std::move(layout)),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), m_layout.severityId)),
      m_picture(new PictureControl(Body())) {
    SetHelpTopic(m_layout.helpTopic);
    setWindowTitle(m_layout.titleIsRuleName
                       ? QString::fromStdWString(rule ? rule->DisplayName : std::wstring())
                       : LocalizedText(m_layout.title));
    if (m_layout.pictureId) SetZebControlId(m_picture, m_layout.pictureId);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), 0, 0);
    grid->addWidget(m_severity, 0, 1, 1, 2);
    int line = 1;
    for (const AlignmentDialogLayout::Row& row : m_layout.rows) {
        RowControls controls{WithZebControlId(new CWrapperComboCtrl(Body()), row.operatorId),
                             WithZebControlId(new CDoubleEditEx(Body()), row.valueId),
                             WithZebControlId(new QLabel(Body()), row.unitId), nullptr};
        controls.value->setMinimumWidth(100);
        if (row.switchId) {
            controls.on =
                WithZebControlId(new QCheckBox(LocalizedText(row.label), Body()), row.switchId);
            grid->addWidget(controls.on, line, 0);
        } else {
            grid->addWidget(new QLabel(LocalizedText(row.label), Body()), line, 0);
        }
        grid->addWidget(controls.op, line, 1);
        grid->addWidget(controls.value, line, 2);
        grid->addWidget(controls.unit, line, 3);
        m_rows.push_back(controls);
        ++line;
    }
    for (const AlignmentDialogLayout::Option& option : m_layout.options) {
        QAbstractButton* box =
            WithZebControlId(new QCheckBox(LocalizedText(option.label), Body()), option.boxId);
        grid->addWidget(box, line++, 0, 1, 5);
        m_options.push_back(box);
    }
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(line, 1);
    auto* layoutBox = new QHBoxLayout(Body());
    layoutBox->setContentsMargins(0, 0, 0, 0);
    layoutBox->addLayout(grid, 1);
    layoutBox->addWidget(m_picture, 0, Qt::AlignTop);
}

void CZEBAlignmentCheckDlg::LoadFromRule(CZebRule& rule) {
    LoadSeverityList(*m_severity, rule.Severity);
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const RowControls& controls = m_rows[i];
        const ZebTypedParam<double>* param = FindTyped<double>(rule, m_layout.rows[i].param);
        LoadOperatorList(*controls.op, {ZebOp_Less, ZebOp_LessEqual}, &OperatorSymbol,
                         param ? param->op : ZebOp_None);
        if (!param) continue;
        LoadFirstValue(*controls.value, *param);
        controls.unit->setText(QString::fromStdWString(GetUnitText()));
        if (controls.on) LoadFlagBox(*controls.on, *param, ParamFlag::Enabled);
    }
    for (size_t i = 0; i < m_options.size(); ++i) {
        const AlignmentDialogLayout::Option& option = m_layout.options[i];
        CZebParamStorage* param = rule.FindParameterInArray(option.param);
        if (!param) continue;
        if (!option.firstValue)
            LoadFlagBox(*m_options[i], *param->GetParam(), ParamFlag::Enabled);
        else if (const ZebTypedParam<bool>* flags = param->As<bool>())
            LoadSwitchBox(*m_options[i], *flags);
    }
    m_picture->SetBitmapId(m_layout.pictureBitmap);
}

std::optional<ZebRefusal> CZEBAlignmentCheckDlg::Validate(CZebRule& rule) {
    if (!m_layout.firstValueRequired) return std::nullopt;
    if (!FindTyped<double>(rule, m_layout.rows[0].param)) return ZebRefusal{};
    if (m_rows[0].value->text().isEmpty())
        return ZebRefusal{LoadLocalizedString(*m_layout.firstValueRequired), m_rows[0].value};
    return std::nullopt;
}

void CZEBAlignmentCheckDlg::StoreIntoRule(CZebRule& rule) {
    StoreSeverityList(*m_severity, rule.Severity);
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const RowControls& controls = m_rows[i];
        ZebTypedParam<double>* param = FindTyped<double>(rule, m_layout.rows[i].param);
        if (!param) continue;
        StoreOperatorList(*controls.op, param->op);
        // An empty or half-typed number stores what it starts with ("0.5.5" is 0.5, "" is 0).
        StoreFirstValue(*param, ReadNumberField(*controls.value), LongerList::FirstReplaced);
        if (controls.on) StoreFlagBox(*controls.on, *param, ParamFlag::Enabled);
    }
    for (size_t i = 0; i < m_options.size(); ++i) {
        const AlignmentDialogLayout::Option& option = m_layout.options[i];
        CZebParamStorage* param = rule.FindParameterInArray(option.param);
        if (!param) continue;
        if (!option.firstValue)
            StoreFlagBox(*m_options[i], *param->GetParam(), ParamFlag::Enabled);
        else if (ZebTypedParam<bool>* flags = param->As<bool>())
            StoreSwitchBox(*m_options[i], *flags);
    }
}

CZEBSMHoleAlignmentCheckDlg::CZEBSMHoleAlignmentCheckDlg(CZebRule* rule,
                                                         const std::wstring& unitText)
    : CZEBAlignmentCheckDlg(
          rule, unitText,
          {.templateId = kTemplateId,
           .imageId = kImageId,
           .severityId = kSeverityId,
           .pictureId = 0,
           .pictureBitmap = 7095,
           .rows = {{HoleAlignmentParams::kOffset.id, kOffsetOperatorId, kOffsetValueId,
                     kOffsetUnitId, IDS_HOLE_OFFSET_LABEL},
                    {HoleAlignmentParams::kTolerance.id, kSecondOperatorId, kSecondValueId,
                     kSecondUnitId, IDS_HOLE_SECOND_TOLERANCE_LABEL}},
           .options = {{kThroughHolesId, HoleAlignmentParams::kThroughHoles.id,
                        IDS_HOLE_CHECK_THROUGH, false},
                       {kBlindHolesId, HoleAlignmentParams::kBlindHoles.id, IDS_HOLE_CHECK_BLIND,
                        false}},
           .titleIsRuleName = false,
           .title = IDS_RULE_HOLE_ALIGNMENT,
           .firstValueRequired = std::nullopt,
           .helpTopic = kHelpTopicHoleAlignment}) {}

CZEBASMSlotAlignmentCheckDlg::CZEBASMSlotAlignmentCheckDlg(CZebRule* rule,
                                                           const std::wstring& unitText)
    : CZEBAlignmentCheckDlg(
          rule, unitText,
          {.templateId = kTemplateId,
           .imageId = kImageId,
           .severityId = kSeverityId,
           .pictureId = kPictureId,
           .pictureBitmap = 8150,
           .rows = {{SlotAlignmentParams::kOffset.id, kOffsetOperatorId, kOffsetValueId,
                     kOffsetUnitId, IDS_SLOT_OFFSET_LABEL},
                    {SlotAlignmentParams::kSecondOffset.id, kSecondOperatorId, kSecondValueId,
                     kSecondUnitId, IDS_SLOT_SECOND_OFFSET_CHECK, kSecondSwitchId}},
           .options = {{kWidthId, SlotAlignmentParams::kWidth.id, IDS_SLOT_CHECK_WIDTH, true},
                       {kDirectionId, SlotAlignmentParams::kDirection.id, IDS_SLOT_CHECK_DIRECTION,
                        true}},
           .titleIsRuleName = true,
           .title = IDS_RULE_SLOT_ALIGNMENT,
           .firstValueRequired = IDS_SLOT_OFFSET_REQUIRED,
           .helpTopic = kHelpTopicSlotAlignment}) {}
