#include "host/editor/rule_set_editor.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QUndoStack>
#include <QVBoxLayout>
#include <map>
#include <optional>
#include <span>

#include "app/help_topics.h"
#include "database/service/data_helper.h"
#include "framework/case_fold.h"
#include "framework/location_helper.h"
#include "framework/param_storage.h"
#include "framework/resource_library.h"
#include "framework/text_convert.h"
#include "framework/ui/ui_service.h"
#include "framework/unit_convertor.h"
#include "framework/zeb_rule.h"
#include "host/editor/check_assembly.h"
#include "host/editor/qt_text.h"
#include "host/param_text.h"
#include "host/settings_diff.h"
#include "host/settings_file.h"
#include "resources/resource_file.h"
#include "resources/string_ids.h"
#include "util/number_text.h"
#include "util/rule_params.h"
#include "util/string_table.h"

namespace {
constexpr int kMostRecent = 8;
const char* const kRecentKey = "editor/recentFiles";
const char* const kGeometryKey = "editor/geometry";
const char* const kSplitterKey = "editor/splitter";
enum Column { kRuleColumn, kSeverityColumn, kSummaryColumn, kColumns };

QSettings EditorSettings() { return QSettings("Vantor", "vantor-rules"); }

// The module's resource library of the user's language, else the English one; or the English one.
// Looked up by folder each time, so that a change of language is seen.
const CZebResourceLibrary* ModuleResources(bool english) {
    static std::map<std::wstring, std::unique_ptr<CZebResourceLibrary>> loaded;
    const std::wstring file = std::wstring(L"/") + kZebResourceFileName;
    for (const std::wstring& folder :
         {english ? CLocationHelper::GetDefaultResPath() : CLocationHelper::GetLocalizedResPath(),
          CLocationHelper::GetDefaultResPath()}) {
        auto found = loaded.find(folder);
        if (found == loaded.end())
            found = loaded
                        .emplace(folder, std::unique_ptr<CZebResourceLibrary>(
                                             CZebResourceLibrary::Load(folder + file)))
                        .first;
        if (found->second) return found->second.get();
    }
    return nullptr;
}

// The severity names the rule dialogs show, from the module's resources in the user's language.
QString SeverityText(int code) {
    static const ZebStringId kIds[] = {IDS_SEVERITY_CRITICAL, IDS_SEVERITY_MAJOR,
                                       IDS_SEVERITY_MODERATE, IDS_SEVERITY_MINOR,
                                       IDS_SEVERITY_INFO};
    const CZebResourceLibrary* resources = ModuleResources(false);
    if (code < 1 || code > 5 || !resources) return {};
    return Q(resources->LoadString(kIds[code - 1]));
}

// The help section of the rule with the identity name `name`; the rule sets' section for others.
std::wstring HelpTopic(const std::wstring& name) {
    if (const CZebResourceLibrary* english = ModuleResources(true))
        for (const ZebRuleHelpTopic& topic : kRuleHelpTopics)
            if (ZebEqualsNoCase(english->LoadString(topic.nameId), name)) return topic.topic;
    return kHelpTopicRuleSets;
}

std::wstring HelpFile() {
    const std::wstring file = L"/vantor.html";
    const std::wstring localized = CLocationHelper::GetLocalizedResPath() + file;
    return QFileInfo::exists(Q(localized)) ? localized
                                           : CLocationHelper::GetDefaultResPath() + file;
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
    request.filter = QCoreApplication::translate(
                         "CRuleSetEditor", "Settings documents|*.vantor.xml;*.xml|All files|*")
                         .toStdWString();
    // A name without an extension gets ".vantor.xml", by which every file manager knows a settings
    // document and opens it here; "*.xml" alone is plain XML to most of them.
    request.defaultExtension = L"vantor.xml";
    request.forSaving = forSaving;
    std::vector<std::wstring> paths;
    if (!ui || !ui->OpenFiles(parent, request, paths) || paths.empty()) return {};
    return ToUtf8(paths.front());
}

QString OffText() { return CRuleSetEditor::tr("(off)"); }

// What the rule's switch means, or why it has none, for the list's tooltip and the details pane.
QString SwitchText(const CZebRule& rule) {
    if (!RuleHasSwitch(rule))
        return CRuleSetEditor::tr(
                   "The settings hold no status for \"%1\": it is always checked and cannot be "
                   "switched off.")
            .arg(Q(rule.DisplayName));
    return RuleInUse(rule)
               ? CRuleSetEditor::tr("In use: checked by an assembly check.")
               : CRuleSetEditor::tr(
                     "Switched off: kept with its values, but not checked by an assembly check.");
}

// The same for any row: a rule of another module is kept as it stands.
QString RowStateText(const CZebRule* rule) {
    return rule ? SwitchText(*rule)
                : CRuleSetEditor::tr(
                      "No rule of this module reads this rule; it is kept as it stands.");
}

// The module's string `id` in the user's language, without the colon that ends a dialog's label.
QString LabelText(ZebStringId id) {
    const CZebResourceLibrary* resources = ModuleResources(false);
    QString text = resources ? Q(resources->LoadString(id)) : QString();
    while (text.endsWith(':') || text.endsWith(' ')) text.chop(1);
    return text;
}

// The parameters the module lists for `rule`, found by its stored name; none for another rule.
std::span<const ParamSpec> ParamSpecsOf(const CZebRule& rule) {
    if (const CZebResourceLibrary* english = ModuleResources(true))
        for (const RuleParamList& list : kRuleParamLists)
            if (ZebEqualsNoCase(english->LoadString(list.name), rule.Name)) return list.params;
    return {};
}

// The name the rule's dialog gives a parameter; its id where the dialog names it nowhere.
QString ParamName(const ParamSpec* spec, long id) {
    const QString label = spec && spec->label ? LabelText(spec->label) : QString();
    return label.isEmpty() ? CRuleSetEditor::tr("Parameter %1").arg(id) : label;
}

// The symbol of what a value measures in the rule's length unit; empty for plain numbers.
QString UnitSymbol(ParamUnit unit, long code) {
    const ZebLengthUnit* found = CZEBUnitConvertor::FindUnit(code);
    if (unit == ParamUnit::None) return {};
    const QString symbol = found ? QString::fromUtf8(found->symbol) : UnitText(code);
    return unit == ParamUnit::Volume ? symbol + QString::fromUtf8("³") : symbol;
}

// Whether the switch of `p` is on; none when nothing switches it or its first value is missing.
std::optional<bool> SwitchedOn(const CZebParamStorage& p, ParamSwitch by) {
    const ZebTypedParamBase& base = *p.GetParam();
    if (by == ParamSwitch::Enabled) return base.status;
    if (by == ParamSwitch::Criteria) return base.criteriaStatus;
    if (by != ParamSwitch::FirstValue) return std::nullopt;
    if (const ZebTypedParam<bool>* flags = p.As<bool>(); flags && flags->values.GetSize() > 0)
        return flags->values[0];
    if (const ZebTypedParam<double>* numbers = p.As<double>();
        numbers && numbers->values.GetSize() > 0)
        return numbers->values[0] != 0.0;
    return std::nullopt;
}

// The values from the `from`th on, numbers written as the rules' dialogs write them.
QString ShownValues(const CZebParamStorage& p, size_t from) {
    const ZebTypedParam<double>* numbers = p.As<double>();
    if (!numbers) return Q(ParamValuesText(p, from));
    QStringList texts;
    for (auto i = static_cast<int32_t>(from); i < numbers->values.GetSize(); ++i)
        texts << Q(FormatNumber(numbers->values[i]));
    return texts.join(' ');
}

// The rows of a table parameter, or of the table a text parameter encodes.
std::vector<QStringList> TableRows(const CZebParamStorage& p) {
    std::vector<QStringList> rows;
    if (const ZebTypedParam<ZebRow>* table = p.As<ZebRow>()) {
        for (const ZebRow& row : table->values) {
            QStringList cells;
            for (std::wstring_view cell : row)
                cells << QString::fromWCharArray(cell.data(), static_cast<qsizetype>(cell.size()));
            rows.push_back(cells);
        }
    } else if (const ZebTypedParam<std::wstring>* text = p.As<std::wstring>()) {
        std::vector<StringTableRow> decoded;
        for (const std::wstring& value : text->values) CZEBStringTableParser::Parse(value, decoded);
        for (const StringTableRow& row : decoded)
            rows.push_back({Q(row.Col1), Q(row.Col2), Q(row.Col3), Q(row.Col4)});
    }
    return rows;
}

// A table's rows under the headings its dialog gives them; a length column names its unit.
QString TableHtml(const ParamSpec& spec, const std::vector<QStringList>& rows, long unit) {
    QString html = "<table cellspacing=\"0\" cellpadding=\"3\" border=\"1\"><tr>";
    for (size_t i = 0; i < spec.headings.count; ++i) {
        const ParamHeading& heading = spec.headings.headings[i];
        QString text = heading.id ? LabelText(heading.id) : QString::fromWCharArray(heading.fixed);
        if (spec.columns.cells[i] == ParamCell::Length)
            text += " (" + UnitSymbol(ParamUnit::Length, unit) + ")";
        html += "<th>" + text.toHtmlEscaped() + "</th>";
    }
    html += "</tr>";
    for (const QStringList& row : rows) {
        html += "<tr>";
        for (const QString& cell : row) html += "<td>" + cell.toHtmlEscaped() + "</td>";
        html += "</tr>";
    }
    return html + "</table>";
}

// One parameter as "name: setting": its switch, its operator and values with their unit, or the
// number of its table's rows followed by the rows.
QString ParamHtml(const CZebParamStorage& p, const ParamSpec* spec, long unit) {
    const ParamSwitch by = spec ? spec->switchedBy : ParamSwitch::None;
    QStringList setting;
    if (const std::optional<bool> on = SwitchedOn(p, by))
        setting << (*on ? CRuleSetEditor::tr("on") : CRuleSetEditor::tr("off"));
    const int32_t op = p.GetParam()->op;
    const bool table = spec && spec->columns.count > 0;
    QString tableHtml;
    if (table) {
        const std::vector<QStringList> rows = TableRows(p);
        if (p.GetType() == ZebType_Row && op != ZebOp_Equal)
            setting << (op == ZebOp_Range ? LabelText(IDS_OPERATOR_BETWEEN)
                                          : Q(ParamOperatorText(p)));
        setting << CRuleSetEditor::tr("%n row(s)", nullptr, static_cast<int>(rows.size()));
        if (!rows.empty()) tableHtml = TableHtml(*spec, rows, unit);
    } else {
        const QString values = ShownValues(p, by == ParamSwitch::FirstValue ? 1 : 0);
        if (!values.isEmpty()) {
            const QString symbol = UnitSymbol(spec ? spec->unit : ParamUnit::None, unit);
            setting << Q(ParamOperatorText(p)) + " " + values +
                           (symbol.isEmpty() ? QString() : " " + symbol);
        }
    }
    const QString line =
        CRuleSetEditor::tr("%1: %2").arg(ParamName(spec, p.GetParam()->id), setting.join(", "));
    return "<p>" + line.toHtmlEscaped() + "</p>" + tableHtml;
}

// The rule's values as the details pane shows them: one line per parameter named as its dialog
// names it, a table's rows below its line. A rule switched off is shown in `offColor`.
QString DetailsHtml(const CZebRule& rule, const QString& unit, const QColor& offColor) {
    const bool off = !RuleInUse(rule);
    QString html =
        "<h3>" + (Q(rule.DisplayName) + (off ? " " + OffText() : QString())).toHtmlEscaped() +
        "</h3><p>" +
        CRuleSetEditor::tr("Severity: %1").arg(SeverityText(rule.Severity)).toHtmlEscaped() +
        "<br>" + SwitchText(rule).toHtmlEscaped() + "<br>" +
        CRuleSetEditor::tr("Lengths in %1").arg(unit).toHtmlEscaped() + "</p><p>" +
        Q(rule.Summary).toHtmlEscaped() + "</p>";
    const std::span<const ParamSpec> specs = ParamSpecsOf(rule);
    for (const CZebParamStorage* p : rule.ParamArray)
        html +=
            ParamHtml(*p, FindParamSpec(specs, p->GetParam()->id), rule.CurrentUnits.LengthUnit);
    return off ? "<div style=\"color:" + offColor.name() + "\">" + html + "</div>" : html;
}

// Chooses rules from a list, all chosen at first; empty when cancelled.
std::vector<std::wstring> ChooseRules(
    QWidget* parent, const QString& heading,
    const std::vector<std::pair<std::wstring, std::wstring>>& rules) {
    QDialog dialog(parent);
    dialog.setWindowTitle(CRuleSetEditor::tr("Import Rules"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* label = new QLabel(heading, &dialog);
    label->setWordWrap(true);
    auto* list = new QListWidget(&dialog);
    list->setObjectName(CRuleSetEditor::kImportListName);
    label->setBuddy(list);
    for (const auto& [name, displayName] : rules) {
        auto* item = new QListWidgetItem(Q(displayName), list);
        item->setData(Qt::UserRole, Q(name));
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    list->setCurrentRow(0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(label);
    layout->addWidget(list);
    layout->addWidget(buttons);
    list->setFocus();
    std::vector<std::wstring> chosen;
    if (dialog.exec() != QDialog::Accepted) return chosen;
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->checkState() == Qt::Checked)
            chosen.push_back(list->item(i)->data(Qt::UserRole).toString().toStdWString());
    return chosen;
}
}  // namespace

// One change of the document, undone and redone as whole documents: every kind of change goes
// back the same way, and a rule's values come back exactly as the module wrote them.
class CSnapshotCommand : public QUndoCommand {
public:
    CSnapshotCommand(CRuleSetEditor& editor, const QString& text, std::string before,
                     std::string after)
        : QUndoCommand(text),
          m_editor(editor),
          m_before(std::move(before)),
          m_after(std::move(after)) {}
    void undo() override { m_editor.Restore(m_before); }
    void redo() override {
        if (m_done) m_editor.Restore(m_after);
        m_done = true;  // the change itself was made before the command was pushed
    }

private:
    CRuleSetEditor& m_editor;
    std::string m_before, m_after;
    bool m_done = false;
};

CRuleSetEditor::CRuleSetEditor(const ModuleLoader& module, QWidget* parent)
    : QMainWindow(parent), m_module(module), m_document(module) {
    EnsureZebUiService();
    m_undo = new QUndoStack(this);
    connect(m_undo, &QUndoStack::cleanChanged, this, [this](bool clean) {
        m_document.SetModified(!clean);
        setWindowModified(!clean);
    });

    m_filter = new QLineEdit(this);
    m_filter->setObjectName(kFilterName);
    m_filter->setPlaceholderText(tr("Filter rules by name (Ctrl+F)"));
    m_filter->setClearButtonEnabled(true);
    connect(m_filter, &QLineEdit::textChanged, this, [this] { ApplyFilter(); });
    // Down or Enter in the filter goes on to the first rule shown.
    connect(m_filter, &QLineEdit::returnPressed, this, [this] { m_table->setFocus(); });

    m_table = new QTableWidget(0, kColumns, this);
    m_table->setObjectName(kTableName);
    m_table->setHorizontalHeaderLabels({tr("Rule"), tr("Severity"), tr("Summary")});
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);  // Tab leaves the list for the details
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);
    // Enter, and a double click, activate a row.
    connect(m_table, &QTableWidget::activated, this, [this] { ConfigureCurrentRule(); });
    connect(m_table, &QTableWidget::currentCellChanged, this, [this] { ShowDetails(); });
    // A click on a check box (the list is filled with signals blocked); the change waits for the
    // click to end, since it fills the list anew.
    connect(m_table, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (item->column() != kRuleColumn || !item->data(Qt::CheckStateRole).isValid()) return;
        const int row = item->row();
        const bool inUse = item->checkState() == Qt::Checked;
        QMetaObject::invokeMethod(
            this, [this, row, inUse] { SwitchRuleAsChecked(row, inUse); }, Qt::QueuedConnection);
    });
    auto* space =
        new QShortcut(QKeySequence(Qt::Key_Space), m_table, nullptr, nullptr, Qt::WidgetShortcut);
    connect(space, &QShortcut::activated, this, [this] { SwitchCurrentRule(); });

