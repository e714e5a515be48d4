#include "framework/ui/pre_translate_filter.h"

#include <QChildEvent>
#include <QWidget>

CZebPreTranslateFilter::CZebPreTranslateFilter(QWidget* window, Handler handler)
    : QObject(window), m_window(window), m_handler(std::move(handler)) {
    Watch(window);
}

void CZebPreTranslateFilter::Watch(QObject* object) {
    object->installEventFilter(this);
    for (QObject* child : object->children())
        if (child->isWidgetType()) Watch(child);
}

bool CZebPreTranslateFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ChildAdded) {
        QObject* child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType()) Watch(child);
    }
    if (!m_enabled || !watched->isWidgetType()) return false;
    auto* widget = static_cast<QWidget*>(watched);
    if (widget->window() != m_window) return false;
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
        auto* last = qobject_cast<QWidget*>(m_lastKeyTarget.data());
        if (event == m_lastKey && event->type() == m_lastKeyType && last && widget != last &&
            widget->isAncestorOf(last))
            return false;
        m_lastKey = event;
        m_lastKeyType = event->type();
        m_lastKeyTarget = watched;
    }
    return m_handler(watched, event);
}
