#include "dialogs/parts/contact_material_dlg.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/database_module.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "dialogs/database/material_db_dlg.h"
#include "dialogs/parts/zeb_asm_contact_material_list_ctrl.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/rule_params.h"

namespace {
constexpr long kPairs = ContactMaterialParams::kPairs.id;
constexpr long kDistance = ContactMaterialParams::kDistance.id;
constexpr int kSide1 = 1;
constexpr int kSide2 = 2;
constexpr int kMarkWidth = 30;
constexpr int kSideWidth = 180;
}  // namespace

CZEBAssemblyCheckContactMaterialDlg::CZEBAssemblyCheckContactMaterialDlg(
    CZebRule* rule, const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_distanceSwitch(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_CONTACT_DISTANCE_CHECK), Body()), kDistanceSwitchId)),
      m_distance(WithZebControlId(new CDoubleEditEx(Body()), kDistanceId)),
      m_unitLabel(WithZebControlId(new QLabel(Body()), kUnitLabelId)),
      m_table(WithZebControlId(new CZEBAsmContactMaterialListCtrl(Body()), kTableId)),
      m_databases(WithZebControlId(new CWrapperComboCtrl(Body()), kDatabaseListId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicContactMaterial);
    auto* materialDatabase = WithZebControlId(
        new QPushButton(LocalizedText(IDS_OPEN_MATERIAL_DATABASE), Body()), kMaterialDatabaseId);
    materialDatabase->setAutoDefault(false);
    m_table->setMinimumHeight(300);

    auto* database = new QHBoxLayout;
    database->addWidget(new QLabel(LocalizedText(IDS_DATABASE_LABEL), Body()));
    database->addWidget(m_databases);
    database->addWidget(materialDatabase);
    database->addStretch();
    auto* distance = new QHBoxLayout;
    distance->addWidget(m_distanceSwitch);
    distance->addWidget(m_distance);
    distance->addWidget(m_unitLabel);
    distance->addStretch();
    auto* hint = new QLabel(LocalizedText(IDS_CONTACT_TABLE_HINT), Body());
    hint->setWordWrap(true);
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(SeverityRow(Body(), m_severity));
    layout->addLayout(database);
    layout->addLayout(distance);
    layout->addWidget(m_table, 1);
    layout->addWidget(hint);

    connect(m_distanceSwitch, &QCheckBox::clicked, this, [this] { UpdateDistance(); });
    connect(materialDatabase, &QPushButton::clicked, this, [this] { OpenMaterialDatabase(); });
}

void CZEBAssemblyCheckContactMaterialDlg::LoadFromRule(CZebRule& rule) {
    LoadSeverityList(*m_severity, rule.Severity);
    const ZebTypedParam<double>* distance = FindTyped<double>(rule, kDistance);
    if (!distance) return;
    LoadFlagBox(*m_distanceSwitch, *distance, ParamFlag::Enabled);
    LoadFirstValue(*m_distance, *distance);
    UpdateDistance();

    m_table->SetRuleTableLook();
    m_table->InsertColumn(L"", kMarkWidth);
    m_table->InsertColumn(LoadLocalizedString(IDS_MATERIALS_SIDE_1_HEADING), kSideWidth);
    m_table->InsertColumn(LoadLocalizedString(IDS_MATERIALS_SIDE_2_HEADING), kSideWidth);
    m_table->SetEditableColumns(kSide1, kSide2);
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_table->FitWidthToColumns();

    if (CZEBAssemblyRulesApp* app = GetAssemblyRulesApp())
        FillDatabaseModuleList(*m_databases, app->m_databaseModules, rule.SelectedDatabase);
    // The stored pairs are shown whatever database modules there are, so that OK keeps them.
    std::vector<CZebGridModel::Row> rows;
    if (const ZebTypedParam<ZebRow>* pairs = FindTyped<ZebRow>(rule, kPairs))
        for (int i = 0; i < pairs->values.GetSize(); ++i)
            if (pairs->values[i].size() >= 2)
                rows.push_back({L"", pairs->values[i].Cell(0), pairs->values[i].Cell(1)});
    rows.resize(rows.size() + kSpareRows);
    m_table->SetRows(std::move(rows));
    m_table->SetOwner(this, &rule);
}

void CZEBAssemblyCheckContactMaterialDlg::UpdateDistance() {
    m_distance->setEnabled(m_distanceSwitch->isChecked());
    m_unitLabel->setText(QString::fromStdWString(GetUnitText()));
}

void CZEBAssemblyCheckContactMaterialDlg::OpenMaterialDatabase() {
    CZebResourceScope scope;
    CEditMaterialDBDlg editor(this, GetRule());
    editor.DoModal();
}

void CZEBAssemblyCheckContactMaterialDlg::CommitEdits() {
    std::wstring text;
    m_table->EndCellEdit(text);
}

std::optional<ZebRefusal> CZEBAssemblyCheckContactMaterialDlg::Validate(CZebRule& /*rule*/) {
    const std::vector<CZebGridModel::Row>& rows = m_table->GetRows();
    for (size_t i = 0; i < rows.size(); ++i)
        if (CZebGridModel::CellOf(rows[i], kSide1).empty() !=
            CZebGridModel::CellOf(rows[i], kSide2).empty())
            return RowRefusal(*m_table, i, IDS_ROW_INCOMPLETE_AT);
    return std::nullopt;
}

void CZEBAssemblyCheckContactMaterialDlg::StoreIntoRule(CZebRule& rule) {
    StoreSeverityList(*m_severity, rule.Severity);
    ZebTypedParam<ZebRow>* pairs = FindTyped<ZebRow>(rule, kPairs);
    // A table that never got its columns holds no pairs of the rule's: the stored ones stay.
    if (pairs && m_table->GetColumnCount() > 0) {
        pairs->values.RemoveAll();
        for (const CZebGridModel::Row& row : m_table->GetRows()) {
            const std::wstring& side1 = CZebGridModel::CellOf(row, kSide1);
            const std::wstring& side2 = CZebGridModel::CellOf(row, kSide2);
            if (!side1.empty()) pairs->values.Add(ZebRow{side1, side2});
        }
    }
    if (ZebTypedParam<double>* distance = FindTyped<double>(rule, kDistance)) {
        StoreFlagBox(*m_distanceSwitch, *distance, ParamFlag::Enabled);
        StoreFirstValue(*distance, ReadNumberField(*m_distance), LongerList::FirstReplaced);
    }
}
