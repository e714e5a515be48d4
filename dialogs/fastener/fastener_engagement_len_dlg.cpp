#include "dialogs/fastener/fastener_engagement_len_dlg.h"

#include <QFrame>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/sheet_export.h"
#include "dialogs/fastener/fastener_cells.h"
#include "dialogs/fastener/fastener_sheet_import.h"
#include "dialogs/fastener/zeb_asm_fastener_engagement_len_rule_list_ctrl.h"
#include "framework/zeb_rule.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/rule_params.h"

namespace {
constexpr long kLengths = FastenerEngagementParams::kLengths.id;
constexpr int kNameWidth = 170, kLengthWidth = 300;

constexpr auto Cell = &CZebGridModel::CellOf;
}  // namespace

const FastenerTableKind& CZEBAssemblyFastenerEngagementLenDlg::ImportKind() {
    static const FastenerTableKind kind{.layouts = {{{L"F", L"A"}, {1}}},
                                        .valueCount = 1,
                                        .rowBlocks =
                                            [](const FastenerSheetRow& row) {
                                                const std::wstring& length = row.Under(L"A");
                                                return !ReadNumberEntry(length).Ok();
                                            },
                                        .emptyReadsAsZero = true,
                                        .logSuffix = L"FastenerEngement_log.txt"};
    return kind;
}

CZEBAssemblyFastenerEngagementLenDlg::CZEBAssemblyFastenerEngagementLenDlg(
    CZebRule* rule, const std::wstring& unitText)
    : CZEBFastenerTableDlg(
          rule, unitText, kTemplateId, kImageId,
          {.severity = 6034, .unitLabel = 6032, .picture = 6037, .pictureBitmap = 6009}),
      m_grid(new CZEBAsmFastenerEngagementLenRuleListCtrl(Body())),
      m_spareButton2(new QPushButton(Body())) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicFastenerEngagementLength);
    SetZebControlId(m_grid, kGridId);
    SetZebControlId(m_spareButton2, kSpareButtonId2);
    auto* separator = new QFrame(Body());
    separator->setFrameShape(QFrame::HLine);
    SetZebControlId(separator, kSeparatorId);
    TableArea()->addWidget(separator);
    TableArea()->addWidget(m_grid, 1);
    SetFastenerTable(m_grid);
    UseTable(m_grid, TableSheetKind::FastenerEngagement, kFastenerNameColumn, 2);
}

void CZEBAssemblyFastenerEngagementLenDlg::LoadFromRule(CZebRule& rule) {
    RegisterImportKey();
    if (!FillDatabaseModule()) return;
    SetUnitLabel(IDS_ENGAGEMENT_UNIT_LABEL);
    ShowFirstListOnly();
    m_spareButton2->hide();
    ZebTypedParam<ZebRow>* lengths = FindTyped<ZebRow>(rule, kLengths);
    if (!lengths) return;
    m_grid->InsertColumn(LoadLocalizedString(IsSecondList() ? IDS_FASTENER_NAME_ALTERNATIVE_HEADING
                                                            : IDS_FASTENER_NAME_HEADING),
                         kNameWidth);
    m_grid->InsertColumn(LoadLocalizedString(IDS_ENGAGEMENT_LENGTH_HEADING), kLengthWidth);
    m_grid->SetEditableColumns(kFastenerNameColumn,
                               CZEBAsmFastenerEngagementLenRuleListCtrl::kLength);
    m_grid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_grid->FitWidthToColumns();
    m_grid->setMinimumHeight(12 * m_grid->verticalHeader()->defaultSectionSize());
    OfferTableExport(*m_grid, [this] { ExportTable(); });
    const size_t stored = static_cast<size_t>(lengths->values.GetSize());
    std::vector<std::pair<size_t, CZebGridModel::Row>> placed;
    if (LoadNameChoices()) {
        for (int32_t i = 0; i < lengths->values.GetSize(); ++i) {
            const ZebRow& row = lengths->values[i];
            if (row.size() < 2 || row[0].empty()) continue;
            placed.emplace_back(static_cast<size_t>(i),
                                CZebGridModel::Row{row.Cell(0), row.Cell(1)});
        }
    }
    m_grid->SetRows(RowsWithReserve(stored, std::move(placed)));
    LoadSeverity(rule.Severity);
    ShowPicture();
}

std::optional<ZebRefusal> CZEBAssemblyFastenerEngagementLenDlg::Validate(CZebRule& rule) {
    if (!FindTyped<ZebRow>(rule, kLengths)) return ZebRefusal{};
    const std::vector<CZebGridModel::Row>& rows = m_grid->GetRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::wstring& length = Cell(rows[i], 1);
        if (Cell(rows[i], 0).empty() || (!length.empty() && ToDouble(length) >= 0)) continue;
        return RowRefusal(*m_grid, i, length.empty() ? IDS_ROW_INCOMPLETE_AT : IDS_ROW_NEGATIVE_AT);
    }
    return std::nullopt;
}

void CZEBAssemblyFastenerEngagementLenDlg::StoreIntoRule(CZebRule& rule) {
    StoreSeverity(rule.Severity);
    ZebTypedParam<ZebRow>* lengths = FindTyped<ZebRow>(rule, kLengths);
    lengths->values.RemoveAll();
    for (const CZebGridModel::Row& row : m_grid->GetRows())
        if (!Cell(row, 0).empty()) lengths->values.Add(ZebRow{row[0], Cell(row, 1)});
    AddImportsToDatabase();
}

void CZEBAssemblyFastenerEngagementLenDlg::ImportSpreadsheet() {
    CFastenerSheetImport import(ImportKind(), IsSecondList());
    if (!import.Read(this, GetLengthUnit())) return;
    CloseFastenerEditors(*m_grid);
    if (!import.CheckRows(this)) return;
    std::vector<CZebGridModel::Row> rows = m_grid->GetRows();
    if (import.MergeInto(this, rows, Imports())) m_grid->SetRows(std::move(rows));
}
