#pragma once

#include "controls/zeb_list_ctrl.h"

// Component table of the interference, minimum clearance and preferred components dialogs. Its
// dialog sets the mode once, from the rule it serves: the preferred components table lists names
// in columns 2 to 4; a pair table lists part pairs in columns 1 and 2 with a number in column 3.
class CZEBAsmRuleListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kTooltipBuffer = 80 };
    enum class Mode { PartPairs, PreferredComponents };

    explicit CZEBAsmRuleListCtrl(QWidget* parent = nullptr) : CZEBListCtrl(parent) {}

    // A pair table (the default) names chosen part files as `naming` says; the preferred
    // components table always by file name.
    void SetMode(Mode mode, PartFileNaming naming = PartFileNaming::FileName);
    Mode GetMode() const { return m_mode; }
    bool IsPreferredComponentsMode() const { return m_mode == Mode::PreferredComponents; }

    // The rule table's look, `headers` sharing `width` pixels, the table just wide enough for
    // them, and `rows` empty rows.
    void SetUpColumns(const std::vector<std::wstring>& headers, int width, int rows);

    // Columns 1 to 4 take text; a click there never selects.
    CellEditor EditorOf(int row, int column) const override;

protected:
    // A right click on a component cell chooses its part file.
    bool OnCellRightClick(const QPoint& point) override;
    bool UsesRightClick() const override { return true; }
    // In pair mode column 3 holds a clearance.
    bool IsNumberCell(int row, int column) const override;
    std::wstring GetCellTooltip(int row, int column) const override;

private:
    bool IsBrowseColumn(int column) const;

    Mode m_mode = Mode::PartPairs;
    PartFileNaming m_pairNaming = PartFileNaming::FileName;
};
