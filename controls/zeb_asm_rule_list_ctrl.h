#pragma once

#include "controls/zeb_list_ctrl.h"

// Component table of the interference, minimum clearance and preferred components dialogs. The
// rule name decides the mode: the preferred components rule lists names in columns 2 to 4; every
// other rule lists pairs in columns 1 and 2 with a number in column 3.
class CZEBAsmRuleListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kTooltipBuffer = 80 };

    explicit CZEBAsmRuleListCtrl(QWidget* parent = nullptr) : CZEBListCtrl(parent) {}

    void SetRuleName(const std::wstring& name) { m_ruleName = name; }
    const std::wstring& GetRuleName() const { return m_ruleName; }
    // Compared with string 7000 of the current resource library at every use.
    bool IsPreferredComponentsMode() const;

    // Only on a table without columns: a 20 pixel column 0, the rest share the remaining width.
    void SetNumberedColumns(const std::vector<std::wstring>& headers, int totalWidth);

    // True when the click fell on an editable column; other columns select as usual.
    bool OnLeftButtonDown(const QPoint& point);
    void OnRightClick(const QPoint& point);
    long KeyHandler(QEvent* event) override;

protected:
    std::wstring GetCellTooltip(int row, int column) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool IsBrowseColumn(int column) const;
    // Commits the text editor; in pair mode a number column that is not numeric is emptied.
    long CommitChecked();

    std::wstring m_ruleName;
};
