#include "framework/ui/hot_key.h"

#include <QShortcut>
#include <QWidget>

CZebHotKey::CZebHotKey(QWidget* window, int id)
    : QObject(window),
      m_shortcut(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_I), window)),
      m_id(id) {
    m_shortcut->setContext(Qt::WindowShortcut);
    m_shortcut->setEnabled(false);
    connect(m_shortcut, &QShortcut::activated, this, [this] { emit Pressed(m_id); });
}

void CZebHotKey::Register() { m_shortcut->setEnabled(true); }

void CZebHotKey::Unregister() { m_shortcut->setEnabled(false); }

bool CZebHotKey::IsRegistered() const { return m_shortcut->isEnabled(); }
