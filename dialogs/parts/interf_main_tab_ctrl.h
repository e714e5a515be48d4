#pragma once

#include <QTabWidget>
#include <string>

// The tabs of the interference detection dialog: one page per tab, in the order added.
class ZEBASMInterfMainTabCtrl : public QTabWidget {
    Q_OBJECT
public:
    explicit ZEBASMInterfMainTabCtrl(QWidget* parent = nullptr);

    void AddPage(const std::wstring& title, QWidget* page);
    // Shows page `index` when there is one; the current index follows in any case.
    void SelectPage(int index);
    // -1 until a page is selected.
    int GetCurrentPage() const { return m_current; }

private:
    int m_current = -1;
};
