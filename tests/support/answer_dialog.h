#pragma once

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTimer>

#include "framework/ui/rule_dlg_base.h"

// Once a rule's dialog is open: optionally picks severity `severity` (1 to 5), then presses the
// button with id `button`, as a user would.
inline void AnswerRuleDialog(int button, int severity = 0) {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, button, severity] {
        auto* dialog = qobject_cast<CZEBRuleDlgBase*>(QApplication::activeModalWidget());
        if (!dialog) return;
        timer->stop();
        timer->deleteLater();
        if (severity)
            if (auto* list = qobject_cast<QComboBox*>(dialog->GetDlgItem(6022))) list->setCurrentIndex(severity - 1);
        qobject_cast<QPushButton*>(dialog->GetDlgItem(button))->click();
    });
    timer->start(10);
}
