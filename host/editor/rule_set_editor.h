#pragma once

#include <QMainWindow>
#include <memory>
#include <string>

#include "host/editor/rule_set_document.h"

class QActionGroup;
class QCoreApplication;
class QLabel;
class QMenu;
class QTableWidget;

// Installs the editor's texts (vantor_editor_<lang>.qm in the language's resource folder) and
// Qt's own (standard buttons, file chooser) in the user's language, chosen as the module chooses
// its resources; English needs nothing.
void InstallEditorTranslations(QCoreApplication& application);

// The rule-set editor: one settings document in a window, its rules in a table, each configured
// in its own dialog, with the unit, the rule list and the databases in the menus. Questions and
// file choosers go through the UI service, so tests answer them.
class CRuleSetEditor : public QMainWindow {
    Q_OBJECT
public:
    // Objects the tests find the table and the menus' actions by.
    static constexpr const char* kTableName = "rules";

    // Starts with a new document in millimetres; the module must outlive the window.
    explicit CRuleSetEditor(const ModuleLoader& module, QWidget* parent = nullptr);
    ~CRuleSetEditor() override;

    // Opens `path`; false, after telling the user why, when it cannot be read.
    bool OpenFile(const std::string& path);
    CRuleSetDocument& Document() { return m_document; }
    QTableWidget* Table() const { return m_table; }

    // The menu commands, also reached by the tests.
    void NewDocument();
    void OpenDocument();
    bool SaveDocument();
    bool SaveDocumentAs();
    void ConfigureCurrentRule();
    void RemoveCurrentRule();
    void ResetCurrentRule();
    void ChangeUnit(int unit);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    void FillAddRuleMenu();
    void FillRecentMenu();
    void Refresh();
    void ShowRow(int row);
    void RememberRecent(const std::string& path);
    // False when the user cancelled, or chose to save and saving failed.
    bool MaySetDocumentAside();
    void ShowProblem(const std::string& text);
    void OpenFastenerDatabase();

    const ModuleLoader& m_module;
    CRuleSetDocument m_document;
    QTableWidget* m_table = nullptr;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_addRuleMenu = nullptr;
    QActionGroup* m_units = nullptr;
    QLabel* m_databaseLabel = nullptr;
    QLabel* m_unitLabel = nullptr;
};
