#pragma once

#include <QObject>

#include "framework/ui/fwui_export.h"

class QShortcut;
class QWidget;

// The import hot key Ctrl+I (identifier 1) of a dialog window. The shortcut belongs to the
// window; registering enables it, unregistering disables it, as dialogs do while another dialog
// is open over them.
class VANTOR_FWUI_API CZebHotKey : public QObject {
    Q_OBJECT
public:
    static constexpr int kImportId = 1;

    explicit CZebHotKey(QWidget* window, int id = kImportId);
    void Register();
    void Unregister();
    bool IsRegistered() const;
    int GetId() const { return m_id; }

signals:
    void Pressed(int id);

private:
    QShortcut* m_shortcut;
    int m_id;
};
