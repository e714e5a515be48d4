#include "dialogs/parts/pref_comp_dlg.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/sheet_export.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/rule_params.h"
#include "util/string_table.h"

namespace {
constexpr long kTableText = PrefCompParams::kTable.id;
constexpr int kPrefTableWidth = 1000;
constexpr int kLastColumn = 4;

// Columns "A" to "D" into the table's four columns, read by rows; every row emptied first.
const ComponentImportLayout kPrefImportLayout{
    .columns = SheetColumnsOf(PrefCompParams::kTable.columns),
    .rowsBelow = CZEBAssemblyCheckPrefCompDlg::kSpareRows,
    .emptyEveryRow = true,
    .readByRows = true};

bool IsEmptyRecord(const CZebGridModel::Row& row) {
    for (int column = 1; column <= kLastColumn; ++column)
        if (!CZebGridModel::CellOf(row, column).empty()) return false;
    return true;
}

// The rows above the last one, which is never part of the table's text.
std::vector<StringTableRow> Records(const std::vector<CZebGridModel::Row>& rows) {
    std::vector<StringTableRow> records;
    for (size_t i = 0; i + 1 < rows.size(); ++i) {
        const CZebGridModel::Row& row = rows[i];
        records.push_back({CZebGridModel::CellOf(row, 1), CZebGridModel::CellOf(row, 2),
                           CZebGridModel::CellOf(row, 3), CZebGridModel::CellOf(row, 4)});
    }
    return records;
}
}  // namespace

CZEBAssemblyCheckPrefCompDlg::CZEBAssemblyCheckPrefCompDlg(CZebRule* rule,
                                                           const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_table(WithZebControlId(new CZEBAsmRuleListCtrl(Body()), kTableId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicPreferredComponents);
    UseTable(m_table, TableSheetKind::PreferredComponents, 1, kLastColumn);
    m_table->SetMode(CZEBAsmRuleListCtrl::Mode::PreferredComponents);
    m_table->setMinimumHeight(300);
    auto* hint = new QLabel(LocalizedText(IDS_PREFERRED_TABLE_HINT), Body());
    hint->setWordWrap(true);
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(SeverityRow(Body(), m_severity));
    layout->addWidget(m_table, 1);
    layout->addWidget(hint);
    UseImportKey();
}

void CZEBAssemblyCheckPrefCompDlg::LoadFromRule(CZebRule& rule) {
    const ZebTypedParam<std::wstring>* text = FindTyped<std::wstring>(rule, kTableText);
    if (!text) return;
    // The description takes one and a half parts of the width, each component just under one.
    const int unit = static_cast<int>((kPrefTableWidth - 16) / 4.5);
    m_table->SetRuleTableLook();
    m_table->InsertColumn(L"", 10);
    m_table->InsertColumn(LoadLocalizedString(IDS_DESCRIPTION_HEADING),
                          static_cast<int>(unit * 1.5));
    for (ZebStringId heading : {IDS_PREFERRED_COMPONENT_HEADING, IDS_ALTERNATIVE_COMPONENT_HEADING,
                                IDS_COMPONENT_TO_REPLACE_HEADING})
        m_table->InsertColumn(LoadLocalizedString(heading), static_cast<int>(unit * 0.97));
    m_table->SetEditableColumns(1, kLastColumn);
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_table->FitWidthToColumns();
    OfferTableExport(*m_table, [this] { ExportTable(); });

    std::vector<StringTableRow> records;
    if (!text->values.IsEmpty()) CZEBStringTableParser::Parse(text->values[0], records);
    // One row per record on top, the spare rows below.
    std::vector<CZebGridModel::Row> rows(static_cast<size_t>(text->values.GetSize() + kSpareRows) +
                                         records.size());
    for (size_t k = 0; k < records.size(); ++k)
        rows[k] = {L"", records[k].Col1, records[k].Col2, records[k].Col3, records[k].Col4};
    m_table->SetRows(std::move(rows));
    LoadSeverityList(*m_severity, rule.Severity);
}

void CZEBAssemblyCheckPrefCompDlg::CommitEdits() {
    CZEBRuleDialog::CommitEdits();
    // Rows left empty between records are dropped; the last row stays for new entries.
    std::vector<CZebGridModel::Row> rows = m_table->GetRows();
    if (rows.empty()) return;
    const CZebGridModel::Row last = std::move(rows.back());
    rows.pop_back();
    std::erase_if(rows, IsEmptyRecord);
    rows.push_back(last);
    if (rows.size() != m_table->GetRows().size()) m_table->SetRows(std::move(rows));
}

std::optional<ZebRefusal> CZEBAssemblyCheckPrefCompDlg::Validate(CZebRule& rule) {
    if (!FindTyped<std::wstring>(rule, kTableText)) return ZebRefusal{};
    int row = -1, column = -1;
    if (!CZEBStringTableParser::Validate(Records(m_table->GetRows()), row, column)) {
        if (row >= 0 && column >= 0) m_table->BeginCellEdit(row, column, kRefusedCellLimit);
        return ZebRefusal{LoadLocalizedString(IDS_REPLACED_COMPONENT_ALSO_PREFERRED), {}};
    }
    if (m_severity->currentIndex() < 0) return ZebRefusal{std::wstring(), m_severity};
    return std::nullopt;
}

void CZEBAssemblyCheckPrefCompDlg::StoreIntoRule(CZebRule& rule) {
    StoreFirstValue(*FindTyped<std::wstring>(rule, kTableText),
                    CZEBStringTableParser::Compose(Records(m_table->GetRows())),
                    LongerList::FirstReplaced);
    StoreSeverityList(*m_severity, rule.Severity);
}

void CZEBAssemblyCheckPrefCompDlg::ImportSpreadsheet() {
    if (m_table->GetColumnCount() == 0) return;
    ImportComponentTable(this, *m_table, kPrefImportLayout, m_import);
}

TextRows CZEBAssemblyCheckPrefCompDlg::ExportRows() const {
    TextRows rows = CZEBRuleDialog::ExportRows();
    if (!rows.empty()) rows.pop_back();
    return rows;
}
