#include "host/editor/rule_set_editor.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLibraryInfo>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QTableWidget>
#include <QTranslator>

#include "database/service/data_helper.h"
#include "framework/location_helper.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/ui/ui_service.h"
#include "framework/unit_convertor.h"
#include "resources/resource_file.h"
#include "resources/string_ids.h"

namespace {
constexpr int kMostRecent = 8;
const char* const kRecentKey = "editor/recentFiles";
const char* const kGeometryKey = "editor/geometry";
enum Column { kRuleColumn, kSeverityColumn, kSummaryColumn, kColumns };

QString Q(const std::wstring& text) { return QString::fromStdWString(text); }
QString Q(const std::string& text) { return QString::fromStdString(text); }

QSettings EditorSettings() { return QSettings("Vantor", "vantor-rules"); }

// The severity names the rule dialogs show, from the module's resources in the user's language.
QString SeverityName(int code) {
    static const ZebStringId kIds[] = {IDS_SEVERITY_CRITICAL, IDS_SEVERITY_MAJOR,
                                       IDS_SEVERITY_MODERATE, IDS_SEVERITY_MINOR, IDS_SEVERITY_INFO};
    static const std::unique_ptr<CZebResourceLibrary> resources = [] {
        const std::wstring file = std::wstring(L"/") + kZebResourceFileName;
        CZebResourceLibrary* found = CZebResourceLibrary::Load(CLocationHelper::GetLocalizedResPath() + file);
        if (!found) found = CZebResourceLibrary::Load(CLocationHelper::GetDefaultResPath() + file);
        return std::unique_ptr<CZebResourceLibrary>(found);
    }();
    if (code < 1 || code > 5 || !resources) return {};
    return Q(resources->LoadString(kIds[code - 1]));
}

// The menu's names of the unit codes, by code.
const char* const kUnitNames[] = {
    QT_TRANSLATE_NOOP("Units", "Millimetres (mm)"),  QT_TRANSLATE_NOOP("Units", "Centimetres (cm)"),
    QT_TRANSLATE_NOOP("Units", "Metres (m)"),        QT_TRANSLATE_NOOP("Units", "Inches (in)"),
    QT_TRANSLATE_NOOP("Units", "Feet (ft)"),         QT_TRANSLATE_NOOP("Units", "Nanometres (nm)"),
    QT_TRANSLATE_NOOP("Units", "Micrometres (µm)"),  QT_TRANSLATE_NOOP("Units", "Decimetres (dm)"),
    QT_TRANSLATE_NOOP("Units", "Yards (yd)"),        QT_TRANSLATE_NOOP("Units", "Thousandths of an inch (mil)"),
    QT_TRANSLATE_NOOP("Units", "Kilometres (km)"),
};

QString UnitText(long code) {
    if (code < 0 || code >= static_cast<long>(std::size(kUnitNames))) return QString::number(code);
    return QCoreApplication::translate("Units", kUnitNames[code]);
}

int Ask(QWidget* parent, const QString& text, ZebMsgIcon icon, ZebMsgButtons buttons) {
    IZebUiService* ui = GetZebUiService();
    return ui ? ui->MessageBox(parent, L"Vantor", text.toStdWString(), icon, buttons)
              : ZebFirstButtonAnswer(buttons);
}

// A settings document to open or save as; empty when the user cancelled.
std::string ChooseSettingsFile(QWidget* parent, bool forSaving) {
    IZebUiService* ui = GetZebUiService();
    ZebOpenFileRequest request;
    request.filter = QCoreApplication::translate("CRuleSetEditor", "Settings documents|*.xml|All files|*")
                         .toStdWString();
    request.defaultExtension = L"xml";
    request.forSaving = forSaving;
    std::vector<std::wstring> paths;
    if (!ui || !ui->OpenFiles(parent, request, paths) || paths.empty()) return {};
    return ToUtf8(paths.front());
}
}  // namespace

void InstallEditorTranslations(QCoreApplication& application) {
    const QString language = Q(CLanguageUtil::GetVantorLang());
    if (language == "en") return;
    auto* own = new QTranslator(&application);
    if (own->load("vantor_editor_" + language, Q(CLocationHelper::GetLocalizedResPath())))
        application.installTranslator(own);
    auto* qt = new QTranslator(&application);
    if (qt->load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(qt);
}

CRuleSetEditor::CRuleSetEditor(const ModuleLoader& module, QWidget* parent)
    : QMainWindow(parent), m_module(module), m_document(module) {
    EnsureZebUiService();
    m_table = new QTableWidget(0, kColumns, this);
    m_table->setObjectName(kTableName);
    m_table->setHorizontalHeaderLabels({tr("Rule"), tr("Severity"), tr("Summary")});
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);
    // Enter, and a double click, activate a row.
    connect(m_table, &QTableWidget::activated, this, [this] { ConfigureCurrentRule(); });
    setCentralWidget(m_table);

    m_databaseLabel = new QLabel(this);
    m_unitLabel = new QLabel(this);
    statusBar()->addWidget(m_databaseLabel, 1);
    statusBar()->addPermanentWidget(m_unitLabel);
    BuildMenus();

    m_document.New(0);
    Refresh();
    m_table->setCurrentCell(0, 0);
    // The keyboard works the table from the start: arrows choose a rule, Enter configures it.
    m_table->setFocus();
    const QByteArray geometry = EditorSettings().value(kGeometryKey).toByteArray();
    if (geometry.isEmpty() || !restoreGeometry(geometry)) resize(960, 560);
}

