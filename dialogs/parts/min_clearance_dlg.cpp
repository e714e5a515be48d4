#include "dialogs/parts/min_clearance_dlg.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/double_edit_ex.h"
#include "controls/sheet_export.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "dialogs/common/parameter_controls.h"
#include "dialogs/common/severity_list.h"
#include "framework/ui/control_id.h"
#include "rules/rule_record.h"
#include "util/number_text.h"
#include "util/rule_params.h"

namespace {
constexpr long kGeneralClearance = MinClearanceParams::kGeneral.id;
constexpr long kPairsSwitch = MinClearanceParams::kPairsSwitch.id;
constexpr long kPairTable = MinClearanceParams::kPairs.id;
constexpr long kSameSubassembly = MinClearanceParams::kSameSubassembly.id;
constexpr long kTouching = MinClearanceParams::kTouching.id;
constexpr int kPairTableWidth = 600;
constexpr int kFirstPart = 1;
constexpr int kSecondPart = 2;
constexpr int kClearance = 3;

// Columns "A", "B" and "C" (a number) into parts and clearance; every row emptied first.
const ComponentImportLayout kPairImportLayout{
    .columns = SheetColumnsOf(MinClearanceParams::kPairs.columns),
    .rowsBelow = CZEBAssemblyMinClearanceBetPartsDlg::kSpareRows,
    .emptyEveryRow = true,
    .lengthColumn = 2,
    .logSuffix = L"MinClearance_log.txt"};

double SwitchValue(const QAbstractButton& box) { return box.isChecked() ? 1.0 : 0.0; }
}  // namespace

CZEBAssemblyMinClearanceBetPartsDlg::CZEBAssemblyMinClearanceBetPartsDlg(
    CZebRule* rule, const std::wstring& unitText)
    : CZEBRuleDialog(rule, unitText, kTemplateId, kImageId),
      m_severity(WithZebControlId(new CWrapperComboCtrl(Body()), kSeverityId)),
      m_clearanceSwitch(WithZebControlId(
          new QCheckBox(LocalizedText(IDS_GENERAL_CLEARANCE_CHECK), Body()), kClearanceSwitchId)),
      m_clearance(WithZebControlId(new CDoubleEditEx(Body()), kClearanceId)),
      m_unitLabel(WithZebControlId(new QLabel(Body()), kUnitLabelId)),
      m_pairsSwitch(WithZebControlId(new QCheckBox(LocalizedText(IDS_PART_PAIRS_CHECK), Body()),
                                     kPairsSwitchId)),
      m_table(WithZebControlId(new CZEBAsmRuleListCtrl(Body()), kTableId)),
      m_sameSubassembly(
          WithZebControlId(new QRadioButton(LocalizedText(IDS_CLEARANCE_SAME_SUBASSEMBLY), Body()),
                           kSameSubassemblyId)),
      m_otherSubassemblies(WithZebControlId(
          new QRadioButton(LocalizedText(IDS_CLEARANCE_OTHER_SUBASSEMBLIES), Body()),
          kOtherSubassembliesId)),
      m_touching(WithZebControlId(new QCheckBox(LocalizedText(IDS_REPORT_TOUCHING_PARTS), Body()),
                                  kTouchingId)),
      m_hint(WithZebControlId(new QLabel(Body()), kHintId)) {
    setWindowTitle(QString::fromStdWString(rule ? rule->DisplayName : std::wstring()));
    SetHelpTopic(kHelpTopicMinimumClearance);
    UseTable(m_table, TableSheetKind::PartPairs, kFirstPart, kClearance - kFirstPart + 1);
    m_table->setMinimumHeight(280);
    m_hint->setWordWrap(true);

    auto* general = new QHBoxLayout;
    general->addWidget(m_clearanceSwitch);
    general->addWidget(m_clearance);
    general->addWidget(m_unitLabel);
    general->addStretch();
    auto* layout = new QVBoxLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(SeverityRow(Body(), m_severity));
    layout->addLayout(general);
    layout->addWidget(m_sameSubassembly);
    layout->addWidget(m_otherSubassemblies);
    layout->addWidget(m_touching);
    layout->addWidget(m_pairsSwitch);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_hint);

    connect(m_clearance, &QLineEdit::textChanged, this, [this] { TakeBackTooLarge(); });
    UseImportKey();
}

void CZEBAssemblyMinClearanceBetPartsDlg::LoadFromRule(CZebRule& rule) {
    const ZebTypedParam<double>* general = FindTyped<double>(rule, kGeneralClearance);
    if (!general) return;
    m_clearanceSwitch->setChecked(general->values.GetSize() > 0 && SwitchIsOn(general->values[0]));
    if (general->values.GetSize() > 1)
        m_clearance->setText(QString::fromStdWString(FormatNumber(general->values[1])));
    m_lastAcceptedClearance = m_clearance->text();
    m_unitLabel->setText(QString::fromStdWString(GetUnitText()));
    LoadTable(rule);

    const ZebTypedParam<double>* same = FindTyped<double>(rule, kSameSubassembly);
    if (!same) return;
    const bool sameOn = same->values.GetSize() > 0 && SwitchIsOn(same->values[0]);
    m_sameSubassembly->setChecked(sameOn);
    m_otherSubassemblies->setChecked(!sameOn);
    LoadSeverityList(*m_severity, rule.Severity);
    const ZebTypedParam<bool>* touching = FindTyped<bool>(rule, kTouching);
    if (!touching) return;
    LoadSwitchBox(*m_touching, *touching);
    m_hint->setText(LocalizedText(IDS_PART_TABLE_HINT));
}

