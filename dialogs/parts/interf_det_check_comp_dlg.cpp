#include "dialogs/parts/interf_det_check_comp_dlg.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "controls/sheet_export.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"

namespace {
constexpr long kCheckAll = InterferenceParams::kCheckAll.id;
constexpr long kGroups = InterferenceParams::kGroups.id;
constexpr long kComponents = InterferenceParams::kComponents.id;
constexpr int kTableWidth = 560;
constexpr int kFirst = 1;
constexpr int kSecond = 2;

// Columns "A" and "B" into the two component columns; an empty name ends the import.
const ComponentImportLayout kImportLayout{
    .columns = SheetColumnsOf(InterferenceParams::kComponents.columns),
    .leastRows = ZEBASMInterfDetCheckCompDlg::kSpareRows,
    .rowsBelow = 1,
    .stopAtEmptyName = true};
}  // namespace

ZEBASMInterfDetCheckCompDlg::ZEBASMInterfDetCheckCompDlg(CZebRule* rule, QWidget* parent)
    : QWidget(parent),
      m_rule(rule),
      m_all(WithZebControlId(new QRadioButton(LocalizedText(IDS_CHECK_ALL_COMPONENTS), this),
                             kAllComponentsId)),
      m_listed(WithZebControlId(new QRadioButton(LocalizedText(IDS_CHECK_LISTED_COMPONENTS), this),
                                kListedComponentsId)),
      m_groupsBox(
          WithZebControlId(new QCheckBox(LocalizedText(IDS_COMPONENT_GROUPS), this), kGroupsId)),
      m_table(WithZebControlId(new CZEBAsmRuleListCtrl(this), kTableId)) {
    m_table->setMinimumHeight(300);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_all);
    layout->addWidget(m_listed);
    layout->addWidget(m_groupsBox);
    layout->addWidget(m_table, 1);
    auto* hint = new QLabel(LocalizedText(IDS_PART_TABLE_HINT), this);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    connect(m_all, &QRadioButton::clicked, this, [this] { OnAllComponents(); });
    connect(m_listed, &QRadioButton::clicked, this, [this] { OnListedComponents(); });
}

void ZEBASMInterfDetCheckCompDlg::OnInitDialog() {
    if (!m_rule || !m_rule->FindParameterInArray(kCheckAll)) return;
    m_table->SetUpColumns({L"", LoadLocalizedString(IDS_COMPONENT_1_HEADING),
                           LoadLocalizedString(IDS_COMPONENT_2_HEADING)},
                          kTableWidth, 0);
    OfferTableExport(*m_table, [this] { ExportTable(); });
    const ZebTypedParam<bool>* checkAll = FindTyped<bool>(*m_rule, kCheckAll);
    const ZebTypedParam<ZebRow>* stored = FindTyped<ZebRow>(*m_rule, kComponents);
    const int storedRows = stored ? stored->values.GetSize() : 0;

    const bool checkAllOn = checkAll && !checkAll->values.IsEmpty() && checkAll->values[0];
    (!checkAllOn && storedRows > 0 ? m_listed : m_all)->setChecked(true);
    if (const ZebTypedParam<bool>* groups = FindTyped<bool>(*m_rule, kGroups))
        LoadSwitchBox(*m_groupsBox, *groups);
    if (checkAllOn) {
        m_table->setEnabled(false);
        m_groupsBox->setEnabled(false);
    }
    // Rows are read as groups only when the list is in use.
    const bool asGroups = !checkAllOn && m_groupsBox->isChecked();

    // The stored rows keep their places, with one spare row below a long list.
    std::vector<CZebGridModel::Row> rows(std::max(kSpareRows, storedRows + 1));
    for (int i = 0; i < storedRows; ++i) {
        const ZebRow& row = stored->values[i];
        if (row.size() < 2) continue;
        if (!asGroups && (row[0].empty() || row[1].empty())) continue;
        rows[static_cast<size_t>(i)] = {L"", row.Cell(0), row.Cell(1)};
    }
    m_table->SetRows(std::move(rows));
}

void ZEBASMInterfDetCheckCompDlg::OnAllComponents() {
    m_table->setEnabled(false);
    std::wstring text;
    m_table->EndCellEdit(text);
    m_groupsBox->setEnabled(false);
}

void ZEBASMInterfDetCheckCompDlg::OnListedComponents() {
    m_table->setEnabled(true);
    m_groupsBox->setEnabled(true);
}

std::optional<ZebRefusal> ZEBASMInterfDetCheckCompDlg::Validate() const {
    if (m_all->isChecked()) return std::nullopt;
    bool anyFirst = false, anySecond = false, anyHalf = false;
    for (const CZebGridModel::Row& row : m_table->GetRows()) {
        const bool first = !CZebGridModel::CellOf(row, kFirst).empty();
        const bool second = !CZebGridModel::CellOf(row, kSecond).empty();
        anyFirst = anyFirst || first;
        anySecond = anySecond || second;
        anyHalf = anyHalf || first != second;
    }
    const ZebRefusal empty{LoadLocalizedString(IDS_COMPONENT_LIST_EMPTY), m_table};
    if (m_groupsBox->isChecked()) {
        if (!anyFirst || !anySecond) return empty;
        return std::nullopt;
    }
    if (!anyFirst && !anySecond) return empty;
    if (anyHalf) return ZebRefusal{LoadLocalizedString(IDS_COMPONENT_PAIR_INCOMPLETE), m_table};
    return std::nullopt;
}

void ZEBASMInterfDetCheckCompDlg::StoreIntoRule(CZebRule& rule) {
    if (ZebTypedParam<bool>* checkAll = FindTyped<bool>(rule, kCheckAll))
        StoreSwitchBox(*m_all, *checkAll);
    if (m_all->isChecked()) return;
    if (ZebTypedParam<bool>* groups = FindTyped<bool>(rule, kGroups))
        StoreSwitchBox(*m_groupsBox, *groups);
    ZebTypedParam<ZebRow>* stored = FindTyped<ZebRow>(rule, kComponents);
    if (!stored) return;
    stored->values.RemoveAll();
    for (const CZebGridModel::Row& row : m_table->GetRows()) {
        const std::wstring& first = CZebGridModel::CellOf(row, kFirst);
        const std::wstring& second = CZebGridModel::CellOf(row, kSecond);
        if (!first.empty() || !second.empty()) stored->values.Add(ZebRow{first, second});
    }
}

void ZEBASMInterfDetCheckCompDlg::ImportSpreadsheet() {
    ImportComponentTable(window(), *m_table, kImportLayout, m_import);
}

void ZEBASMInterfDetCheckCompDlg::ExportTable() {
    std::wstring text;
    m_table->EndCellEdit(text);
    ExportTableToChosenFile(window(), TableSheetKind::ComponentsToCheck,
                            TableTexts(*m_table, kFirst, 2));
}
