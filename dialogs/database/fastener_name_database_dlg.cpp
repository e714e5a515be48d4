#include "dialogs/database/fastener_name_database_dlg.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <cstdint>
#include <list>
#include <unordered_set>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "controls/database_module.h"
#include "controls/sheet_import.h"
#include "controls/zeb_button.h"
#include "database/service/data_helper.h"
#include "dialogs/database/fastener_name_database_list_ctrl.h"
#include "framework/case_fold.h"
#include "framework/ui/dialog_buttons.h"
#include "framework/ui/dialog_shape.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/pre_translate_filter.h"
#include "framework/ui/ui_service.h"

namespace {
constexpr unsigned kAddBitmap = 6014;
constexpr unsigned kDeleteBitmap = 6015;
constexpr unsigned kRenameBitmap = 6017;
constexpr std::uint32_t kGreyTransparent = 0x646464;

CZEBButton* MakeBitmapButton(QWidget* parent, int id, unsigned bitmap, std::uint32_t transparent,
                             ZebStringId tip) {
    auto* button = new CZEBButton(parent);
    SetZebControlId(button, id);
    button->SetBitmaps(bitmap, transparent);
    button->setToolTip(QString::fromStdWString(LoadLocalizedString(tip)));
    button->setFixedSize(32, 32);
    // Enter in the table belongs to OK, not to whichever bitmap button was clicked last.
    button->setAutoDefault(false);
    return button;
}

std::wstring JoinLines(const std::vector<std::wstring>& names) {
    std::wstring text;
    for (const std::wstring& name : names) {
        if (!text.empty()) text += L"\r\n";
        text += name;
    }
    return text;
}
}  // namespace

ZEBEditFastenerNameDatabaseDlg::ZEBEditFastenerNameDatabaseDlg(QWidget* parent)
    : QDialog(parent),
      m_preTranslate(new CZebPreTranslateFilter(
          this, [this](QObject*, QEvent* event) { return PreTranslateMessage(event); })) {
    EnsureZebUiService();
    setWindowTitle(QStringLiteral("Vantor"));
    new CZebDialogShape(this, kTemplateId);
    // Bitmaps come from the current resource library.
    CZebResourceScope scope;

    m_add = MakeBitmapButton(this, kAddId, kAddBitmap, kGreyTransparent, IDS_ADD_FASTENER_NAME);
    m_delete = MakeBitmapButton(this, kDeleteId, kDeleteBitmap, kGreyTransparent,
                                IDS_DELETE_FASTENER_NAMES);
    m_rename = MakeBitmapButton(this, kRenameId, kRenameBitmap, 0, IDS_RENAME_FASTENER_NAME);
    m_delete->setEnabled(false);
    m_rename->setEnabled(false);

    m_table = new CZEBFastenerNameDatabaseListCtrl(this);
    SetZebControlId(m_table, kTableId);
    m_table->setShowGrid(true);
    m_table->horizontalHeader()->setSectionsMovable(true);
    m_table->SetColumns({LoadLocalizedString(IDS_FASTENER_NAME_LIST_HEADING)});
    // Room for the 300 pixel column beside the vertical scroll bar.
    m_table->setMinimumSize(340, 360);

    QDialogButtonBox* buttons = MakeZebDialogButtons(this, [this] { OnHelp(); }).box;

    auto* tools = new QHBoxLayout;
    tools->setSpacing(2);
    tools->addWidget(m_add);
    tools->addWidget(m_delete);
    tools->addWidget(m_rename);
    tools->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(tools);
    layout->addWidget(m_table, 1);
    layout->addWidget(buttons);

    connect(m_add, &QPushButton::clicked, this, [this] { OnAdd(); });
    connect(m_delete, &QPushButton::clicked, this, [this] { OnDelete(); });
    connect(m_rename, &QPushButton::clicked, this, [this] { OnRename(); });

    // The selection decides Delete and Rename; a reset or removal changes it without a signal.
    const auto countSelection = [this] {
        m_selectedRows = m_table->GetSelectedRowCount();
        UpdateButtonStates();
    };
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            countSelection);
    connect(m_table->model(), &QAbstractItemModel::modelReset, this, countSelection);
    connect(m_table->model(), &QAbstractItemModel::rowsRemoved, this, countSelection);

    m_hotKey = new CZebHotKey(this);
    connect(m_hotKey, &CZebHotKey::Pressed, this, [this] { OnImport(); });

    Fill();
}

int ZEBEditFastenerNameDatabaseDlg::DoModal() { return exec(); }

bool ZEBEditFastenerNameDatabaseDlg::IsImportHotKeyRegistered() const {
    return m_hotKey->IsRegistered();
}

void ZEBEditFastenerNameDatabaseDlg::accept() {
    // A name still being typed is kept, as Enter would keep it.
    m_table->CommitEdit();
    done(kIdOk);
}

void ZEBEditFastenerNameDatabaseDlg::reject() { done(kIdCancel); }

