#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "dialogs/database/material_tree.h"
#include "framework/ui/control_id.h"

class CZebRule;

// Chooses the materials of one side of a contact material pair from the material database tree.
// The database is only read.
class CEditMaterialPairDlg : public QDialog {
    Q_OBJECT
public:
    enum : int { kTemplateId = 7034, kIdOk = 1, kIdCancel = 2, kTreeId = 7039 };

    // `target` receives the checked groups and materials on OK; `preChecked` names the groups and
    // materials checked at opening. `rule` is only handed through for the caller.
    CEditMaterialPairDlg(QWidget* parent, CZebRule* rule, MaterialChoice& target,
                         std::vector<std::wstring> preChecked);

    // Runs the dialog modally: 1 after OK, 2 after Cancel.
    int DoModal();

    QWidget* GetDlgItem(int id) const { return FindZebControl(this, id); }
    CZebMaterialTree& GetTree() const { return *m_tree; }
    CZebRule* GetRule() const { return m_rule; }

    void accept() override;
    void reject() override;

private:
    CZebMaterialTree* m_tree;
    CZebRule* m_rule;
    MaterialChoice& m_target;
    std::vector<std::wstring> m_preChecked;
    bool m_readFailed = false;
};
