#include "controls/cell_text_edit.h"

#include <QValidator>
#include <limits>

// Refuses an edit only when it makes the text longer than both the limit and the text it
// replaces, as an edit control's text limit does.
class CZebTypingLimit : public QValidator {
public:
    explicit CZebTypingLimit(CZebCellTextEdit* editor) : QValidator(editor), m_editor(editor) {}

    State validate(QString& input, int&) const override {
        const int length = static_cast<int>(input.size());
        return length <= m_editor->m_typingLimit || length <= m_editor->m_acceptedLength
                   ? Acceptable
                   : Invalid;
    }

private:
    CZebCellTextEdit* m_editor;
};

CZebCellTextEdit::CZebCellTextEdit(QWidget* parent) : QLineEdit(parent) {
    // QLineEdit's own maximum would cut long texts when they are put in.
    setMaxLength(std::numeric_limits<int>::max());
    setValidator(new CZebTypingLimit(this));
    connect(this, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_acceptedLength = static_cast<int>(text.size()); });
}

void CZebCellTextEdit::SetCellText(const QString& text) {
    m_acceptedLength = static_cast<int>(text.size());
    setText(text);
}
