#include "controls/custom_combo_box.h"

#include <QAbstractItemView>
#include <QLineEdit>

CCustomComboBox::CCustomComboBox(QWidget* parent) : QComboBox(parent) {
    setEditable(false);
    setFocusPolicy(Qt::StrongFocus);
}

CCustomComboBox::~CCustomComboBox() {
    m_edit = nullptr;
    m_list = nullptr;
}

void CCustomComboBox::paintEvent(QPaintEvent* event) {
    if (!m_edit && lineEdit()) m_edit = lineEdit();
    QComboBox::paintEvent(event);
}

void CCustomComboBox::showPopup() {
    if (!m_list) m_list = view();
    QComboBox::showPopup();
}
