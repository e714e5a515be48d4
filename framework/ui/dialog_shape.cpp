#include "framework/ui/dialog_shape.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QLayout>
#include <QSettings>
#include <QWidget>
#include <algorithm>

namespace {
// Where a dialog keeps the size the user last gave it, by its template.
QString SizeKey(unsigned templateId) { return QStringLiteral("DialogSize/%1").arg(templateId); }
QSettings DialogSettings() {
    return QSettings(QStringLiteral("Vantor"), QStringLiteral("AssemblyRules"));
}

// The grids keep their cell editors as their own children; Tab reaches those through the grid.
bool IsCellEditor(const QWidget* widget) {
    return qobject_cast<const QAbstractItemView*>(widget->parentWidget()) != nullptr;
}
}  // namespace

CZebDialogShape::CZebDialogShape(QWidget* dialog, unsigned templateId)
    : QObject(dialog), m_dialog(dialog), m_templateId(templateId) {
    dialog->installEventFilter(this);
}

bool CZebDialogShape::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_dialog) return false;
    if (event->type() == QEvent::Show && !m_shaped) {
        m_shaped = true;
        const QSize saved = DialogSettings().value(SizeKey(m_templateId)).toSize();
        if (saved.isValid() && m_templateId != 0)
            m_dialog->resize(saved.expandedTo(m_dialog->minimumSizeHint()));
        if (m_dialog->layout()) m_dialog->layout()->activate();
        ZebFollowLayoutInTabOrder(m_dialog);
    } else if (event->type() == QEvent::Hide && m_templateId != 0) {
        DialogSettings().setValue(SizeKey(m_templateId), m_dialog->size());
    }
    return false;
}

std::vector<QWidget*> ZebReadingOrder(QWidget* dialog) {
    std::vector<QWidget*> controls;
    for (QWidget* widget : dialog->findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || widget->focusProxy() ||
            widget->window() != dialog || !widget->isVisibleTo(dialog) || IsCellEditor(widget))
            continue;
        controls.push_back(widget);
    }
    const auto topLeft = [dialog](const QWidget* widget) {
        return widget->mapTo(dialog, QPoint(0, 0));
    };
    std::stable_sort(controls.begin(), controls.end(), [&](const QWidget* a, const QWidget* b) {
        return topLeft(a).y() < topLeft(b).y();
    });
    // A control belongs to the row of the first control above whose middle it starts.
    for (size_t start = 0; start < controls.size();) {
        const int middle = topLeft(controls[start]).y() + controls[start]->height() / 2;
        size_t end = start + 1;
        while (end < controls.size() && topLeft(controls[end]).y() < middle) ++end;
        std::stable_sort(
            controls.begin() + static_cast<long>(start), controls.begin() + static_cast<long>(end),
            [&](const QWidget* a, const QWidget* b) { return topLeft(a).x() < topLeft(b).x(); });
        start = end;
    }
    return controls;
}

void ZebFollowLayoutInTabOrder(QWidget* dialog) {
    const std::vector<QWidget*> controls = ZebReadingOrder(dialog);
    for (size_t i = 1; i < controls.size(); ++i) QWidget::setTabOrder(controls[i - 1], controls[i]);
}
