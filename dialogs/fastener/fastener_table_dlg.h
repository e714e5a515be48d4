#pragma once

#include <QPointer>
#include <string>
#include <utility>
#include <vector>

#include "controls/grid_model.h"
#include "controls/zeb_list_ctrl.h"
#include "dialogs/common/fastener_additions.h"
#include "dialogs/common/rule_dialog.h"
#include "resources/string_ids.h"

class CWrapperComboCtrl;
class CZebHotKey;
class PictureControl;
class QLabel;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

// The ids a fastener table dialog gives the controls that differ between the dialogs.
struct FastenerDialogIds {
    int severity;
    int unitLabel;
    int picture;
    unsigned pictureBitmap;
};

// What the fastener clearance and engagement length dialogs share: the database row (label 6015,
// the database module's name 6016, the hardware database buttons 6017 and 9800, the static 6018),
// the list radios 9160 and 9161 and the button 9162, the severity list, the unit label, the
// picture, the fastener-name choices of the table, Ctrl+I for the spreadsheet import and the
// database additions of OK. Each dialog builds its own table in TableArea() and runs these
// pieces in the order of its own steps.
class CZEBFastenerTableDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kDatabaseLabelId = 6015,
        kDatabaseListId = 6016,
        kHardwareButtonId = 6017,
        kStaticId = 6018,
        kFirstListId = 9160,
        kSecondListId = 9161,
        kSpareButtonId = 9162,
        kHardwareDatabaseId = 9800,
    };
    // Empty rows kept below the stored ones, for new fastener names.
    static constexpr int kReserveRows = 260;

    ~CZEBFastenerTableDlg() override;

    // The table's rows with the stored rows in place: `stored` empty rows more than the reserve,
    // and each placed row inserted at its own index, in order.
    static std::vector<CZebGridModel::Row> RowsWithReserve(
        size_t stored, std::vector<std::pair<size_t, CZebGridModel::Row>> placed);

protected:
    CZEBFastenerTableDlg(CZebRule* rule, std::wstring unitText, unsigned templateId, long imageId,
                         const FastenerDialogIds& ids);

    // Where the dialog puts its table.
    QVBoxLayout* TableArea() const { return m_tableArea; }
    // The table whose name cells the database's names fill and whose keys this dialog routes.
    void SetFastenerTable(CZEBListCtrl* table) { m_table = table; }

    // Steps of opening, as the dialogs call them.
    void RegisterImportKey();
    void LoadSeverity(int32_t severity);
    void SetUnitLabel(ZebStringId format);
    // The first list checked; the radios, the spare button and 6017 hidden; the database row shown.
    void ShowFirstListOnly();
    // False without a loaded database module: the dialogs then load no stored rows.
    bool FillDatabaseModule();
    // The fastener names of the chosen list, sorted and each once, as the choices of the name
    // cells. False when there is no database or it holds no name: nothing else is loaded then.
    bool LoadNameChoices();
    void ShowPicture();

    bool IsSecondList() const;
    void StoreSeverity(int32_t& severity);
    // Adds what the imports brought and the database lacks (on OK).
    void AddImportsToDatabase();
    FastenerAdditions& Imports() { return m_imports; }

    // Runs the spreadsheet import (Ctrl+I).
    void ImportSpreadsheet() override = 0;

private:
    void OpenHardwareDatabase();

    FastenerDialogIds m_ids;
    CWrapperComboCtrl* m_severity;
    QLabel* m_unitLabel;
    QLabel* m_databaseLabel;
    CWrapperComboCtrl* m_databaseList;
    QPushButton* m_hardwareButton;
    QPushButton* m_hardwareDatabase;
    QWidget* m_static;
    QRadioButton* m_firstList;
    QRadioButton* m_secondList;
    QPushButton* m_spareButton;
    PictureControl* m_picture;
    QVBoxLayout* m_tableArea;
    CZebHotKey* m_hotKey;
    QPointer<CZEBListCtrl> m_table;
    FastenerAdditions m_imports;
};
