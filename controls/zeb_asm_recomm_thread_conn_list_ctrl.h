#pragma once

#include <vector>

#include "controls/zeb_list_ctrl.h"
#include "framework/zeb_row.h"

// The table of pairs of the recommended thread types dialog and of the thread size editor: a
// narrow unlabelled column, then the two texts of each pair, typed in text editors.
class CZEBAsmRecommThreadConnListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kFirst = 1, kSecond = 2, kSpareRows = 50 };

    explicit CZEBAsmRecommThreadConnListCtrl(QWidget* parent = nullptr);

    // The columns under the two headings, sized to the table's width, and the spare rows.
    void SetUpPairColumns(const std::wstring& firstHeading, const std::wstring& secondHeading);
    // The stored rows with at least two texts as pairs, upper-cased, sorted and each once, above
    // the spare rows.
    void LoadPairs(const std::vector<ZebRow>& stored);
    // The filled rows in table order, each [first, second] as typed. False, with `halfRow` set,
    // at the first row holding only one of the two texts.
    bool ReadPairs(std::vector<ZebRow>& pairs, int& halfRow) const;
};
