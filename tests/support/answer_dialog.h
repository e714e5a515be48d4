#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <vector>

#include "framework/ui/rule_dlg_base.h"

// Once a modal dialog of type `Dialog` is open, runs `act` on it, as a user would act on it.
template <class Dialog>
void WhenModalOpen(std::function<void(Dialog&)> act) {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        timer->stop();
        timer->deleteLater();
        act(*dialog);
    });
    timer->start(10);
}

// Once a rule's dialog is open: optionally picks severity `severity` (1 to 5), then presses the
// button with id `button`, as a user would.
inline void AnswerRuleDialog(int button, int severity = 0) {
    WhenModalOpen<CZEBRuleDlgBase>([button, severity](CZEBRuleDlgBase& dialog) {
        if (severity)
            if (auto* list = qobject_cast<QComboBox*>(dialog.GetDlgItem(6022)))
                list->setCurrentIndex(severity - 1);
        qobject_cast<QPushButton*>(dialog.GetDlgItem(button))->click();
    });
}

// Once a rule's dialog is open, clicks the buttons (check boxes, radios, push buttons) with the
// ids `buttons` in order, as a user would; the last is usually OK or Cancel.
inline void ClickInRuleDialog(std::vector<int> buttons) {
    WhenModalOpen<CZEBRuleDlgBase>([buttons](CZEBRuleDlgBase& dialog) {
        for (int id : buttons) qobject_cast<QAbstractButton*>(dialog.GetDlgItem(id))->click();
    });
}
