#pragma once

#include <string>

#include "dialogs/fastener/fastener_table_dlg.h"

class CZEBAsmFastenerEngagementLenRuleListCtrl;
struct FastenerTableKind;

// The fastener engagement length rule's dialog: per fastener name one engagement length, in the
// parameter 2053.
class CZEBAssemblyFastenerEngagementLenDlg : public CZEBFastenerTableDlg {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 6025,
        kImageId = 13030,
        kGridId = 6036,
        kSeparatorId = 6021,
        kSpareButtonId2 = 9173,
    };

    CZEBAssemblyFastenerEngagementLenDlg(CZebRule* rule, const std::wstring& unitText);

    CZEBAsmFastenerEngagementLenRuleListCtrl* GetGrid() const { return m_grid; }

    // How sheets are imported into this table.
    static const FastenerTableKind& ImportKind();

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;
    void ImportSpreadsheet() override;

private:
    CZEBAsmFastenerEngagementLenRuleListCtrl* m_grid;
    QWidget* m_spareButton2;
};
