#pragma once

#include <QTabWidget>
#include <string>
#include <vector>

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
    QWidget* GetPage(int index) const;
    int GetPageCount() const { return static_cast<int>(m_pages.size()); }

private:
    std::vector<std::wstring> m_titles;
    std::vector<QWidget*> m_pages;
    int m_current = -1;
};