CRuleSetEditor::~CRuleSetEditor() = default;

void CRuleSetEditor::BuildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New"), QKeySequence::New, this, [this] { NewDocument(); });
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { OpenDocument(); });
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    FillRecentMenu();
    file->addSeparator();
    file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { SaveDocument(); });
    file->addAction(tr("Save &As..."), QKeySequence::SaveAs, this, [this] { SaveDocumentAs(); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });

    QMenu* rules = menuBar()->addMenu(tr("&Rules"));
    rules->addAction(tr("&Configure..."), QKeySequence(Qt::CTRL | Qt::Key_E), this,
                     [this] { ConfigureCurrentRule(); });
    m_addRuleMenu = rules->addMenu(tr("&Add Rule"));
    rules->addAction(tr("&Remove Rule"), QKeySequence::Delete, this, [this] { RemoveCurrentRule(); });
    rules->addAction(tr("Reset to &Defaults"), this, [this] { ResetCurrentRule(); });

    QMenu* units = menuBar()->addMenu(tr("&Units"));
    m_units = new QActionGroup(this);
    for (int i = 0; const ZebLengthUnit* unit = CZEBUnitConvertor::UnitAt(i); ++i) {
        QAction* action = units->addAction(UnitText(unit->code));
        action->setCheckable(true);
        action->setData(static_cast<int>(unit->code));
        m_units->addAction(action);
        const int code = static_cast<int>(unit->code);
        connect(action, &QAction::triggered, this, [this, code] { ChangeUnit(code); });
    }

    QMenu* database = menuBar()->addMenu(tr("&Database"));
    QAction* fasteners = database->addAction(tr("&Fastener Database..."), this, [this] { OpenFastenerDatabase(); });
    fasteners->setEnabled(m_module.LaunchFastenerDatabaseDlg != nullptr);
}

void CRuleSetEditor::FillRecentMenu() {
    m_recentMenu->clear();
    const QStringList recent = EditorSettings().value(kRecentKey).toStringList();
    for (const QString& path : recent)
        m_recentMenu->addAction(path, this, [this, path] {
            if (MaySetDocumentAside()) OpenFile(path.toStdString());
        });
    m_recentMenu->setEnabled(!recent.isEmpty());
}

void CRuleSetEditor::FillAddRuleMenu() {
    m_addRuleMenu->clear();
    for (const auto& [name, displayName] : m_document.MissingRules())
        m_addRuleMenu->addAction(Q(displayName), this, [this, name = name] {
            if (m_document.AddRule(name)) {
                Refresh();
                m_table->setCurrentCell(m_table->rowCount() - 1, 0);
            }
        });
    m_addRuleMenu->setEnabled(!m_addRuleMenu->isEmpty());
}

void CRuleSetEditor::RememberRecent(const std::string& path) {
    const QString full = QFileInfo(Q(path)).absoluteFilePath();
    QSettings settings = EditorSettings();
    QStringList recent = settings.value(kRecentKey).toStringList();
    recent.removeAll(full);
    recent.prepend(full);
    while (recent.size() > kMostRecent) recent.removeLast();
    settings.setValue(kRecentKey, recent);
    FillRecentMenu();
}

void CRuleSetEditor::ShowRow(int row) {
    const RuleRow rule = m_document.Row(static_cast<size_t>(row));
    auto cell = [&](int column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        if (!rule.known) {
            // Kept in the document as it stands; nothing of this module can open it.
            item->setForeground(m_table->palette().color(QPalette::Disabled, QPalette::Text));
            item->setToolTip(tr("No rule of this module reads this rule; it is kept as it stands."));
        }
        m_table->setItem(row, column, item);
    };
    cell(kRuleColumn, rule.known ? Q(rule.displayName) : Q(rule.storedName));
    cell(kSeverityColumn, rule.known ? SeverityName(rule.severity) : QString());
    cell(kSummaryColumn, rule.known ? Q(rule.summary) : QString());
}

