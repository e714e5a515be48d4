#include "controls/double_edit_ex.h"

#include <algorithm>

CDoubleEditEx::CDoubleEditEx(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::textChanged, this, &CDoubleEditEx::OnTextChanged);
}

void CDoubleEditEx::OnTextChanged(const QString& qtext) {
    const std::wstring text = qtext.toStdWString();
    if (text.empty()) return;
    m_changed = true;
    const wchar_t* allowed = m_allowNegative ? L"-.,0123456789" : L".,0123456789";
    const size_t run = std::min(text.find_first_not_of(allowed), text.size());
    if (run == text.size()) {
        m_lastAccepted = text;
    } else if (run > 0) {
        // Putting the last accepted text back runs this handler again, which accepts it.
        setText(QString::fromStdWString(m_lastAccepted));
        end(false);
    } else {
        clear();
    }
}

NumberEntry CDoubleEditEx::Read() const {
    const std::wstring text = this->text().toStdWString();
    NumberEntry entry = ReadNumberEntry(text);
    if (entry.fault == NumberTextFault::Negative && m_allowNegative) {
        entry = ReadNumberEntry(text.substr(text.find(L'-') + 1));
        entry.value = -entry.value;
        entry.text = L"-" + entry.text;
    }
    return entry;
}
