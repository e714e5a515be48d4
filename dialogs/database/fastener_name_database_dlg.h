#pragma once

#include <QDialog>
#include <string>

#include "framework/ui/control_id.h"
#include "util/sheet_table.h"

class CZEBButton;
class CZEBFastenerNameDatabaseListCtrl;
class CZebHotKey;
class CZebPreTranslateFilter;

// Keeps the fastener names of the database: add, rename and delete them in a one-column table,
// add the base names of part files (right click), and import column "A" of a spreadsheet
// (Ctrl+I). Every change goes to the database at once: OK only keeps a name still being typed,
// and Cancel takes nothing back.
class ZEBEditFastenerNameDatabaseDlg : public QDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 9080,
        kIdOk = 1,
        kIdCancel = 2,
        kIdHelp = 9,
        kTableId = 6024,
        kAddId = 6026,
        kDeleteId = 6028,
        kRenameId = 6033,
    };

    // The caller makes the localized resource library current while the dialog runs.
    explicit ZEBEditFastenerNameDatabaseDlg(QWidget* parent = nullptr);
    ~ZEBEditFastenerNameDatabaseDlg() override;

    // Runs the dialog modally: 1 after OK, 2 after Cancel or the close box.
    int DoModal();

    QWidget* GetDlgItem(int id) const { return FindZebControl(this, id); }
    CZEBFastenerNameDatabaseListCtrl* GetListCtrl() const { return m_table; }
    bool IsImportHotKeyRegistered() const;
    // The workbook of the last import, and what was read from it.
    const std::wstring& GetImportedPath() const { return m_importPath; }
    const SpreadsheetTable& GetImportedTable() const { return m_imported; }

    void OnAdd();
    void OnDelete();
    void OnRename();
    // Asks for a workbook and imports its column "A" as fastener names.
    void OnImport();
    // Opens the help file at this dialog's section.
    void OnHelp();

    void accept() override;
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Fill();
    void UpdateButtonStates();
    // Sees every event of the dialog and its children first, while it is shown; the table's key
    // handler runs here, and a key it consumes goes no further.
    bool PreTranslateMessage(QEvent* event);

    CZEBFastenerNameDatabaseListCtrl* m_table = nullptr;
    CZEBButton* m_add = nullptr;
    CZEBButton* m_delete = nullptr;
    CZEBButton* m_rename = nullptr;
    CZebHotKey* m_hotKey = nullptr;
    SpreadsheetTable m_imported;
    std::wstring m_importPath;
    int m_selectedRows = 0;
    CZebPreTranslateFilter* m_preTranslate;
};
