#include "dialogs/parts/interf_main_tab_ctrl.h"

ZEBASMInterfMainTabCtrl::ZEBASMInterfMainTabCtrl(QWidget* parent) : QTabWidget(parent) {
    // Tabs chosen by mouse or keyboard once the dialog has selected its first page.
    connect(this, &QTabWidget::currentChanged, this, [this](int index) {
        if (m_current >= 0) m_current = index;
    });
}

void ZEBASMInterfMainTabCtrl::AddPage(const std::wstring& title, QWidget* page) {
    addTab(page, QString::fromStdWString(title));
}

void ZEBASMInterfMainTabCtrl::SelectPage(int index) {
    m_current = index;
    if (index >= 0 && index < count()) setCurrentIndex(index);
}
