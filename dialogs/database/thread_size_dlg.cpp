#include "dialogs/database/thread_size_dlg.h"

#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/zeb_asm_recomm_thread_conn_list_ctrl.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_rule.h"
#include "util/rule_params.h"

namespace {
constexpr long kThreadSizes = RecommThreadParams::kThreadSizes.id;

ZebTypedParam<ZebRow>* ThreadSizes(CZebRule* rule) {
    CZebParamStorage* stored = rule ? rule->FindParameterInArray(kThreadSizes) : nullptr;
    return stored ? stored->As<ZebRow>() : nullptr;
}
}  // namespace

CZEBEditThreadSizeDlg::CZEBEditThreadSizeDlg(QWidget* parent, CZebRule* rule)
    : CZEBRuleDlgBase(kTemplateId, kImageId, ModuleHelpFilePath(), parent),
      m_rule(rule),
      m_table(new CZEBAsmRecommThreadConnListCtrl(Body())) {
    SetZebControlId(m_table, kTableId);
    setWindowTitle(QString::fromStdWString(LoadLocalizedString(IDS_THREAD_SIZE_EDITOR_TITLE)));
    SetHelpTopic(kHelpTopicThreadSize);
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
    m_table->setMinimumSize(420, 320);
}

bool CZEBEditThreadSizeDlg::OnInitDialog() {
    CZEBRuleDlgBase::OnInitDialog();
    m_table->SetUpPairColumns(LoadLocalizedString(IDS_THREAD_SIZE_HEADING),
                              LoadLocalizedString(IDS_THREAD_PITCH_HEADING));
    if (ZebTypedParam<ZebRow>* sizes = ThreadSizes(m_rule))
        m_table->LoadPairs(std::vector<ZebRow>(sizes->values.begin(), sizes->values.end()));
    return true;
}

void CZEBEditThreadSizeDlg::OnOK() {
    m_table->CommitOpenEditor();
    ZebTypedParam<ZebRow>* sizes = ThreadSizes(m_rule);
    if (!sizes) return;
    std::vector<ZebRow> pairs;
    int halfRow = -1;
    if (!m_table->ReadPairs(pairs, halfRow)) {
        m_table->selectRow(halfRow);
        ZebUiMessage(this, LoadLocalizedString(IDS_ROW_INCOMPLETE), ZebMsgIcon::Information);
        return;
    }
    sizes->values.RemoveAll();
    for (ZebRow& pair : pairs) sizes->values.Add(std::move(pair));
    CZEBRuleDlgBase::OnOK();
}
