#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "engine/engine_api.h"

class EngineLoader;
class ModuleLoader;

class QComboBox;
class QDockWidget;
class QMainWindow;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTableView;

// The editor's "Check Assembly...": a STEP file chosen through the UI service is checked against
// the open rule set, unsaved changes included, in a worker thread while a progress dialog with
// Cancel shows; the findings go into a dockable table that can be sorted, filtered by rule and
// saved as an HTML page or a JSON document.
class CAssemblyCheck : public QObject {
    Q_OBJECT
public:
    // Objects the tests find the widgets by.
    static constexpr const char* kDockName = "checkFindings";
    static constexpr const char* kFindingsName = "findings";
    static constexpr const char* kRuleFilterName = "findingsRule";
    static constexpr const char* kSaveName = "saveReport";
    enum Column {
        kRuleColumn,
        kSeverityColumn,
        kPartsColumn,
        kValueColumn,
        kLimitColumn,
        kMessageColumn,
        kColumns
    };

    // How the window names a rule (by its identity name) and a severity code.
    struct Names {
        std::function<QString(const std::wstring&)> rule;
        std::function<QString(int)> severity;
    };

    // The dock starts hidden in `window`; the module must outlive this object.
    CAssemblyCheck(QMainWindow& window, const ModuleLoader& module, Names names);
    ~CAssemblyCheck() override;

    // Asks for a STEP file and checks the settings document `settings` (its text) against it.
    // A file that cannot be read, or an engine that cannot be loaded, is told in a message box.
    void Run(const std::string& settings);
    // Checks `assembly` without asking; a ZebCheckStatus, or -1 when the engine is missing.
    int Check(const std::string& settings, const std::string& assembly);
    // Asks for a file and writes the last report to it, HTML or JSON by its extension.
    bool SaveReport();

    QDockWidget* Dock() const { return m_dock; }
    QTableView* Findings() const { return m_view; }
    const ZebCheckReport& Report() const { return m_report; }

signals:
    // A finding was activated: its rule's identity name.
    void ruleChosen(const QString& rule);

private:
    void Show();
    void ApplyRuleFilter();
    void ShowProblem(const QString& text);

    QMainWindow& m_window;
    const ModuleLoader& m_module;
    Names m_names;
    std::unique_ptr<EngineLoader> m_engine;
    ZebCheckReport m_report;
    QDockWidget* m_dock = nullptr;
    QComboBox* m_rules = nullptr;
    QTableView* m_view = nullptr;
    QStandardItemModel* m_model = nullptr;
    QSortFilterProxyModel* m_filter = nullptr;
};
