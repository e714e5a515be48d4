#pragma once

#include <QLineEdit>
#include <string>

// Number entry box: after every change it keeps only texts made of digits and points (and a
// minus sign when negatives are allowed). The form of the number is not checked.
class CDoubleEditEx : public QLineEdit {
    Q_OBJECT
public:
    explicit CDoubleEditEx(QWidget* parent = nullptr);

    bool IsChanged() const { return m_changed; }
    void SetChanged(bool changed) { m_changed = changed; }
    const std::wstring& GetLastAcceptedText() const { return m_lastAccepted; }
    void SetAllowNegative(bool allow) { m_allowNegative = allow; }

private:
    void OnTextChanged(const QString& text);

    bool m_changed = false;
    std::wstring m_lastAccepted;
    bool m_allowNegative = false;
};
