#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>

// The grid's drop-down editor: a list without free typing. It keeps hold of its edit part and
// its list part once they first show; both are let go when the combo goes away.
class CCustomComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit CCustomComboBox(QWidget* parent = nullptr);
    ~CCustomComboBox() override;

    void SetTextLimit(int limit) { m_textLimit = limit; }
    int GetTextLimit() const { return m_textLimit; }
    QLineEdit* GetEditPart() const { return m_edit; }
    QAbstractItemView* GetListPart() const { return m_list; }

    void showPopup() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPointer<QLineEdit> m_edit;
    QPointer<QAbstractItemView> m_list;
    int m_textLimit = 0;
};
