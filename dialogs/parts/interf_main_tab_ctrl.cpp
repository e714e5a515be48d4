#include "dialogs/parts/interf_main_tab_ctrl.h"

ZEBASMInterfMainTabCtrl::ZEBASMInterfMainTabCtrl(QWidget* parent) : QTabWidget(parent) {
    // Tabs chosen by mouse or keyboard once the dialog has selected its first page.
    connect(this, &QTabWidget::currentChanged, this, [this](int index) {
        if (m_current >= 0) m_current = index;
    });
}

void ZEBASMInterfMainTabCtrl::AddPage(const std::wstring& title, QWidget* page) {
    m_titles.push_back(title);
    m_pages.push_back(page);
    addTab(page, QString::fromStdWString(title));
}

void ZEBASMInterfMainTabCtrl::SelectPage(int index) {
    m_current = index;
    if (index >= 0 && index < GetPageCount()) setCurrentIndex(index);
}

QWidget* ZEBASMInterfMainTabCtrl::GetPage(int index) const {
    return index >= 0 && index < GetPageCount() ? m_pages[static_cast<size_t>(index)] : nullptr;
}
