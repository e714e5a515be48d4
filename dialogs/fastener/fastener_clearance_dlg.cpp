#include "dialogs/fastener/fastener_clearance_dlg.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/sheet_export.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/fastener/fastener_cells.h"
#include "dialogs/fastener/fastener_sheet_import.h"
#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"
#include "framework/zeb_operator.h"
#include "framework/zeb_rule.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/rule_params.h"

namespace {
constexpr long kConditionA = FastenerClearanceParams::kConditionA.id;
constexpr long kConditionB = FastenerClearanceParams::kConditionB.id;
constexpr double kTolerance = 0.000001;
constexpr int kClearanceNameWidth = 150, kConditionWidth = 142;

using Table = ZebTypedParam<ZebRow>;

// The texts of the operator drop-downs, in list order, and the codes they stand for.
std::wstring OperatorText(int code) {
    return code == ZebOp_Range ? LoadLocalizedString(IDS_OPERATOR_BETWEEN)
                               : std::wstring(ZebOperatorText(ZebOp_GreaterEqual));
}

// What is wrong with a condition's Min and Max as OK checks them; none when they hold. ">=" needs
// a Min of at least 0; a range needs both, at least 0, and a Min below the Max.
std::optional<ZebStringId> ConditionFault(int op, const std::wstring& min,
                                          const std::wstring& max) {
    const bool range = op != ZebOp_GreaterEqual;
    if (min.empty() || (range && max.empty())) return IDS_ROW_INCOMPLETE_AT;
    if (ToDouble(min) < 0 || (range && ToDouble(max) < 0)) return IDS_ROW_NEGATIVE_AT;
    if (range && ToDouble(min) > ToDouble(max) - kTolerance) return IDS_ROW_LIMITS_REVERSED_AT;
    return std::nullopt;
}

constexpr auto ClearanceCell = &CZebGridModel::CellOf;
}  // namespace

const FastenerTableKind& CZEBAssemblyFastenerClearanceDlg::ImportKind() {
    static const FastenerTableKind kind{
        .layouts = {{{L"F", L"A", L"B"}, {1, -1, 2, -1}},
                    {{L"F", L"A", L"A1", L"B", L"B1"}, {1, 2, 3, 4}}},
        .valueCount = 4,
        .rowBlocks =
            [](const FastenerSheetRow& row) {
                return row.Under(L"A").empty() && row.Under(L"B").empty();
            },
        .emptyReadsAsZero = false,
        .logSuffix = L"FastnerClearance_log.txt"};
    return kind;
}

CZEBAssemblyFastenerClearanceDlg::CZEBAssemblyFastenerClearanceDlg(CZebRule* rule,
                                                                   const std::wstring& unitText)
    : CZEBFastenerTableDlg(
          rule, unitText, kTemplateId, kImageId,
          {.severity = 6022, .unitLabel = 6019, .picture = 6090, .pictureBitmap = 6091}),
      m_operatorGrid(new CZEBListCtrl(Body())),
      m_grid(new CZEBAsmFastenerClearanceRuleListCtrl(Body())) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicFastenerClearance);
    SetZebControlId(m_operatorGrid, kOperatorGridId);
    SetZebControlId(m_grid, kGridId);
    m_operatorGrid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_operatorGrid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_operatorGrid->setSelectionMode(QAbstractItemView::NoSelection);
    m_operatorGrid->setFocusPolicy(Qt::NoFocus);
    TableArea()->setSpacing(0);
    TableArea()->addWidget(m_operatorGrid);
    TableArea()->addWidget(m_grid, 1);
    SetFastenerTable(m_grid);
    UseTable(m_grid, TableSheetKind::FastenerClearance, kFastenerNameColumn, 5);
    connect(m_operatorGrid->horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        PlaceOperatorLists();
        FollowOperatorColumns();
    });
}

