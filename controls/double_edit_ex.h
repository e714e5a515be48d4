#pragma once

#include <QLineEdit>
#include <string>

#include "util/number_text.h"

// Number entry box: after every change it keeps only texts made of digits and decimal separators
// ('.' and ',', so that "0,5" is not cut to "05"), and a minus sign when negatives are allowed.
// The form of the number is checked when it is read.
class CDoubleEditEx : public QLineEdit {
    Q_OBJECT
public:
    explicit CDoubleEditEx(QWidget* parent = nullptr);

    bool IsChanged() const { return m_changed; }
    void SetChanged(bool changed) { m_changed = changed; }
    const std::wstring& GetLastAcceptedText() const { return m_lastAccepted; }
    void SetAllowNegative(bool allow) { m_allowNegative = allow; }
    // The box's value as ReadNumberEntry reads it with the user's separator; below zero only
    // when negatives are allowed.
    NumberEntry Read() const;

private:
    void OnTextChanged(const QString& text);

    bool m_changed = false;
    std::wstring m_lastAccepted;
    bool m_allowNegative = false;
};