    m_details = new QTextBrowser(this);
    m_details->setObjectName(kDetailsName);
    m_details->setOpenLinks(false);

    auto* left = new QWidget(this);
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(m_filter);
    leftLayout->addWidget(m_table);
    auto* splitter = new QSplitter(this);
    splitter->addWidget(left);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    setCentralWidget(splitter);
    setTabOrder(m_filter, m_table);
    setTabOrder(m_table, m_details);

    m_databaseLabel = new QLabel(this);
    m_unitLabel = new QLabel(this);
    statusBar()->addWidget(m_databaseLabel, 1);
    statusBar()->addPermanentWidget(m_unitLabel);
    m_check = new CAssemblyCheck(
        *this, module,
        {[this](const std::wstring& name) {
             const int row = m_document.FindRule(name);
             return row >= 0 ? Q(m_document.Row(static_cast<size_t>(row)).displayName) : Q(name);
         },
         &SeverityText});
    connect(m_check, &CAssemblyCheck::ruleChosen, this, [this](const QString& name) {
        const int row = m_document.FindRule(name.toStdWString());
        if (row >= 0 && m_table->isRowHidden(row)) m_filter->clear();
        ChooseRow(row);
        m_table->setFocus();
    });
    BuildMenus();

    m_document.New(0);
    Started();
    const QSettings settings = EditorSettings();
    const QByteArray geometry = settings.value(kGeometryKey).toByteArray();
    if (geometry.isEmpty() || !restoreGeometry(geometry)) resize(1100, 600);
    splitter->restoreState(settings.value(kSplitterKey).toByteArray());
}

