#include "dialogs/fastener/recomm_thread_types_dlg.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_recomm_thread_conn_list_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "dialogs/database/thread_size_dlg.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"

namespace {
constexpr long kPairs = RecommThreadParams::kThreadPairs.id;
constexpr long kThreadSizes = RecommThreadParams::kThreadSizes.id;
}  // namespace

CZEBAssemblyRecommThreadTypesInConnectionDlg::CZEBAssemblyRecommThreadTypesInConnectionDlg(
    CZebRule* rule, const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_grid(WithZebControlId(new CZEBAsmRecommThreadConnListCtrl(Body()), kGridId)),
      m_threadSizes(WithZebControlId(new QPushButton(LocalizedText(IDS_OPEN_THREAD_SIZES), Body()),
                                     kThreadSizesId)),
      m_threadSizesSwitch(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_THREAD_SIZES_CHECK), Body()), kThreadSizesSwitchId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicRecommThreadTypes);
    UseTable(m_grid);
    m_threadSizes->setAutoDefault(false);
    m_threadSizes->setEnabled(false);
    m_threadSizesSwitch->setEnabled(false);
    m_grid->setMinimumSize(440, 300);

    auto* top = new QGridLayout;
    top->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), 0, 0);
    top->addWidget(m_severity, 0, 1);
    top->setColumnStretch(2, 1);
    auto* sizes = new QHBoxLayout;
    sizes->addWidget(m_threadSizesSwitch);
    sizes->addWidget(m_threadSizes);
    sizes->addStretch();
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(m_grid, 1);
    layout->addLayout(sizes);

    connect(m_threadSizesSwitch, &QCheckBox::toggled, m_threadSizes, &QWidget::setEnabled);
    connect(m_threadSizes, &QPushButton::clicked, this, [this] { OpenThreadSizes(); });
}

void CZEBAssemblyRecommThreadTypesInConnectionDlg::LoadFromRule(CZebRule& rule) {
    LoadSeverityList(*m_severity, rule.Severity);
    CZebParamStorage* threadSizes = rule.FindParameterInArray(kThreadSizes);
    if (!threadSizes) return;
    m_threadSizesSwitch->setEnabled(true);
    LoadFlagBox(*m_threadSizesSwitch, *threadSizes->GetParam(), ParamFlag::Criteria);
    m_threadSizes->setEnabled(m_threadSizesSwitch->isChecked());
    m_grid->SetUpPairColumns(LoadLocalizedString(IDS_THREAD_TYPE_1_HEADING),
                             LoadLocalizedString(IDS_THREAD_TYPE_2_HEADING));
    if (ZebTypedParam<ZebRow>* pairs = FindTyped<ZebRow>(rule, kPairs))
        m_grid->LoadPairs(std::vector<ZebRow>(pairs->values.begin(), pairs->values.end()));
}

std::optional<ZebRefusal> CZEBAssemblyRecommThreadTypesInConnectionDlg::Validate(CZebRule& rule) {
    if (!FindTyped<ZebRow>(rule, kPairs)) return ZebRefusal{};
    // Every row is checked before anything is stored, so a refused OK changes nothing.
    std::vector<ZebRow> pairs;
    int halfRow = -1;
    if (!m_grid->ReadPairs(pairs, halfRow))
        return RowRefusal(*m_grid, static_cast<size_t>(halfRow), IDS_ROW_INCOMPLETE_AT);
    return std::nullopt;
}

void CZEBAssemblyRecommThreadTypesInConnectionDlg::StoreIntoRule(CZebRule& rule) {
    StoreSeverityList(*m_severity, rule.Severity);
    ZebTypedParam<ZebRow>* stored = FindTyped<ZebRow>(rule, kPairs);
    std::vector<ZebRow> pairs;
    int halfRow = -1;
    m_grid->ReadPairs(pairs, halfRow);
    stored->values.RemoveAll();
    for (ZebRow& pair : pairs) stored->values.Add(std::move(pair));
    if (CZebParamStorage* threadSizes = rule.FindParameterInArray(kThreadSizes))
        StoreFlagBox(*m_threadSizesSwitch, *threadSizes->GetParam(), ParamFlag::Criteria);
}

void CZEBAssemblyRecommThreadTypesInConnectionDlg::OpenThreadSizes() {
    CZebResourceScope scope;
    CZEBEditThreadSizeDlg editor(this, GetRule());
    editor.DoModal();
}
