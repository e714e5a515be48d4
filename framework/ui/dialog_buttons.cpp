#include "framework/ui/dialog_buttons.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

#include "framework/ui/control_id.h"

ZebDialogButtons MakeZebDialogButtons(QDialog* dialog, std::function<void()> onHelp) {
    ZebDialogButtons buttons{new QDialogButtonBox(dialog), nullptr, nullptr, nullptr};
    buttons.ok = buttons.box->addButton(QDialogButtonBox::Ok);
    buttons.cancel = buttons.box->addButton(QDialogButtonBox::Cancel);
    SetZebControlId(buttons.ok, 1);
    SetZebControlId(buttons.cancel, 2);
    buttons.ok->setDefault(true);
    // accept() and reject() are virtual: a dialog's own OK and Cancel run.
    QObject::connect(buttons.ok, &QPushButton::clicked, dialog, [dialog] { dialog->accept(); });
    QObject::connect(buttons.cancel, &QPushButton::clicked, dialog, [dialog] { dialog->reject(); });
    if (onHelp) {
        buttons.help = buttons.box->addButton(QDialogButtonBox::Help);
        SetZebControlId(buttons.help, 9);
        QObject::connect(buttons.help, &QPushButton::clicked, dialog, std::move(onHelp));
    }
    return buttons;
}
