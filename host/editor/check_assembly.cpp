#include "host/editor/check_assembly.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMainWindow>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <atomic>
#include <mutex>

#include "framework/text_convert.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_xml.h"
#include "host/assembly_check.h"
#include "host/editor/qt_text.h"

namespace {
// What the findings sort by in every column: numbers as numbers, severities by code.
constexpr int kSortRole = Qt::UserRole + 1;
// The rule's identity name, on the rule column.
constexpr int kRuleRole = Qt::UserRole + 2;

std::string ChooseFile(QWidget* parent, const QString& filter, const wchar_t* extension,
                       bool forSaving) {
    IZebUiService* ui = GetZebUiService();
    ZebOpenFileRequest request;
    request.filter = filter.toStdWString();
    request.defaultExtension = extension;
    request.forSaving = forSaving;
    request.fileMustExist = !forSaving;
    std::vector<std::wstring> paths;
    if (!ui || !ui->OpenFiles(parent, request, paths) || paths.empty()) return {};
    return ToUtf8(paths.front());
}

// The latest progress the engine's threads reported, read by the user-interface thread's timer.
struct SharedProgress {
    std::mutex lock;
    double done = 0.0;
    std::wstring stage;
};

QStandardItem* Cell(const QString& text, const QVariant& sortKey) {
    auto* item = new QStandardItem(text);
    item->setData(sortKey, kSortRole);
    item->setEditable(false);
    return item;
}

QStandardItem* NumberCell(const std::optional<double>& value) {
    return value ? Cell(QString::number(*value, 'g', 6), *value) : Cell(QString(), QVariant());
}
}  // namespace

CAssemblyCheck::CAssemblyCheck(QMainWindow& window, const ModuleLoader& module, Names names)
    : QObject(&window), m_window(window), m_module(module), m_names(std::move(names)) {
    m_dock = new QDockWidget(tr("Assembly Check"), &window);
    m_dock->setObjectName(kDockName);
    auto* panel = new QWidget(m_dock);
    auto* layout = new QVBoxLayout(panel);
    auto* bar = new QHBoxLayout;
    m_rules = new QComboBox(panel);
    m_rules->setObjectName(kRuleFilterName);
    auto* ruleLabel = new QLabel(tr("&Rule:"), panel);
    ruleLabel->setBuddy(m_rules);
    auto* save = new QPushButton(tr("&Save Report..."), panel);
    save->setObjectName(kSaveName);
    bar->addWidget(ruleLabel);
    bar->addWidget(m_rules, 1);
    bar->addWidget(save);
    layout->addLayout(bar);

    m_model = new QStandardItemModel(0, kColumns, this);
    m_model->setHorizontalHeaderLabels(
        {tr("Rule"), tr("Severity"), tr("Parts"), tr("Value"), tr("Limit"), tr("Message")});
    m_filter = new QSortFilterProxyModel(this);
    m_filter->setSourceModel(m_model);
    m_filter->setSortRole(kSortRole);
    m_filter->setFilterKeyColumn(kRuleColumn);
    m_filter->setFilterRole(kRuleRole);
    m_view = new QTableView(panel);
    m_view->setObjectName(kFindingsName);
    m_view->setModel(m_filter);
    m_view->setSortingEnabled(true);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setTabKeyNavigation(false);
    m_view->setWordWrap(false);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(m_view);
    m_dock->setWidget(panel);
    window.addDockWidget(Qt::BottomDockWidgetArea, m_dock);
    m_dock->hide();

    connect(m_rules, &QComboBox::currentIndexChanged, this, [this] { ApplyRuleFilter(); });
    connect(save, &QPushButton::clicked, this, [this] { SaveReport(); });
    // Enter, and a double click, go to the finding's rule.
    connect(m_view, &QTableView::activated, this, [this](const QModelIndex& index) {
        const QModelIndex rule = m_filter->index(index.row(), kRuleColumn);
        emit ruleChosen(rule.data(kRuleRole).toString());
    });
}

CAssemblyCheck::~CAssemblyCheck() = default;

void CAssemblyCheck::Run(const std::string& settings) {
    const std::string assembly = ChooseFile(
        &m_window, tr("STEP assemblies|*.stp;*.step;*.STP;*.STEP|All files|*"), L"stp", false);
    if (!assembly.empty()) Check(settings, assembly);
}

