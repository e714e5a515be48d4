#pragma once

#include <QObject>
#include <vector>

#include "framework/ui/fwui_export.h"

class QWidget;

// Keeps a dialog as the user left it: from its first showing on it has the size it was last
// closed with (kept per template; not kept for template 0), never smaller than its controls need,
// and Tab walks its controls as the dialog reads. The dialog owns it.
class VANTOR_FWUI_API CZebDialogShape : public QObject {
    Q_OBJECT
public:
    CZebDialogShape(QWidget* dialog, unsigned templateId);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_dialog;
    unsigned m_templateId;
    bool m_shaped = false;
};

// The dialog's own controls that Tab reaches, in reading order: by rows from the top, each row
// from the left. A grid's cell editors are left to the grid.
VANTOR_FWUI_API std::vector<QWidget*> ZebReadingOrder(QWidget* dialog);

// Sets the dialog's tab order to its reading order.
VANTOR_FWUI_API void ZebFollowLayoutInTabOrder(QWidget* dialog);