void CZEBAssemblyFastenerClearanceDlg::LoadFromRule(CZebRule& rule) {
    RegisterImportKey();
    LoadSeverity(rule.Severity);
    SetUnitLabel(IDS_CLEARANCE_UNIT_LABEL);
    ShowFirstListOnly();
    Table* conditionA = FindTyped<ZebRow>(rule, kConditionA);
    Table* conditionB = FindTyped<ZebRow>(rule, kConditionB);
    if (!conditionA || !conditionB) return;
    const size_t stored = static_cast<size_t>(conditionA->values.GetSize());
    BuildTables(stored);
    if (!FillDatabaseModule()) return;
    if (LoadNameChoices()) {
        SetOperator(0, conditionA->op);
        SetOperator(1, conditionB->op);
        std::vector<std::pair<size_t, CZebGridModel::Row>> placed;
        for (int32_t i = 0; i < conditionA->values.GetSize() && i < conditionB->values.GetSize();
             ++i) {
            const ZebRow& a = conditionA->values[i];
            const ZebRow& b = conditionB->values[i];
            if (a.size() < 3 || b.size() < 3 || a[0].empty()) continue;
            placed.emplace_back(
                static_cast<size_t>(i),
                CZebGridModel::Row{a.Cell(0), a.Cell(1), a.Cell(2), b.Cell(1), b.Cell(2)});
        }
        m_grid->SetRows(RowsWithReserve(stored, std::move(placed)));
    }
    ShowPicture();
}

void CZEBAssemblyFastenerClearanceDlg::BuildTables(size_t storedRows) {
    m_operatorGrid->InsertColumn(
        LoadLocalizedString(IsSecondList() ? IDS_FASTENER_NAME_ALTERNATIVE_HEADING
                                           : IDS_FASTENER_NAME_HEADING),
        kClearanceNameWidth);
    m_operatorGrid->InsertColumn(LoadLocalizedString(IDS_CLEARANCE_A_HEADING), kConditionWidth);
    m_operatorGrid->InsertColumn(LoadLocalizedString(IDS_CLEARANCE_B_HEADING), kConditionWidth);
    m_operatorGrid->SetRows({CZebGridModel::Row{}});
    m_operatorGrid->setFixedHeight(m_operatorGrid->horizontalHeader()->sizeHint().height() +
                                   m_operatorGrid->rowHeight(0) + 2 * m_operatorGrid->frameWidth());
    for (int condition = 0; condition < 2; ++condition) {
        auto* list = new CWrapperComboCtrl(m_operatorGrid->viewport());
        SetZebControlId(list, kOperatorListId);
        list->FillFromList({OperatorText(ZebOp_GreaterEqual), OperatorText(ZebOp_Range)});
        connect(list, &QComboBox::currentIndexChanged, this, [this] { OperatorChosen(); });
        m_operatorLists[condition] = list;
    }
    OperatorChosen();
    PlaceOperatorLists();

    m_grid->InsertColumn(L"", kClearanceNameWidth);
    for (const wchar_t* heading : {L"Min", L"Max", L"Min", L"Max"})
        m_grid->InsertColumn(heading, kConditionWidth / 2);
    m_grid->SetEditableColumns(kFastenerNameColumn, CZEBAsmFastenerClearanceRuleListCtrl::kMaxB);
    m_grid->SetRows(RowsWithReserve(storedRows, {}));
    // The value columns stand under the headings above, however wide those came out.
    FollowOperatorColumns();
    // The headings that name the columns sit on the operator table above the values.
    for (CZEBListCtrl* table : {m_operatorGrid, static_cast<CZEBListCtrl*>(m_grid)})
        OfferTableExport(*table, [this] { ExportTable(); });
    m_grid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_grid->FitWidthToColumns();
    m_operatorGrid->FitWidthToColumns();
    m_grid->setMinimumHeight(12 * m_grid->verticalHeader()->defaultSectionSize());
}

void CZEBAssemblyFastenerClearanceDlg::SetOperator(int condition, int code) {
    m_operatorLists[condition]->setCurrentText(QString::fromStdWString(OperatorText(code)));
}