int CAssemblyCheck::Check(const std::string& settings, const std::string& assembly) {
    std::string error;
    if (!m_engine) {
        auto engine = std::make_unique<EngineLoader>();
        if (engine->Load(m_module.Folder(), error)) m_engine = std::move(engine);
    }
    if (!m_engine) {
        ShowProblem(tr("The assembly engine cannot be loaded: %1").arg(Q(error)));
        return -1;
    }
    // The engine works on a copy of the rule set as it stands, so that the editor's document is
    // never read from two threads.
    ZebXMLDocument copy;
    std::wstring xmlError;
    if (!copy.LoadXML(settings, xmlError)) {
        ShowProblem(Q(xmlError));
        return ZebCheckBadInput;
    }
    SharedProgress shared;
    std::atomic<bool> cancel{false};
    ZebCheckRequest request;
    request.assemblyPath = assembly;
    request.cancel = &cancel;
    request.progress = [&shared](double done, const std::wstring& stage) {
        std::lock_guard<std::mutex> hold(shared.lock);
        shared.done = done;
        shared.stage = stage;
    };
    ZebCheckReport report;
    int status = ZebCheckBadInput;

    // Application-modal: while the worker has the module's document set to the copy, nothing in
    // the window may reach the module.
    QProgressDialog progress(tr("Reading the assembly..."), tr("Cancel"), 0, 1000, &m_window);
    progress.setWindowTitle(tr("Check Assembly"));
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(500);
    progress.setAutoReset(false);
    progress.setAutoClose(false);
    QTimer ticks;
    connect(&ticks, &QTimer::timeout, &progress, [&] {
        if (progress.wasCanceled() && !cancel) {
            cancel = true;
            progress.setLabelText(tr("Cancelling..."));
        }
        std::lock_guard<std::mutex> hold(shared.lock);
        progress.setValue(static_cast<int>(shared.done * 1000));
        if (!cancel && !shared.stage.empty()) progress.setLabelText(Q(shared.stage));
    });
    ticks.start(100);
    QEventLoop waiting;
    QThread* worker = QThread::create(
        [&] { status = RunAssemblyCheck(*m_engine, m_module, copy, request, report, error); });
    connect(worker, &QThread::finished, &waiting, &QEventLoop::quit);
    worker->start();
    waiting.exec();
    worker->wait();
    delete worker;
    ticks.stop();
    progress.close();
    // The module must not keep the copy, which goes now.
    m_module.SetXMLDoc(nullptr);

    if (status == ZebCheckBadInput)
        ShowProblem(tr("The assembly cannot be checked: %1").arg(Q(error)));
    if (status == ZebCheckDone) {
        m_report = std::move(report);
        Show();
    }
    return status;
}

void CAssemblyCheck::Show() {
    m_model->removeRows(0, m_model->rowCount());
    for (const ZebFinding& finding : m_report.findings) {
        QStringList parts;
        for (const std::wstring& part : finding.parts) parts << Q(part);
        QStandardItem* rule = Cell(m_names.rule(finding.rule), m_names.rule(finding.rule));
        rule->setData(Q(finding.rule), kRuleRole);
        QStandardItem* partsCell = Cell(parts.join("  |  "), parts.join('\n'));
        partsCell->setToolTip(parts.join('\n'));
        QStandardItem* message = Cell(Q(finding.message), Q(finding.message));
        message->setToolTip(Q(finding.message));
        m_model->appendRow({rule, Cell(m_names.severity(finding.severity), finding.severity),
                            partsCell, NumberCell(finding.value), NumberCell(finding.limit),
                            message});
    }
    const QString chosen = m_rules->currentData().toString();
    m_rules->blockSignals(true);
    m_rules->clear();
    m_rules->addItem(tr("All rules"), QString());
    for (const std::wstring& rule : m_report.rules) m_rules->addItem(m_names.rule(rule), Q(rule));
    m_rules->setCurrentIndex(std::max(0, m_rules->findData(chosen)));
    m_rules->blockSignals(false);
    ApplyRuleFilter();
    m_view->resizeColumnsToContents();
    m_dock->setWindowTitle(tr("Assembly Check: %1 parts, %2 findings in %3")
                               .arg(m_report.parts.size())
                               .arg(m_report.findings.size())
                               .arg(Q(m_report.assembly).section('/', -1)));
    m_dock->show();
    m_dock->raise();
    m_view->setFocus();
}

void CAssemblyCheck::ApplyRuleFilter() {
    const QString rule = m_rules->currentData().toString();
    m_filter->setFilterRegularExpression(
        rule.isEmpty() ? QRegularExpression()
                       : QRegularExpression("^" + QRegularExpression::escape(rule) + "$"));
}

bool CAssemblyCheck::SaveReport() {
    const std::string path =
        ChooseFile(&m_window, tr("HTML page|*.html|JSON document|*.json"), L"html", true);
    if (path.empty()) return false;
    const bool json = QString::fromStdString(path).endsWith(".json", Qt::CaseInsensitive);
    const std::string text = json ? ReportJson(m_report) : ReportHtml(m_report);
    QSaveFile file(Q(path));
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(text.data(), static_cast<qint64>(text.size())) !=
            static_cast<qint64>(text.size()) ||
        !file.commit()) {
        ShowProblem(tr("The report cannot be written to %1: %2").arg(Q(path), file.errorString()));
        return false;
    }
    return true;
}

void CAssemblyCheck::ShowProblem(const QString& text) {
    if (IZebUiService* ui = GetZebUiService())
        ui->MessageBox(&m_window, L"Vantor", text.toStdWString(), ZebMsgIcon::Error,
                       ZebMsgButtons::Ok);
}
