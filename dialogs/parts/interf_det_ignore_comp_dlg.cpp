#include "dialogs/parts/interf_det_ignore_comp_dlg.h"

#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "app/assembly_rules_app.h"
#include "database/service/data_helper.h"
#include "dialogs/common/rule_dialog.h"
#include "dialogs/parts/zeb_asm_interf_ignore_comp_list_ctrl.h"
#include "framework/case_fold.h"
#include "framework/ui/control_id.h"
#include "framework/ui/ui_service.h"
#include "util/number_text.h"

namespace {
constexpr int kIgnoreTableWidth = 560;
constexpr int kNameColumn = 1;

bool SameNamesIgnoringCase(const std::list<std::wstring>& a, const std::list<std::wstring>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const std::wstring& x, const std::wstring& y) { return ZebEqualsNoCase(x, y); });
}

// Column "A" into the name column, below a span kept empty for the list it replaces.
const ComponentImportLayout kIgnoreImportLayout{
    .columns = {{L"A"}},
    .leastRows = ZEBASMInterfDetIgnoreCompDlg::kSpareRows,
    .rowsBelow = ZEBASMInterfDetIgnoreCompDlg::kSpareRows,
    .stopAtEmptyName = true};
}  // namespace

ZEBASMInterfDetIgnoreCompDlg::ZEBASMInterfDetIgnoreCompDlg(CZebRule* rule, QWidget* parent)
    : QWidget(parent),
      m_rule(rule),
      m_table(WithZebControlId(new ZEBASMInterfIgnoreCompListCtrl(this), kTableId)) {
    m_table->setMinimumHeight(300);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    auto* hint = new QLabel(LocalizedText(IDS_PART_TABLE_HINT), this);
    hint->setWordWrap(true);
    layout->addWidget(hint);
}

void ZEBASMInterfDetIgnoreCompDlg::OnInitDialog() {
    if (!m_rule) return;
    m_table->SetUpColumns({L"", LoadLocalizedString(IDS_COMPONENT_NAME_HEADING)}, kIgnoreTableWidth,
                          0);

    std::list<std::wstring> names;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    m_databaseAvailable = db && db->GetInterferenceIgnoreList(names) == ZebDbOk;
    if (m_databaseAvailable) m_current = std::move(names);
    m_table->setEnabled(m_databaseAvailable);

    // The names on top, in lower case as the check compares them, then the spare rows.
    std::vector<CZebGridModel::Row> rows;
    if (m_databaseAvailable && !m_current.empty()) {
        rows.resize(m_current.size() + 1);
        size_t i = 0;
        for (const std::wstring& name : m_current) {
            if (!name.empty()) rows[i] = {L"", ZebFoldCase(name)};
            ++i;
        }
    }
    rows.resize(rows.size() + kSpareRows);
    m_table->SetRows(std::move(rows));
    m_loaded = m_current;

    if (!m_databaseAvailable) {
        m_unavailable = WithZebControlId(
            new QLabel(LocalizedText(IDS_IGNORE_LIST_UNAVAILABLE), this), kUnavailableId);
        m_unavailable->setAlignment(Qt::AlignVCenter | Qt::AlignLeft);
        m_unavailable->setWordWrap(true);
        static_cast<QVBoxLayout*>(layout())->insertWidget(1, m_unavailable);
    }
}

std::list<std::wstring> ZEBASMInterfDetIgnoreCompDlg::ReadNames() const {
    std::list<std::wstring> names;
    for (const CZebGridModel::Row& row : m_table->GetRows()) {
        const std::wstring name = TrimBlanks(CZebGridModel::CellOf(row, kNameColumn));
        if (!name.empty()) names.push_back(ZebFoldCase(name));
    }
    return names;
}

bool ZEBASMInterfDetIgnoreCompDlg::OnOK() {
    if (!m_databaseAvailable) return true;
    std::wstring text;
    m_table->EndCellEdit(text);
    m_current = ReadNames();
    if (SameNamesIgnoringCase(m_current, m_loaded)) return true;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db) return false;
    if (db->SaveInterferenceIgnoreList(m_current) != ZebDbOk) {
        ZebUiMessage(window(), LoadLocalizedString(IDS_IGNORE_LIST_NOT_SAVED), ZebMsgIcon::Warning,
                     ZebMsgButtons::Ok);
        return false;
    }
    m_loaded = m_current;
    return true;
}

void ZEBASMInterfDetIgnoreCompDlg::ImportSpreadsheet() {
    if (!m_databaseAvailable) return;
    // The rows of the list it replaces are emptied too, however long it was.
    ImportComponentTable(window(), *m_table, kIgnoreImportLayout, m_import,
                         static_cast<int>(m_current.size()) + 1);
}
