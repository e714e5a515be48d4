#pragma once

#include <QLineEdit>

class QValidator;

// The grid's in-place text editor. Its limit holds back what typing and pasting add, never what
// the cell already holds: a cell longer than the limit opens whole, can be shortened, and goes
// back whole when it was not touched.
class CZebCellTextEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit CZebCellTextEdit(QWidget* parent = nullptr);

    void SetTypingLimit(int limit) { m_typingLimit = limit; }
    int GetTypingLimit() const { return m_typingLimit; }
    // Puts the cell's text in, whatever its length.
    void SetCellText(const QString& text);

private:
    friend class CZebTypingLimit;
    int m_typingLimit = 0;
    // Length of the text as it stood before the edit being checked.
    int m_acceptedLength = 0;
};