void CZEBAssemblyFastenerClearanceDlg::OperatorChosen() {
    for (int condition = 0; condition < 2; ++condition) {
        const std::wstring text = m_operatorLists[condition]
                                      ? m_operatorLists[condition]->currentText().toStdWString()
                                      : L"";
        // Any other text leaves the last operator in force.
        if (text == OperatorText(ZebOp_GreaterEqual))
            m_operators[condition] = ZebOp_GreaterEqual;
        else if (text == OperatorText(ZebOp_Range))
            m_operators[condition] = ZebOp_Range;
    }
    m_grid->SetOperators(m_operators[0], m_operators[1]);
    if (m_grid->IsCellEditOpen()) m_grid->CommitOpenEditor();
}

void CZEBAssemblyFastenerClearanceDlg::PlaceOperatorLists() {
    for (int condition = 0; condition < 2; ++condition) {
        if (!m_operatorLists[condition]) continue;
        m_operatorLists[condition]->setGeometry(
            m_operatorGrid->visualRect(m_operatorGrid->model()->index(0, condition + 1)));
        m_operatorLists[condition]->show();
    }
}

void CZEBAssemblyFastenerClearanceDlg::FollowOperatorColumns() {
    if (m_grid->GetColumnCount() < 5) return;
    const int name = m_operatorGrid->columnWidth(0);
    const int a = m_operatorGrid->columnWidth(1), b = m_operatorGrid->columnWidth(2);
    const int widths[] = {name, a / 2, a / 2, b / 2, b / 2};
    for (int column = 0; column < 5; ++column) m_grid->setColumnWidth(column, widths[column]);
    m_grid->CommitOpenEditor();
}

std::optional<ZebRefusal> CZEBAssemblyFastenerClearanceDlg::Validate(CZebRule& rule) {
    if (!FindTyped<ZebRow>(rule, kConditionA) || !FindTyped<ZebRow>(rule, kConditionB))
        return ZebRefusal{};
    const std::vector<CZebGridModel::Row>& rows = m_grid->GetRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const CZebGridModel::Row& row = rows[i];
        if (ClearanceCell(row, 0).empty()) continue;
        std::optional<ZebStringId> fault =
            ConditionFault(m_operators[0], ClearanceCell(row, 1), ClearanceCell(row, 2));
        if (!fault)
            fault = ConditionFault(m_operators[1], ClearanceCell(row, 3), ClearanceCell(row, 4));
        if (fault) return RowRefusal(*m_grid, i, *fault);
    }
    return std::nullopt;
}

void CZEBAssemblyFastenerClearanceDlg::StoreIntoRule(CZebRule& rule) {
    StoreSeverity(rule.Severity);
    Table* conditionA = FindTyped<ZebRow>(rule, kConditionA);
    Table* conditionB = FindTyped<ZebRow>(rule, kConditionB);
    conditionA->values.RemoveAll();
    conditionB->values.RemoveAll();
    for (const CZebGridModel::Row& row : m_grid->GetRows()) {
        if (ClearanceCell(row, 0).empty()) continue;
        conditionA->values.Add(ZebRow{row[0], ClearanceCell(row, 1), ClearanceCell(row, 2)});
        conditionB->values.Add(ZebRow{row[0], ClearanceCell(row, 3), ClearanceCell(row, 4)});
    }
    conditionA->op = m_operators[0];
    conditionB->op = m_operators[1];
    // An odd row count that is not a multiple of three gets one empty row, as these settings have
    // always been written; a row without a name is skipped when the table is read back.
    const int32_t count = conditionA->values.GetSize();
    if (count % 2 == 1 && count % 3 != 0) {
        conditionA->values.Add(ZebRow{L"", L"", L""});
        conditionB->values.Add(ZebRow{L"", L"", L""});
    }
    AddImportsToDatabase();
}

void CZEBAssemblyFastenerClearanceDlg::ImportSpreadsheet() {
    CFastenerSheetImport import(ImportKind(), IsSecondList());
    if (!import.Read(this, GetLengthUnit()) || !import.CheckRows(this)) return;
    CloseFastenerEditors(*m_grid);
    std::vector<CZebGridModel::Row> rows = m_grid->GetRows();
    if (import.MergeInto(this, rows, Imports())) m_grid->SetRows(std::move(rows));
}