void ZEBEditFastenerNameDatabaseDlg::Fill() {
    // The names belong to the database module the host loaded; without it the table stays empty.
    std::wstring moduleName;
    if (!GetLoadedDatabaseModuleName(moduleName)) return;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    std::list<std::wstring> names;
    if (!db) return;
    if (db->GetFastenerNames(names) != ZebDbOk) {
        ZebUiMessage(this, LoadLocalizedString(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        return;
    }
    std::vector<CZebGridModel::Row> rows;
    rows.reserve(names.size() + 1);
    for (std::wstring& name : names) rows.push_back({std::move(name)});
    m_table->SetRows(std::move(rows));
    m_table->AppendEmptyRowIfLastFilled();
}

void ZEBEditFastenerNameDatabaseDlg::UpdateButtonStates() {
    if (!m_table) return;
    const bool deletable = m_selectedRows >= 1 && !m_table->IsCellEditOpen();
    if (m_delete->isEnabled() != deletable) m_delete->setEnabled(deletable);
    const bool renamable = m_selectedRows == 1;
    if (m_rename->isEnabled() != renamable) m_rename->setEnabled(renamable);
}

void ZEBEditFastenerNameDatabaseDlg::OnAdd() {
    m_table->CommitEdit();
    const int row = m_table->InsertRow(m_table->GetRowCount(), L"");
    m_table->EditName(row);
}

void ZEBEditFastenerNameDatabaseDlg::OnRename() {
    const std::vector<int> rows = m_table->GetSelectedRows();
    if (rows.size() != 1) return;
    m_table->CommitEdit();
    m_table->EditName(rows.front());
}

// A name the database keeps after all must not vanish from the table unseen.
void ZEBEditFastenerNameDatabaseDlg::OnDelete() { m_table->DeleteSelectedNames(true); }

void ZEBEditFastenerNameDatabaseDlg::OnImport() {
    // Rows move under an open editor otherwise.
    m_table->CommitEdit();
    std::wstring path;
    if (!ChooseSpreadsheet(this, path)) return;
    m_importPath = path;
    m_imported.clear();
    if (!ReadImportColumns(this, path, {{L"A"}}, m_imported)) return;

    // First occurrence wins; empty values are never repeats of each other.
    std::vector<std::wstring> values;
    std::unordered_set<std::wstring> seen;
    if (!m_imported.empty()) {
        for (const std::wstring& value : m_imported.front())
            if (value.empty() || seen.insert(ZebFoldCase(value)).second) values.push_back(value);
    }

    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    std::list<std::wstring> stored;
    // Without the stored names, repeats cannot be told apart: nothing is imported.
    const bool read = db && db->GetFastenerNames(stored) == ZebDbOk;
    if (values.empty()) {
        ZebUiMessage(this, LoadLocalizedString(IDS_SHEET_NO_FASTENER_NAMES), ZebMsgIcon::Warning);
        return;
    }
    if (!db) {
        ZebUiMessage(this, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
        return;
    }
    if (!read) {
        ZebUiMessage(this, LoadLocalizedString(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        return;
    }

    std::unordered_set<std::wstring> known;
    known.reserve(stored.size() + values.size());
    for (const std::wstring& name : stored) known.insert(ZebFoldCase(name));
    std::vector<std::wstring> skipped;
    bool failed = false;
    std::vector<std::pair<size_t, std::wstring>> added;  // (row, name)
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i].empty()) continue;
        std::wstring name = ZebUpperCase(values[i]);
        // Upper case can join names that differed before ("ß" and "ss" both give "SS").
        if (!known.insert(ZebFoldCase(name)).second) {
            skipped.push_back(std::move(name));
            continue;
        }
        const ZebDbResult result = db->AddFastenerName(name);
        if (result == ZebDbExists) {
            skipped.push_back(std::move(name));  // stored meanwhile by someone else
        } else if (result != ZebDbOk) {
            failed = true;  // only names the database holds go into the table
        } else {
            added.emplace_back(i, std::move(name));
        }
    }

    if (!added.empty()) {
        // Each name goes to row i as if inserted one after the other (past the end: at the
        // end), built in one pass instead of one insertion per name.
        const std::vector<CZebGridModel::Row>& old = m_table->GetRows();
        std::vector<CZebGridModel::Row> rows;
        rows.reserve(old.size() + added.size());
        size_t next = 0;
        for (auto& [row, name] : added) {
            while (rows.size() < row && next < old.size()) rows.push_back(old[next++]);
            rows.push_back({std::move(name)});
        }
        while (next < old.size()) rows.push_back(old[next++]);
        m_table->SetRows(std::move(rows));
        m_table->AppendEmptyRowIfLastFilled();
    }

    if (failed)
        ZebUiMessage(this, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
    if (!skipped.empty())
        ZebUiMessage(this,
                     LoadLocalizedString(IDS_FASTENER_NAMES_NOT_IMPORTED) + JoinLines(skipped),
                     ZebMsgIcon::Warning);
}

void ZEBEditFastenerNameDatabaseDlg::OnHelp() {
    ZebOpenHelp(this, ModuleHelpFilePath(), kHelpTopicFastenerNameDatabase);
}

// The children go after this, and their events must not reach a dialog that is gone.
ZEBEditFastenerNameDatabaseDlg::~ZEBEditFastenerNameDatabaseDlg() {
    m_preTranslate->SetEnabled(false);
}

void ZEBEditFastenerNameDatabaseDlg::showEvent(QShowEvent* event) {
    m_preTranslate->SetEnabled(true);
    m_hotKey->Register();
    QDialog::showEvent(event);
}

void ZEBEditFastenerNameDatabaseDlg::hideEvent(QHideEvent* event) {
    m_hotKey->Unregister();
    QDialog::hideEvent(event);
}

bool ZEBEditFastenerNameDatabaseDlg::PreTranslateMessage(QEvent*) {
    if (!m_table) return false;
    // The editor opens and closes without a signal of its own. The table takes its own keys.
    UpdateButtonStates();
    return false;
}
