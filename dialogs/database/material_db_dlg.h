#pragma once

#include <string>

#include "database/service/database_collector.h"
#include "dialogs/database/material_tree.h"
#include "framework/ui/rule_dlg_base.h"
#include "framework/ui_message.h"
#include "resources/string_ids.h"

class CZebRule;
class QLineEdit;
class QPushButton;
class QTreeWidgetItem;

// The material database as a tree: adds and deletes materials and groups in the database at
// once (Cancel takes them back) and, on OK, keeps the checked groups and materials as the rule's
// material selection.
class CEditMaterialDBDlg : public CZEBRuleDlgBase {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 7066,
        kImageId = 7010,
        kTreeId = 7026,
        kGroupFieldId = 7030,
        kAddId = 7031,
        kDeleteId = 7032,
        kMaterialFieldId = 7033,
    };

    // The caller makes the localized resource library current while the dialog runs.
    CEditMaterialDBDlg(QWidget* parent, CZebRule* rule);

    CZebMaterialTree& GetTree() const { return *m_tree; }
    const ZebMaterialPairList& GetAddedPairs() const { return m_added; }
    const ZebMaterialPairList& GetDeletedPairs() const { return m_deleted; }

    bool OnInitDialog() override;
    void OnAdd();
    void OnDelete();
    void OnOK() override;
    void OnCancel() override;

private:
    void ShowItem(QTreeWidgetItem* item);
    void OnItemClicked(QTreeWidgetItem* item);
    void OnFieldsChanged();
    // Empties both fields and disables Add: how every Add and Delete ends.
    void ClearFields();
    // Pre-checks of Add; false (after a message) when the material must not be added.
    bool MayAdd(IDatabaseCollector& db, const std::wstring& material);
    void DeleteMaterial(IDatabaseCollector& db, const std::wstring& group,
                        const std::wstring& material);
    void DeleteGroup(IDatabaseCollector& db, const std::wstring& group);
    // Deletes the pairs; after any success says so with `word` and `name` and shows the tree
    // again.
    void DeletePairs(IDatabaseCollector& db, const ZebMaterialPairList& pairs, ZebStringId word,
                     const std::wstring& name);
    void RecordDeleted(const ZebMaterialPair& pair);
    void RebuildKeepingChecks();
    int Message(const std::wstring& text, ZebMsgIcon icon,
                ZebMsgButtons buttons = ZebMsgButtons::Ok);

    QLineEdit* m_groupField;
    QLineEdit* m_materialField;
    CZebMaterialTree* m_tree;
    QPushButton* m_add;
    QPushButton* m_delete;
    ZebMaterialPairList m_added;
    ZebMaterialPairList m_deleted;
    CZebRule* m_rule;
};
