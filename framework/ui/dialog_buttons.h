#pragma once

#include <functional>

#include "framework/ui/fwui_export.h"

class QDialog;
class QDialogButtonBox;
class QPushButton;

// The closing buttons of a dialog: OK (id 1, the default button) runs the dialog's accept(),
// Cancel (id 2) its reject(), and Help (id 9), shown only when `onHelp` is given, runs `onHelp`.
struct ZebDialogButtons {
    QDialogButtonBox* box;
    QPushButton* ok;
    QPushButton* cancel;
    QPushButton* help;  // null without `onHelp`
};

VANTOR_FWUI_API ZebDialogButtons MakeZebDialogButtons(QDialog* dialog,
                                                      std::function<void()> onHelp = {});
