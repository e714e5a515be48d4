#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>

#include "host/editor/rule_set_document.h"
#include "host/host_translations.h"

class CAssemblyCheck;
class QActionGroup;
class QLabel;
class QLineEdit;
class QMenu;
class QTableWidget;
class QTextBrowser;
class QUndoStack;

// The rule-set editor: one settings document in a window, its rules in a table beside a pane that
// shows the chosen rule's values, each rule configured in its own dialog, with the unit, the rule
// list and the databases in the menus. Every change can be undone. Questions and file choosers go
// through the UI service, so tests answer them.
class CRuleSetEditor : public QMainWindow {
    Q_OBJECT
public:
    // Objects the tests find the widgets by.
    static constexpr const char* kTableName = "rules";
    static constexpr const char* kFilterName = "filter";
    static constexpr const char* kDetailsName = "details";
    static constexpr const char* kImportListName = "importRules";
    static constexpr const char* kDifferencesName = "differences";

    // Starts with a new document in millimetres; the module must outlive the window.
    explicit CRuleSetEditor(const ModuleLoader& module, QWidget* parent = nullptr);
    ~CRuleSetEditor() override;

    // Opens `path`; false, after telling the user why, when it cannot be read. A file that is not
    // a settings document is opened read-only only when the user agrees.
    bool OpenFile(const std::string& path);
    CRuleSetDocument& Document() { return m_document; }
    QTableWidget* Table() const { return m_table; }
    QTextBrowser* Details() const { return m_details; }
    QLineEdit* Filter() const { return m_filter; }
    QUndoStack* UndoStack() const { return m_undo; }

    // The menu commands, also reached by the tests.
    void NewDocument();
    void OpenDocument();
    bool SaveDocument();
    bool SaveDocumentAs();
    void ConfigureCurrentRule();
    void RemoveCurrentRule();
    void ResetCurrentRule();
    void SetCurrentSeverity(int severity);
    // Switches the chosen rule off when it is in use, else on; a rule without a switch stays as
    // it is and the status bar says why.
    void SwitchCurrentRule();
    void ChangeUnit(int unit);
    void ImportRulesFromFile();
    void CompareWithFile();
    void ShowHelp();
    // Checks a STEP assembly chosen by the user against the rule set as it stands.
    void CheckAssembly();
    CAssemblyCheck* AssemblyCheck() const { return m_check; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    friend class CSnapshotCommand;

    void BuildMenus();
    void FillAddRuleMenu();
    void FillRecentMenu();
    void Refresh();
    void ShowRow(int row);
    void ShowDetails();
    void ApplyFilter();
    void RememberRecent(const std::string& path);
    // False when the user cancelled, or chose to save and saving failed.
    bool MaySetDocumentAside();
    void ShowProblem(const std::string& text);
    // What failed, in the user's language, then why, as the file layer tells it.
    void ShowProblem(const QString& what, const std::string& why);
    bool Confirm(const QString& question);
    void OpenFastenerDatabase();
    // Runs `change` on the document; when the document differs afterwards, the change goes on the
    // undo stack under `text`.
    void Change(const QString& text, const std::function<void()>& change);
    // Makes `snapshot` the document again, keeping the chosen row.
    void Restore(const std::string& snapshot);
    // The chosen rule's row; -1 when none is chosen.
    int CurrentRow() const;
    // The rule's name as the list shows it, without its "(off)".
    QString RuleName(int row) const;
    // After a click on a row's check box: the rule in use or not, as the box now says.
    void SwitchRuleAsChecked(int row, bool inUse);
    void ChooseRow(int row);
    void Started();

    const ModuleLoader& m_module;
    CRuleSetDocument m_document;
    QTableWidget* m_table = nullptr;
    QTextBrowser* m_details = nullptr;
    QLineEdit* m_filter = nullptr;
    QUndoStack* m_undo = nullptr;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_addRuleMenu = nullptr;
    QActionGroup* m_units = nullptr;
    QLabel* m_databaseLabel = nullptr;
    QLabel* m_unitLabel = nullptr;
    CAssemblyCheck* m_check = nullptr;
};
