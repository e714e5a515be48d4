#pragma once

#include <QWidget>
#include <list>
#include <string>

#include "dialogs/parts/component_table_import.h"

class CZebRule;
class QLabel;
class ZEBASMInterfIgnoreCompListCtrl;

// The page of the interference detection dialog that holds the components interference detection
// ignores. The list lives in the database, shared by everyone who uses it: it is read once when
// the page opens and written on OK only when it changed.
class ZEBASMInterfDetIgnoreCompDlg : public QWidget {
    Q_OBJECT
public:
    enum : int { kTemplateId = 9083, kTableId = 6072, kUnavailableId = 65535 };
    static constexpr int kSpareRows = 120;

    ZEBASMInterfDetIgnoreCompDlg(CZebRule* rule, QWidget* parent);

    void OnInitDialog();
    // Writes the list when it changed other than in letter case. False when nothing could be
    // written; a failed write is reported here.
    bool OnOK();
    void ImportSpreadsheet();

    bool IsDatabaseAvailable() const { return m_databaseAvailable; }
    ZEBASMInterfIgnoreCompListCtrl* GetTable() const { return m_table; }
    // Names as the table holds them: trimmed, in lower case, empty ones left out.
    std::list<std::wstring> ReadNames() const;

private:
    CZebRule* m_rule;
    ZEBASMInterfIgnoreCompListCtrl* m_table;
    SheetImportState m_import;
    std::list<std::wstring> m_current;
    std::list<std::wstring> m_loaded;
    bool m_databaseAvailable = false;
    QLabel* m_unavailable = nullptr;
};
