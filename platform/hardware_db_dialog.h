#pragma once

#include <QDialog>
#include <list>

#include "database/service/database_collector.h"
#include "framework/ui_message.h"

class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QPushButton;
class QTableWidget;

// Shows a message through the host's message service when it has one, else in a Qt message box
// of our own. Returns the button pressed.
int ShowBridgeMessage(QWidget* parent, const QString& text, ZebMsgIcon icon,
                      ZebMsgButtons buttons = ZebMsgButtons::Ok);

// Browses, adds, edits and deletes the hardware records of the database service. The fields
// below the table hold the record being edited; Add stores them as a new record, Save replaces
// the selected one. Widgets carry object names so that scripts and tests can find them.
class CZEBHardwareDBDlg : public QDialog {
public:
    explicit CZEBHardwareDBDlg(QWidget* parent = nullptr);

private:
    void Reload(int64_t selectId);
    void ShowSelected();
    ZebHardwareRecord RecordFromFields() const;
    void Add();
    void Save();
    void Delete();
    // The selected record, or null.
    const ZebHardwareRecord* Selected() const;
    void UpdateButtons();

    std::vector<ZebHardwareRecord> records_;
    QTableWidget* table_;
    QLineEdit* designation_;
    QLineEdit* kind_;
    QLineEdit* standard_;
    QComboBox* thread_;
    QDoubleSpinBox* length_;
    QComboBox* material_;
    QPushButton* add_;
    QPushButton* save_;
    QPushButton* delete_;
};