void CRuleSetEditor::Refresh() {
    const int current = m_table->currentRow();
    m_table->setRowCount(static_cast<int>(m_document.RuleCount()));
    for (int row = 0; row < m_table->rowCount(); ++row) ShowRow(row);
    m_table->resizeColumnToContents(kRuleColumn);
    m_table->resizeColumnToContents(kSeverityColumn);
    if (current >= 0 && current < m_table->rowCount()) m_table->setCurrentCell(current, 0);
    // Filled here, not when shown: a submenu that is disabled is never shown.
    FillAddRuleMenu();

    const QString name = m_document.Path().empty() ? tr("Untitled") : QFileInfo(Q(m_document.Path())).fileName();
    setWindowTitle(name + "[*] - " + tr("Vantor Rules"));
    setWindowModified(m_document.IsModified());
    const int unit = m_document.Unit();
    for (QAction* action : m_units->actions()) action->setChecked(action->data().toInt() == unit);
    m_unitLabel->setText(tr("Unit: %1").arg(UnitText(unit)));
    IDatabaseCollector* database = zeb_db::ZEBDataHelper::getInstance();
    m_databaseLabel->setText(database ? tr("Database: %1").arg(Q(database->GetDatabasePath()))
                                      : tr("No database"));
}

void CRuleSetEditor::ShowProblem(const std::string& text) {
    Ask(this, Q(text), ZebMsgIcon::Error, ZebMsgButtons::Ok);
}

bool CRuleSetEditor::MaySetDocumentAside() {
    if (!m_document.IsModified()) return true;
    const QString name = m_document.Path().empty() ? tr("Untitled") : Q(m_document.Path());
    switch (Ask(this, tr("%1 has unsaved changes. Save them?").arg(name), ZebMsgIcon::Question,
                ZebMsgButtons::SaveDiscardCancel)) {
    case ZebIdYes: return SaveDocument();
    case ZebIdNo: return true;
    default: return false;
    }
}

bool CRuleSetEditor::OpenFile(const std::string& path) {
    std::string message;
    if (!m_document.Open(path, message)) {
        ShowProblem(message);
        return false;
    }
    RememberRecent(path);
    Refresh();
    m_table->setCurrentCell(0, 0);
    return true;
}

void CRuleSetEditor::NewDocument() {
    if (!MaySetDocumentAside()) return;
    m_document.New(0);
    Refresh();
    m_table->setCurrentCell(0, 0);
}

void CRuleSetEditor::OpenDocument() {
    if (!MaySetDocumentAside()) return;
    const std::string path = ChooseSettingsFile(this, false);
    if (!path.empty()) OpenFile(path);
}

bool CRuleSetEditor::SaveDocument() {
    if (m_document.Path().empty()) return SaveDocumentAs();
    std::string message;
    const bool saved = m_document.Save(m_document.Path(), message);
    if (!saved) ShowProblem(message);
    Refresh();
    return saved;
}

bool CRuleSetEditor::SaveDocumentAs() {
    const std::string path = ChooseSettingsFile(this, true);
    if (path.empty()) return false;
    std::string message;
    const bool saved = m_document.Save(path, message);
    if (saved) RememberRecent(path);
    else ShowProblem(message);
    Refresh();
    return saved;
}

void CRuleSetEditor::ConfigureCurrentRule() {
    const int row = m_table->currentRow();
    if (row < 0) return;
    switch (m_document.Configure(static_cast<size_t>(row))) {
    case ConfigureResult::Ok: Refresh(); break;
    case ConfigureResult::NoDialog: ShowProblem(tr("This rule has no dialog to configure it.").toStdString()); break;
    case ConfigureResult::NotRead:
        ShowProblem(tr("No rule of this module reads this rule; it is kept as it stands.").toStdString());
        break;
    default:
        // Cancel: some rules rebuild their summary whatever the answer.
        ShowRow(row);
        break;
    }
}

void CRuleSetEditor::RemoveCurrentRule() {
    const int row = m_table->currentRow();
    if (row < 0) return;
    m_document.RemoveRule(static_cast<size_t>(row));
    Refresh();
    m_table->setCurrentCell(std::min(row, m_table->rowCount() - 1), 0);
}

void CRuleSetEditor::ResetCurrentRule() {
    const int row = m_table->currentRow();
    if (row >= 0 && m_document.ResetRule(static_cast<size_t>(row))) Refresh();
}

void CRuleSetEditor::ChangeUnit(int unit) {
    std::string message;
    if (!m_document.ConvertUnits(unit, message)) ShowProblem(message);
    Refresh();
}

void CRuleSetEditor::OpenFastenerDatabase() {
    if (m_module.LaunchFastenerDatabaseDlg) m_module.LaunchFastenerDatabaseDlg(this);
    Refresh();
}

void CRuleSetEditor::closeEvent(QCloseEvent* event) {
    if (!MaySetDocumentAside()) {
        event->ignore();
        return;
    }
    EditorSettings().setValue(kGeometryKey, saveGeometry());
    event->accept();
}
