#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <functional>

#include "framework/ui/fwui_export.h"

class QWidget;

// Message pre-translation for one window: every event of the window and of each of its child
// widgets (also those added later) goes to the handler before the widget sees it; true consumes
// it. Windows opened over it (message boxes, choosers) are children too but windows of their
// own, so their events are left to them. A key event that the focus widget leaves travels up to
// its parents; the handler sees it once, at the widget it was sent to.
class VANTOR_FWUI_API CZebPreTranslateFilter : public QObject {
public:
    using Handler = std::function<bool(QObject* target, QEvent* event)>;

    CZebPreTranslateFilter(QWidget* window, Handler handler);

    // Off until enabled: a dialog pre-translates once it runs, not while it is built.
    void SetEnabled(bool enabled) { m_enabled = enabled; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Watch(QObject* object);

    QWidget* m_window;
    Handler m_handler;
    bool m_enabled = false;
    const QEvent* m_lastKey = nullptr;
    QEvent::Type m_lastKeyType = QEvent::None;
    QPointer<QObject> m_lastKeyTarget;
};
