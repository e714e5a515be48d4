#include "dialogs/database/material_pair_dlg.h"

#include <QDialogButtonBox>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "framework/ui/dialog_buttons.h"
#include "framework/ui/dialog_shape.h"
#include "framework/ui/ui_service.h"

CEditMaterialPairDlg::CEditMaterialPairDlg(QWidget* parent, CZebRule* rule, MaterialChoice& target,
                                           std::vector<std::wstring> preChecked)
    : QDialog(parent),
      m_tree(new CZebMaterialTree(WithZebControlId(new QTreeWidget(this), kTreeId),
                                  MaterialParentRule::AllChildrenChecked)),
      m_rule(rule),
      m_target(target),
      m_preChecked(std::move(preChecked)) {
    setWindowTitle(QString::fromStdWString(LoadLocalizedString(IDS_MATERIAL_PAIR_TITLE)));
    new CZebDialogShape(this, kTemplateId);
    m_tree->Widget()->setMinimumSize(300, 360);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tree->Widget(), 1);
    layout->addWidget(MakeZebDialogButtons(this).box);

    m_readFailed = !m_tree->Rebuild();
    for (const std::wstring& name : m_preChecked) m_tree->CheckNamed(name);
    m_tree->ExpandCheckedGroups();
    m_tree->Highlight(m_tree->Root());
}

int CEditMaterialPairDlg::DoModal() {
    if (m_readFailed)
        ZebUiMessage(this, LoadLocalizedString(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
    return exec();
}

void CEditMaterialPairDlg::accept() {
    m_target = m_tree->Checked();
    done(kIdOk);
}

void CEditMaterialPairDlg::reject() { done(kIdCancel); }