// The undo stack goes with the window's children, after this class's part of the window is gone;
// what it signals on the way must not reach this window.
CRuleSetEditor::~CRuleSetEditor() { m_undo->disconnect(this); }

void CRuleSetEditor::BuildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New"), QKeySequence::New, this, [this] { NewDocument(); });
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { OpenDocument(); });
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    FillRecentMenu();
    file->addSeparator();
    file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { SaveDocument(); });
    // Desktops without a theme of their own bind no key to Save As; Ctrl+Shift+S is the one
    // users expect there too.
    const QList<QKeySequence> saveAs = QKeySequence::keyBindings(QKeySequence::SaveAs);
    file->addAction(
        tr("Save &As..."),
        saveAs.isEmpty() ? QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S) : saveAs.first(), this,
        [this] { SaveDocumentAs(); });
    file->addSeparator();
    file->addAction(tr("&Import Rules from File..."),
                    QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I), this,
                    [this] { ImportRulesFromFile(); });
    file->addAction(tr("Co&mpare with File..."), QKeySequence(Qt::CTRL | Qt::Key_D), this,
                    [this] { CompareWithFile(); });
    file->addAction(tr("Check &Assembly..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A), this,
                    [this] { CheckAssembly(); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = m_undo->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = m_undo->createRedoAction(this, tr("&Redo"));
    redo->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    edit->addAction(tr("&Find Rule"), QKeySequence::Find, this, [this] {
        m_filter->setFocus();
        m_filter->selectAll();
    });

    QMenu* rules = menuBar()->addMenu(tr("&Rules"));
    rules->addAction(tr("&Configure..."), QKeySequence(Qt::CTRL | Qt::Key_E), this,
                     [this] { ConfigureCurrentRule(); });
    QMenu* severity = rules->addMenu(tr("&Severity"));
    for (int code = 1; code <= 5; ++code)
        severity->addAction(QString("&%1 %2").arg(code).arg(SeverityText(code)),
                            QKeySequence(Qt::CTRL | (Qt::Key_0 + code)), this,
                            [this, code] { SetCurrentSeverity(code); });
    rules->addAction(tr("S&witch On/Off"), QKeySequence(Qt::CTRL | Qt::Key_T), this,
                     [this] { SwitchCurrentRule(); });
    m_addRuleMenu = rules->addMenu(tr("&Add Rule"));
    rules->addAction(tr("&Remove Rule..."), QKeySequence::Delete, this,
                     [this] { RemoveCurrentRule(); });
    rules->addAction(tr("Reset to &Defaults..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R),
                     this, [this] { ResetCurrentRule(); });

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
    QAction* fasteners =
        database->addAction(tr("&Fastener Database..."), this, [this] { OpenFastenerDatabase(); });
    fasteners->setEnabled(m_module.LaunchFastenerDatabaseDlg != nullptr);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("Help on the &Rule"), QKeySequence::HelpContents, this,
                    [this] { ShowHelp(); });
    help->addAction(tr("Rule &Sets"), this,
                    [this] { ZebOpenHelp(this, HelpFile(), kHelpTopicRuleSets); });
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
        m_addRuleMenu->addAction(
            Q(displayName), this, [this, name = name, displayName = displayName] {
                Change(tr("Add %1").arg(Q(displayName)), [&] { m_document.AddRule(name); });
                ChooseRow(m_document.FindRule(name));
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
    const CZebRule* read = m_document.Rule(static_cast<size_t>(row));
    auto cell = [&](int column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        if (column == kRuleColumn && rule.hasSwitch) {
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(rule.inUse ? Qt::Checked : Qt::Unchecked);
        }
        // Kept in the document as it stands, or switched off: there, but not checked.
        if (!rule.known || !rule.inUse)
            item->setForeground(m_table->palette().color(QPalette::Disabled, QPalette::Text));
        item->setToolTip(RowStateText(read));
        m_table->setItem(row, column, item);
    };
    cell(kRuleColumn, RuleName(row) + (rule.inUse ? QString() : " " + OffText()));
    cell(kSeverityColumn, rule.known ? SeverityText(rule.severity) : QString());
    cell(kSummaryColumn, rule.known ? Q(rule.summary) : QString());
}

QString CRuleSetEditor::RuleName(int row) const {
    const RuleRow rule = m_document.Row(static_cast<size_t>(row));
    return rule.known ? Q(rule.displayName) : Q(rule.storedName);
}

void CRuleSetEditor::ShowDetails() {
    const int row = CurrentRow();
    const CZebRule* rule = row >= 0 ? m_document.Rule(static_cast<size_t>(row)) : nullptr;
    if (!rule) {
        m_details->setHtml(row >= 0 ? RowStateText(nullptr).toHtmlEscaped() : QString());
        return;
    }
    m_details->setHtml(DetailsHtml(*rule, UnitText(rule->CurrentUnits.LengthUnit),
                                   m_details->palette().color(QPalette::Disabled, QPalette::Text)));
}

void CRuleSetEditor::ApplyFilter() {
    const QString wanted = m_filter->text().trimmed();
    int firstShown = -1;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const RuleRow rule = m_document.Row(static_cast<size_t>(row));
        const bool shown = wanted.isEmpty() ||
                           RuleName(row).contains(wanted, Qt::CaseInsensitive) ||
                           Q(rule.storedName).contains(wanted, Qt::CaseInsensitive);
        m_table->setRowHidden(row, !shown);
        if (shown && firstShown < 0) firstShown = row;
    }
    if (CurrentRow() < 0) ChooseRow(firstShown);
}

int CRuleSetEditor::CurrentRow() const {
    const int row = m_table->currentRow();
    return row >= 0 && !m_table->isRowHidden(row) ? row : -1;
}

void CRuleSetEditor::ChooseRow(int row) {
    if (row >= 0 && row < m_table->rowCount())
        m_table->setCurrentCell(row, 0);
    else
        m_table->setCurrentCell(-1, -1);
    ShowDetails();
}

void CRuleSetEditor::Refresh() {
    const int current = m_table->currentRow();
    m_table->setRowCount(static_cast<int>(m_document.RuleCount()));
    {
        const QSignalBlocker filling(m_table);
        for (int row = 0; row < m_table->rowCount(); ++row) ShowRow(row);
    }
    m_table->resizeColumnToContents(kRuleColumn);
    m_table->resizeColumnToContents(kSeverityColumn);
    if (current >= 0 && current < m_table->rowCount()) m_table->setCurrentCell(current, 0);
    ApplyFilter();
    ShowDetails();
    // Filled here, not when shown: a submenu that is disabled is never shown.
    FillAddRuleMenu();

    QString name =
        m_document.Path().empty() ? tr("Untitled") : QFileInfo(Q(m_document.Path())).fileName();
    if (m_document.IsReadOnly()) name += " " + tr("(read-only)");
    setWindowTitle(name + "[*] - " + tr("Vantor Rules"));
    setWindowModified(m_document.IsModified());
    const int unit = m_document.Unit();
    for (QAction* action : m_units->actions()) action->setChecked(action->data().toInt() == unit);
    m_unitLabel->setText(tr("Unit: %1").arg(UnitText(unit)));
    IDatabaseCollector* database = zeb_db::ZEBDataHelper::getInstance();
    m_databaseLabel->setText(database ? tr("Database: %1").arg(Q(database->GetDatabasePath()))
                                      : tr("No database"));
}

void CRuleSetEditor::Started() {
    m_undo->clear();
    m_undo->setClean();
    Refresh();
    ChooseRow(0);
    ApplyFilter();
    // The keyboard works the table from the start: arrows choose a rule, Enter configures it.
    m_table->setFocus();
}

void CRuleSetEditor::Change(const QString& text, const std::function<void()>& change) {
    const std::string before = m_document.Snapshot();
    const bool wasModified = m_document.IsModified();
    change();
    const std::string after = m_document.Snapshot();
    if (after == before) {
        m_document.SetModified(wasModified);  // nothing changed: nothing to save or undo
    } else {
        m_undo->push(new CSnapshotCommand(*this, text, before, after));
        m_document.SetModified(!m_undo->isClean());
    }
    Refresh();
}

void CRuleSetEditor::Restore(const std::string& snapshot) {
    const int row = m_table->currentRow();
    std::string message;
    if (!m_document.Restore(snapshot, message)) ShowProblem(message);
    Refresh();
    ChooseRow(std::min(row, m_table->rowCount() - 1));
}

void CRuleSetEditor::ShowProblem(const std::string& text) {
    Ask(this, Q(text), ZebMsgIcon::Error, ZebMsgButtons::Ok);
}

void CRuleSetEditor::ShowProblem(const QString& what, const std::string& why) {
    ShowProblem((what + "\n\n" + Q(why)).toStdString());
}

bool CRuleSetEditor::Confirm(const QString& question) {
    return Ask(this, question, ZebMsgIcon::Question, ZebMsgButtons::YesNo) == ZebIdYes;
}

bool CRuleSetEditor::MaySetDocumentAside() {
    if (!m_document.IsModified()) return true;
    const QString name = m_document.Path().empty() ? tr("Untitled") : Q(m_document.Path());
    switch (Ask(this, tr("%1 has unsaved changes. Save them?").arg(name), ZebMsgIcon::Question,
                ZebMsgButtons::SaveDiscardCancel)) {
        case ZebIdYes:
            return SaveDocument();
        case ZebIdNo:
            return true;
        default:
            return false;
    }
}

bool CRuleSetEditor::OpenFile(const std::string& path) {
    std::string message;
    CRuleSetDocument::OpenResult result = m_document.Open(path, message);
    if (result == CRuleSetDocument::OpenResult::NotSettings &&
        Ask(this, Q(message) + "\n\n" + tr("Open it read-only? It will not be saved over."),
            ZebMsgIcon::Warning, ZebMsgButtons::YesNo) == ZebIdYes)
        result = m_document.Open(path, message, true);
    else if (result == CRuleSetDocument::OpenResult::Unreadable)
        ShowProblem(tr("%1 could not be opened.").arg(Q(path)), message);
    if (result != CRuleSetDocument::OpenResult::Opened) return false;
    RememberRecent(path);
    Started();
    return true;
}

void CRuleSetEditor::NewDocument() {
    if (!MaySetDocumentAside()) return;
    m_document.New(0);
    Started();
}

void CRuleSetEditor::OpenDocument() {
    if (!MaySetDocumentAside()) return;
    const std::string path = ChooseSettingsFile(this, false);
    if (!path.empty()) OpenFile(path);
}

bool CRuleSetEditor::SaveDocument() {
    if (m_document.Path().empty() || m_document.IsReadOnly()) return SaveDocumentAs();
    std::string message;
    const bool saved = m_document.Save(m_document.Path(), message);
    if (saved)
        m_undo->setClean();
    else
        ShowProblem(tr("The rules were not saved."), message);
    Refresh();
    return saved;
}

bool CRuleSetEditor::SaveDocumentAs() {
    const std::string path = ChooseSettingsFile(this, true);
    if (path.empty()) return false;
    std::string message;
    const bool saved = m_document.Save(path, message);
    if (saved) {
        m_undo->setClean();
        RememberRecent(path);
    } else {
        ShowProblem(tr("The rules were not saved."), message);
    }
    Refresh();
    return saved;
}

void CRuleSetEditor::ConfigureCurrentRule() {
    const int row = CurrentRow();
    if (row < 0) return;
    ConfigureResult result = ConfigureResult::Cancel;
    Change(tr("Configure %1").arg(RuleName(row)),
           [&] { result = m_document.Configure(static_cast<size_t>(row)); });
    // The keyboard goes on in the list, whoever activates windows after a dialog.
    activateWindow();
    m_table->setFocus();
    if (result == ConfigureResult::NoDialog)
        ShowProblem(tr("This rule has no dialog to configure it.").toStdString());
    if (result == ConfigureResult::NotRead)
        ShowProblem(
            tr("No rule of this module reads this rule; it is kept as it stands.").toStdString());
}

void CRuleSetEditor::RemoveCurrentRule() {
    const int row = CurrentRow();
    if (row < 0) return;
    const QString name = RuleName(row);
    if (!Confirm(tr("Remove the rule \"%1\" from the rule set?").arg(name))) return;
    Change(tr("Remove %1").arg(name), [&] { m_document.RemoveRule(static_cast<size_t>(row)); });
    ChooseRow(std::min(row, m_table->rowCount() - 1));
}

void CRuleSetEditor::ResetCurrentRule() {
    const int row = CurrentRow();
    if (row < 0 || !m_document.Rule(static_cast<size_t>(row))) return;
    const QString name = RuleName(row);
    if (!Confirm(tr("Set every value of the rule \"%1\" back to its default?").arg(name))) return;
    Change(tr("Reset %1").arg(name), [&] { m_document.ResetRule(static_cast<size_t>(row)); });
}

void CRuleSetEditor::SetCurrentSeverity(int severity) {
    const int row = CurrentRow();
    if (row < 0) return;
    Change(tr("Severity of %1").arg(RuleName(row)),
           [&] { m_document.SetSeverity(static_cast<size_t>(row), severity); });
}

void CRuleSetEditor::SwitchCurrentRule() {
    const int row = CurrentRow();
    if (row < 0) return;
    const RuleRow rule = m_document.Row(static_cast<size_t>(row));
    if (rule.hasSwitch) return SwitchRuleAsChecked(row, !rule.inUse);
    statusBar()->showMessage(RowStateText(m_document.Rule(static_cast<size_t>(row))), 8000);
}

void CRuleSetEditor::SwitchRuleAsChecked(int row, bool inUse) {
    if (row < 0 || row >= static_cast<int>(m_document.RuleCount())) return;
    const RuleRow rule = m_document.Row(static_cast<size_t>(row));
    if (!rule.hasSwitch || rule.inUse == inUse) return;
    Change((inUse ? tr("Switch On %1") : tr("Switch Off %1")).arg(RuleName(row)),
           [&] { m_document.SetInUse(static_cast<size_t>(row), inUse); });
}

void CRuleSetEditor::ChangeUnit(int unit) {
    std::string message;
    Change(tr("Unit %1").arg(UnitText(unit)), [&] { m_document.ConvertUnits(unit, message); });
    if (!message.empty()) ShowProblem(message);
}

void CRuleSetEditor::ImportRulesFromFile() {
    const std::string path = ChooseSettingsFile(this, false);
    if (path.empty()) return;
    std::vector<std::pair<std::wstring, std::wstring>> rules;
    int unit = 0;
    std::string message;
    if (!m_document.RulesInFile(path, rules, unit, message))
        return ShowProblem(tr("No rules were imported."), message);
    if (rules.empty())
        return ShowProblem(tr("%1 holds no rule of this module.").arg(Q(path)).toStdString());
    QString heading = tr("Rules in %1. Those the rule set has already are replaced.").arg(Q(path));
    if (unit != m_document.Unit())
        heading += " " + tr("Their values are converted from %1 to %2.")
                             .arg(UnitText(unit), UnitText(m_document.Unit()));
    const std::vector<std::wstring> chosen = ChooseRules(this, heading, rules);
    if (chosen.empty()) return;
    Change(tr("Import Rules"), [&] { m_document.ImportRules(path, chosen, message); });
    if (!message.empty()) ShowProblem(tr("No rules were imported."), message);
}

void CRuleSetEditor::CompareWithFile() {
    const std::string other = ChooseSettingsFile(this, false);
    if (other.empty()) return;
    // The rule set as it stands, unsaved changes included, compared as diff compares two files.
    QTemporaryDir folder;
    const std::string current = (folder.path() + "/current.xml").toStdString();
    ZebXMLDocument snapshot;
    std::wstring error;
    std::string message;
    std::vector<std::string> lines;
    if (!folder.isValid() || !snapshot.LoadXML(m_document.Snapshot(), error) ||
        !SaveSettingsFile(snapshot, current, message) ||
        !DiffSettings(m_module, current, other, lines, message)) {
        ShowProblem(tr("The rule set could not be compared with %1.").arg(Q(other)),
                    message.empty() ? ToUtf8(error) : message);
        return;
    }
    QString text;
    for (const std::string& line : lines) text += Q(line) + "\n";
    if (lines.empty())
        text = tr("The rule set and %1 hold the same rules and values.").arg(Q(other));

    QDialog window(this);
    window.setWindowTitle(tr("Differences from %1").arg(QFileInfo(Q(other)).fileName()));
    auto* layout = new QVBoxLayout(&window);
    auto* heading =
        new QLabel(tr("Lines with - are the open rule set's, lines with + those of %1; values in "
                      "the open rule set's unit.")
                       .arg(Q(other)),
                   &window);
    heading->setWordWrap(true);
    auto* shown = new QPlainTextEdit(text, &window);
    shown->setObjectName(kDifferencesName);
    shown->setReadOnly(true);
    shown->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &window);
    connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
    layout->addWidget(heading);
    layout->addWidget(shown);
    layout->addWidget(buttons);
    window.resize(760, 420);
    shown->setFocus();
    window.exec();
    Refresh();
}

void CRuleSetEditor::ShowHelp() {
    const int row = CurrentRow();
    const CZebRule* rule = row >= 0 ? m_document.Rule(static_cast<size_t>(row)) : nullptr;
    ZebOpenHelp(this, HelpFile(), rule ? HelpTopic(rule->Name) : std::wstring(kHelpTopicRuleSets));
}

void CRuleSetEditor::CheckAssembly() { m_check->Run(m_document.Snapshot()); }

void CRuleSetEditor::OpenFastenerDatabase() {
    if (m_module.LaunchFastenerDatabaseDlg) m_module.LaunchFastenerDatabaseDlg(this);
    Refresh();
}

void CRuleSetEditor::closeEvent(QCloseEvent* event) {
    if (!MaySetDocumentAside()) {
        event->ignore();
        return;
    }
    QSettings settings = EditorSettings();
    settings.setValue(kGeometryKey, saveGeometry());
    settings.setValue(kSplitterKey, static_cast<QSplitter*>(centralWidget())->saveState());
    event->accept();
}
