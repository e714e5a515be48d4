#include "dialogs/fastener/fastener_table_dlg.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <list>

#include "app/assembly_rules_app.h"
#include "controls/database_module.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_list_ctrl.h"
#include "database/service/data_helper.h"
#include "dialogs/common/hardware_database.h"
#include "dialogs/common/severity_list.h"
#include "framework/resource_library.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/picture_control.h"

namespace {
// The drop-down offers each database name once, in order.
std::vector<std::wstring> NameChoices(const std::list<std::wstring>& names) {
    std::vector<std::wstring> choices(names.begin(), names.end());
    std::sort(choices.begin(), choices.end());
    choices.erase(std::unique(choices.begin(), choices.end()), choices.end());
    return choices;
}
}  // namespace

CZEBFastenerTableDlg::CZEBFastenerTableDlg(CZebRule* rule, std::wstring unitText,
                                           unsigned templateId, long imageId,
                                           const FastenerDialogIds& ids)
    : CZEBRuleDialog(rule, std::move(unitText), templateId, imageId),
      m_ids(ids),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), ids.severity)),
      m_unitLabel(WithZebControlId(new QLabel(Body()), ids.unitLabel)),
      m_databaseLabel(WithZebControlId(new QLabel(Body()), kDatabaseLabelId)),
      m_databaseList(WithZebControlId(new CWrapperComboCtrl(Body()), kDatabaseListId)),
      m_hardwareButton(WithZebControlId(
          new QPushButton(LocalizedText(IDS_OPEN_HARDWARE_DATABASE), Body()), kHardwareButtonId)),
      m_hardwareDatabase(WithZebControlId(
          new QPushButton(LocalizedText(IDS_OPEN_HARDWARE_DATABASE), Body()), kHardwareDatabaseId)),
      m_static(WithZebControlId(new QFrame(Body()), kStaticId)),
      m_firstList(WithZebControlId(
          new QRadioButton(LocalizedText(IDS_FASTENER_NAME_HEADING), Body()), kFirstListId)),
      m_secondList(WithZebControlId(
          new QRadioButton(LocalizedText(IDS_FASTENER_NAME_ALTERNATIVE_HEADING), Body()),
          kSecondListId)),
      m_spareButton(WithZebControlId(new QPushButton(Body()), kSpareButtonId)),
      m_picture(WithZebControlId(new PictureControl(Body()), ids.picture)),
      m_tableArea(new QVBoxLayout),
      m_hotKey(new CZebHotKey(this)) {
    static_cast<QFrame*>(m_static)->setFrameShape(QFrame::HLine);
    for (QPushButton* button : {m_hardwareButton, m_hardwareDatabase, m_spareButton})
        button->setAutoDefault(false);
    m_databaseLabel->hide();
    m_databaseList->hide();
    m_static->hide();

    auto* settings = new QGridLayout;
    settings->addWidget(new QLabel(LocalizedText(IDS_SEVERITY_LABEL), Body()), 0, 0);
    settings->addWidget(m_severity, 0, 1);
    settings->addWidget(m_databaseLabel, 1, 0);
    settings->addWidget(m_databaseList, 1, 1);
    settings->addWidget(m_hardwareDatabase, 1, 2);
    settings->addWidget(m_hardwareButton, 1, 3);
    settings->setColumnStretch(4, 1);
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_firstList);
    lists->addWidget(m_secondList);
    lists->addWidget(m_spareButton);
    lists->addStretch();
    m_tableArea->addWidget(m_unitLabel);
    auto* tableAndPicture = new QHBoxLayout;
    tableAndPicture->addLayout(m_tableArea, 1);
    tableAndPicture->addWidget(m_picture, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(settings);
    layout->addWidget(m_static);
    layout->addLayout(lists);
    layout->addLayout(tableAndPicture, 1);

    connect(m_hotKey, &CZebHotKey::Pressed, this, [this] { ImportSpreadsheet(); });
    for (QPushButton* button : {m_hardwareButton, m_hardwareDatabase})
        connect(button, &QPushButton::clicked, this, [this] { OpenHardwareDatabase(); });
}

CZEBFastenerTableDlg::~CZEBFastenerTableDlg() { m_hotKey->Unregister(); }

std::vector<CZebGridModel::Row> CZEBFastenerTableDlg::RowsWithReserve(
    size_t stored, std::vector<std::pair<size_t, CZebGridModel::Row>> placed) {
    // Rows inserted one after another at rising indices end up at exactly those indices.
    std::vector<CZebGridModel::Row> rows(stored + kReserveRows + placed.size());
    for (auto& [index, row] : placed) rows[index] = std::move(row);
    return rows;
}

void CZEBFastenerTableDlg::RegisterImportKey() { m_hotKey->Register(); }

void CZEBFastenerTableDlg::LoadSeverity(int32_t severity) {
    LoadSeverityList(*m_severity, severity);
}

void CZEBFastenerTableDlg::StoreSeverity(int32_t& severity) {
    StoreSeverityList(*m_severity, severity);
}

void CZEBFastenerTableDlg::SetUnitLabel(ZebStringId format) {
    m_unitLabel->setText(
        QString::fromStdWString(ZebFormatText(LoadLocalizedString(format), {GetUnitText()})));
}

void CZEBFastenerTableDlg::ShowFirstListOnly() {
    m_firstList->setChecked(true);
    for (QWidget* hidden : std::initializer_list<QWidget*>{m_firstList, m_secondList, m_spareButton,
                                                           m_hardwareButton})
        hidden->hide();
    m_databaseLabel->setText(LocalizedText(IDS_DATABASE_LABEL));
    for (QWidget* shown :
         std::initializer_list<QWidget*>{m_databaseLabel, m_static, m_databaseList})
        shown->show();
}

bool CZEBFastenerTableDlg::FillDatabaseModule() { return FillDatabaseModuleList(*m_databaseList); }

bool CZEBFastenerTableDlg::IsSecondList() const { return m_secondList->isChecked(); }

bool CZEBFastenerTableDlg::LoadNameChoices() {
    std::list<std::wstring> names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db) {
        const int32_t read =
            IsSecondList() ? db->GetAlternateFastenerNames(names) : db->GetFastenerNames(names);
        if (read != ZebDbOk) names.clear();
    }
    std::vector<std::wstring> choices = NameChoices(names);
    if (m_table) m_table->ChoiceList() = choices;
    return !choices.empty();
}

void CZEBFastenerTableDlg::ShowPicture() { m_picture->SetBitmapId(m_ids.pictureBitmap); }

void CZEBFastenerTableDlg::AddImportsToDatabase() { AddToFastenerDatabase(this, m_imports); }

void CZEBFastenerTableDlg::OpenHardwareDatabase() {
    m_hotKey->Unregister();
    ReadHardwareList();
    LaunchHardwareDatabase(this);
    m_hotKey->Register();
    if (!m_table) return;
    m_table->HideCellChoice();
    std::list<std::wstring> names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db && db->GetFastenerNames(names) == ZebDbOk && !names.empty())
        m_table->ChoiceList() = NameChoices(names);
}