void CZEBAssemblyMinClearanceBetPartsDlg::LoadTable(CZebRule& rule) {
    const ZebTypedParam<double>* pairsSwitch = FindTyped<double>(rule, kPairsSwitch);
    const ZebTypedParam<ZebRow>* pairs = FindTyped<ZebRow>(rule, kPairTable);
    if (!pairsSwitch || !pairs) return;
    m_pairsSwitch->setChecked(pairsSwitch->values.GetSize() > 0 &&
                              SwitchIsOn(pairsSwitch->values[0]));
    m_table->SetUpColumns(
        {L"", LoadLocalizedString(IDS_COMPONENT_1_HEADING),
         LoadLocalizedString(IDS_COMPONENT_2_HEADING), LoadLocalizedString(IDS_CLEARANCE_HEADING)},
        kPairTableWidth, 0);
    // Part files chosen in the table are named as the rule names parts.
    m_table->SetMode(CZEBAsmRuleListCtrl::Mode::PartPairs, PartFileNaming::DisplayName);
    OfferTableExport(*m_table, [this] { ExportTable(); });
    const int stored = pairs->values.GetSize();
    std::vector<CZebGridModel::Row> rows(static_cast<size_t>(stored + kSpareRows));
    for (int i = 0; i < stored; ++i) {
        const ZebRow& row = pairs->values[i];
        if (row.size() >= MinClearanceParams::kPairs.columns.count && !row[0].empty() &&
            !row[1].empty())
            rows[static_cast<size_t>(i)] = {L"", row.Cell(0), row.Cell(1), row.Cell(2)};
    }
    m_table->SetRows(std::move(rows));
}

bool CZEBAssemblyMinClearanceBetPartsDlg::TableLoaded() const {
    return m_table->GetColumnCount() > 0;
}

void CZEBAssemblyMinClearanceBetPartsDlg::TakeBackTooLarge() {
    if (ToDouble(m_clearance->text().toStdWString()) > kLargestClearance)
        m_clearance->setText(m_lastAcceptedClearance);
}

std::optional<ZebRefusal> CZEBAssemblyMinClearanceBetPartsDlg::Validate(CZebRule& rule) {
    if (!rule.FindParameterInArray(kGeneralClearance)) return ZebRefusal{};
    if (!TableLoaded()) return std::nullopt;
    const std::vector<CZebGridModel::Row>& rows = m_table->GetRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::wstring& first = CZebGridModel::CellOf(rows[i], kFirstPart);
        const std::wstring& second = CZebGridModel::CellOf(rows[i], kSecondPart);
        if (first.empty() && second.empty()) continue;
        if (first.empty() || second.empty() || CZebGridModel::CellOf(rows[i], kClearance).empty())
            return RowRefusal(*m_table, i, IDS_ROW_INCOMPLETE_AT);
    }
    return std::nullopt;
}

void CZEBAssemblyMinClearanceBetPartsDlg::StoreIntoRule(CZebRule& rule) {
    ZebTypedParam<double>& general = *FindTyped<double>(rule, kGeneralClearance);
    const double on = SwitchValue(*m_clearanceSwitch);
    const double clearance = ReadNumberField(*m_clearance);
    // The switch and the clearance are one pair of values; a list of another length is not ours.
    if (general.values.IsEmpty()) {
        general.values.Add(on);
        general.values.Add(clearance);
    } else if (general.values.GetSize() == 2) {
        general.values[0] = on;
        general.values[1] = clearance;
    }
    if (ZebTypedParam<double>* same = FindTyped<double>(rule, kSameSubassembly))
        StoreFirstValue(*same, SwitchValue(*m_sameSubassembly), LongerList::FirstReplaced);
    StoreSeverityList(*m_severity, rule.Severity);
    if (ZebTypedParam<bool>* touching = FindTyped<bool>(rule, kTouching))
        StoreSwitchBox(*m_touching, *touching);
    if (TableLoaded()) StoreTable(rule);
}

void CZEBAssemblyMinClearanceBetPartsDlg::StoreTable(CZebRule& rule) {
    StoreFirstValue(*FindTyped<double>(rule, kPairsSwitch), SwitchValue(*m_pairsSwitch),
                    LongerList::FirstReplaced);
    ZebTypedParam<ZebRow>& pairs = *FindTyped<ZebRow>(rule, kPairTable);
    pairs.values.RemoveAll();
    for (const CZebGridModel::Row& row : m_table->GetRows()) {
        const std::wstring& first = CZebGridModel::CellOf(row, kFirstPart);
        const std::wstring& second = CZebGridModel::CellOf(row, kSecondPart);
        if (!first.empty() || !second.empty())
            pairs.values.Add(ZebRow{first, second, CZebGridModel::CellOf(row, kClearance)});
    }
}

void CZEBAssemblyMinClearanceBetPartsDlg::ImportSpreadsheet() {
    if (!TableLoaded()) return;
    ImportComponentTable(this, *m_table, kPairImportLayout, m_import, 0, GetLengthUnit());
}
