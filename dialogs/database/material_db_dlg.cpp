#include "dialogs/database/material_db_dlg.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>
#include <list>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "database/service/data_helper.h"
#include "framework/case_fold.h"
#include "framework/ui/ui_service.h"
#include "framework/zeb_rule.h"

namespace {
std::wstring Text(ZebStringId id) { return LoadLocalizedString(id); }
QString QText(ZebStringId id) { return QString::fromStdWString(LoadLocalizedString(id)); }

std::wstring FieldText(const QLineEdit* field) {
    return TrimBlanksAndTabs(field->text().toStdWString());
}

QPushButton* NewButton(QWidget* parent, int id, ZebStringId text) {
    auto* button = WithZebControlId(new QPushButton(QText(text), parent), id);
    // Which button Enter presses follows the fields, not the focus.
    button->setAutoDefault(false);
    return button;
}
}  // namespace

CEditMaterialDBDlg::CEditMaterialDBDlg(QWidget* parent, CZebRule* rule)
    : CZEBRuleDlgBase(kTemplateId, kImageId, ModuleHelpFilePath(), parent),
      m_groupField(WithZebControlId(new QLineEdit(Body()), kGroupFieldId)),
      m_materialField(WithZebControlId(new QLineEdit(Body()), kMaterialFieldId)),
      m_tree(new CZebMaterialTree(WithZebControlId(new QTreeWidget(Body()), kTreeId),
                                  MaterialParentRule::AnyChildChecked)),
      m_add(NewButton(Body(), kAddId, IDS_ADD_MATERIAL)),
      m_delete(NewButton(Body(), kDeleteId, IDS_DELETE_MATERIAL)),
      m_rule(rule) {
    setWindowTitle(QText(IDS_MATERIAL_DATABASE_TITLE));
    SetHelpTopic(kHelpTopicMaterialDatabase);

    auto* groupLabel = new QLabel(QText(IDS_MATERIAL_GROUP_LABEL), Body());
    auto* materialLabel = new QLabel(QText(IDS_MATERIAL_NAME_LABEL), Body());
    groupLabel->setBuddy(m_groupField);
    materialLabel->setBuddy(m_materialField);
    auto* layout = new QGridLayout(Body());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(groupLabel, 0, 0);
    layout->addWidget(m_groupField, 0, 1);
    layout->addWidget(m_add, 0, 2);
    layout->addWidget(materialLabel, 1, 0);
    layout->addWidget(m_materialField, 1, 1);
    layout->addWidget(m_delete, 1, 2);
    layout->addWidget(m_tree->Widget(), 2, 0, 1, 3);
    layout->setRowStretch(2, 1);
    m_tree->Widget()->setMinimumSize(360, 320);

    connect(m_add, &QPushButton::clicked, this, [this] { OnAdd(); });
    connect(m_delete, &QPushButton::clicked, this, [this] { OnDelete(); });
    connect(m_groupField, &QLineEdit::textChanged, this, [this] { OnFieldsChanged(); });
    connect(m_materialField, &QLineEdit::textChanged, this, [this] { OnFieldsChanged(); });
    connect(m_tree, &CZebMaterialTree::HighlightChanged, this,
            [this](QTreeWidgetItem* item) { ShowItem(item); });
    connect(m_tree, &CZebMaterialTree::Clicked, this,
            [this](QTreeWidgetItem* item) { OnItemClicked(item); });
}

bool CEditMaterialDBDlg::OnInitDialog() {
    CZEBRuleDlgBase::OnInitDialog();
    if (!m_tree->Rebuild()) Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
    if (m_rule && !m_rule->MaterialSelection.empty())
        m_tree->MarkChoice(
            MaterialChoice(m_rule->MaterialSelection.begin(), m_rule->MaterialSelection.end()));
    m_tree->ExpandCheckedGroups();
    m_tree->Highlight(m_tree->Root());
    m_delete->setEnabled(m_tree->Root() != nullptr);
    ClearFields();
    return true;
}

void CEditMaterialDBDlg::ShowItem(QTreeWidgetItem* item) {
    if (!item) return;
    const std::wstring name = CZebMaterialTree::NameOf(item);
    if (CZebMaterialTree::IsMaterial(item)) {
        m_groupField->setText(QString::fromStdWString(CZebMaterialTree::NameOf(item->parent())));
        m_materialField->setText(QString::fromStdWString(name));
    } else if (CZebMaterialTree::IsGroup(item)) {
        m_groupField->setText(QString::fromStdWString(name));
        m_materialField->clear();
    } else {
        m_groupField->clear();
        m_materialField->clear();
    }
}

void CEditMaterialDBDlg::OnItemClicked(QTreeWidgetItem* item) {
    ShowItem(item);
    const bool belowRoot = item && item->parent();
    m_groupField->setEnabled(belowRoot);
    m_materialField->setEnabled(belowRoot);
    m_delete->setEnabled(belowRoot);
}

void CEditMaterialDBDlg::OnFieldsChanged() {
    const bool addable = !FieldText(m_groupField).empty() && !FieldText(m_materialField).empty();
    m_add->setEnabled(addable);
    auto* ok = qobject_cast<QPushButton*>(GetDlgItem(kIdOk));
    if (ok) ok->setDefault(!addable);
    m_add->setDefault(addable);
}

void CEditMaterialDBDlg::ClearFields() {
    m_groupField->clear();
    m_materialField->clear();
    // Clearing an empty field changes nothing, so Add is not always told.
    OnFieldsChanged();
}

int CEditMaterialDBDlg::Message(const std::wstring& text, ZebMsgIcon icon, ZebMsgButtons buttons) {
    IZebUiService* ui = GetZebUiService();
    return ui ? ui->MessageBox(this, Text(IDS_MATERIAL_DATABASE_TITLE), text, icon, buttons)
              : ZebFirstButtonAnswer(buttons);
}

void CEditMaterialDBDlg::RebuildKeepingChecks() {
    const CZebMaterialTree::Snapshot snapshot = m_tree->Remember();
    if (!m_tree->Rebuild()) Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
    m_tree->Reapply(snapshot);
}

bool CEditMaterialDBDlg::MayAdd(IDatabaseCollector& db, const std::wstring& material) {
    // A name that cannot be checked is not added.
    std::list<std::wstring> groups;
    if (db.GetMaterialGroups(groups, 0) != ZebDbOk) {
        Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        return false;
    }
    for (const std::wstring& group : groups) {
        if (material == group) {
            Message(ZebFormatText(Text(IDS_MATERIAL_NAME_IS_GROUP), {material}),
                    ZebMsgIcon::Information);
            return false;
        }
        if (db.MaterialExistsInGroup(material, group, 0) != 0) {
            Message(ZebFormatText(Text(IDS_DATABASE_ENTRY_EXISTS), {material, group}),
                    ZebMsgIcon::Information);
            return false;
        }
    }
    return true;
}

void CEditMaterialDBDlg::OnAdd() {
    std::wstring group = FieldText(m_groupField);
    const std::wstring material = FieldText(m_materialField);
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    // A refused name is not added anyway: the message has said so and the fields are emptied.
    if (!db) {
        Message(Text(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
    } else if (MayAdd(*db, material)) {
        const int32_t result = db->AddMaterial(group, material, 0);
        if (result == ZebDbExists) {
            Message(ZebFormatText(Text(IDS_DATABASE_ENTRY_EXISTS), {material, group}),
                    ZebMsgIcon::Information);
        } else if (result != ZebDbOk) {
            Message(Text(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
        } else {
            m_delete->setEnabled(true);
            RebuildKeepingChecks();
            // The group as stored (an existing group keeps its letter case); as typed when the
            // database cannot say.
            std::list<std::wstring> groups;
            if (db->GetMaterialGroups(groups, 0) != ZebDbOk) groups.clear();
            const auto stored =
                std::find_if(groups.begin(), groups.end(),
                             [&](const std::wstring& g) { return ZebEqualsNoCase(g, group); });
            if (stored != groups.end()) group = *stored;
            if (QTreeWidgetItem* added = m_tree->FindMaterial(group, material)) {
                m_tree->Check(added, true);
                m_tree->Widget()->scrollToItem(added);
            }
            Message(ZebFormatText(Text(IDS_MATERIAL_ADDED), {material, group}),
                    ZebMsgIcon::Information);
            m_added.emplace_back(group, material);
        }
    }
    ClearFields();
}

void CEditMaterialDBDlg::OnDelete() {
    std::wstring group = FieldText(m_groupField);
    std::wstring material = FieldText(m_materialField);
    if (group.empty() && material.empty() && !m_tree->Highlighted()) {
        Message(Text(IDS_SELECT_MATERIAL_TO_DELETE), ZebMsgIcon::Warning);
        return;
    }
    if (group.empty() && m_tree->Highlighted()) {
        Message(Text(IDS_SELECT_GROUP_TO_DELETE), ZebMsgIcon::Warning);
        return;
    }
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db) {
        Message(Text(IDS_DATABASE_DELETE_FAILED), ZebMsgIcon::Error);
        ClearFields();
        return;
    }

    ZebMaterialPairList pairs;
    if (db->GetMaterialPairs(pairs, 0) != ZebDbOk) {
        Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        ClearFields();
        return;
    }
    for (const auto& [storedGroup, storedMaterial] : pairs) {
        if (!ZebEqualsNoCase(storedGroup, group)) continue;
        group = storedGroup;
        if (ZebEqualsNoCase(storedMaterial, material)) {
            material = storedMaterial;
            break;
        }
    }
    const int32_t use = db->CheckMaterialUse(material, group, 0);
    if (use == ZebDbFailed) {
        Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        ClearFields();
        return;
    }
    if (use == 0) {
        const bool shown = !material.empty() && m_tree->FindMaterial(group, material);
        Message(Text(shown ? IDS_MATERIAL_IN_USE : IDS_MATERIAL_GROUP_IN_USE), ZebMsgIcon::Warning);
        m_groupField->clear();
        m_materialField->clear();
    }

    const bool one = !material.empty();
    const std::wstring question =
        ZebFormatText(Text(IDS_CONFIRM_MATERIAL_DELETE),
                      {Text(one ? IDS_WORD_MATERIAL : IDS_WORD_GROUP), one ? material : group});
    if (Message(question, ZebMsgIcon::Question, ZebMsgButtons::YesNo) == ZebIdYes) {
        if (one)
            DeleteMaterial(*db, group, material);
        else
            DeleteGroup(*db, group);
    }

    if (!m_tree->Root()) m_delete->setEnabled(false);
    ClearFields();
}

void CEditMaterialDBDlg::DeleteMaterial(IDatabaseCollector& db, const std::wstring& group,
                                        const std::wstring& material) {
    if (group.empty() || material.empty()) {
        Message(Text(IDS_MATERIAL_NAME_MISSING), ZebMsgIcon::Information);
        return;
    }
    DeletePairs(db, {{group, material}}, IDS_WORD_MATERIAL, material);
}

void CEditMaterialDBDlg::DeleteGroup(IDatabaseCollector& db, const std::wstring& group) {
    std::wstring list;
    if (db.GetGroupMaterials(group, list, 0) != ZebDbOk) {
        Message(Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        return;
    }
    ZebMaterialPairList pairs;
    for (std::wstring& material : SplitMaterialList(list))
        pairs.emplace_back(group, std::move(material));
    if (!pairs.empty()) DeletePairs(db, pairs, IDS_WORD_GROUP, group);
}

void CEditMaterialDBDlg::DeletePairs(IDatabaseCollector& db, const ZebMaterialPairList& pairs,
                                     ZebStringId word, const std::wstring& name) {
    bool anyDeleted = false;
    for (const ZebMaterialPair& pair : pairs) {
        if (db.DeleteMaterial(pair.first, pair.second, 0) != ZebDbOk) {
            Message(Text(IDS_DATABASE_DELETE_FAILED), ZebMsgIcon::Error);
            continue;
        }
        anyDeleted = true;
        RecordDeleted(pair);
    }
    if (!anyDeleted) return;
    Message(ZebFormatText(Text(IDS_MATERIAL_DELETED), {Text(word), name}), ZebMsgIcon::Information);
    RebuildKeepingChecks();
}

void CEditMaterialDBDlg::RecordDeleted(const ZebMaterialPair& pair) {
    // A pair added in this dialog is simply no longer to be taken back; restoring it on Cancel
    // would leave it in a database that never had it.
    const auto added = std::find_if(m_added.begin(), m_added.end(), [&](const ZebMaterialPair& a) {
        return ZebEqualsNoCase(a.first, pair.first) && ZebEqualsNoCase(a.second, pair.second);
    });
    if (added != m_added.end())
        m_added.erase(added);
    else
        m_deleted.push_back(pair);
}

void CEditMaterialDBDlg::OnOK() {
    if (m_rule) {
        const MaterialChoice choice = m_tree->Checked();
        m_rule->MaterialSelection.assign(choice.begin(), choice.end());
    }
    m_added.clear();
    CZEBRuleDlgBase::OnOK();
}

void CEditMaterialDBDlg::OnCancel() {
    if (!m_added.empty() || !m_deleted.empty()) {
        if (Message(Text(IDS_CONFIRM_UNDO_MATERIAL_CHANGES), ZebMsgIcon::Question,
                    ZebMsgButtons::YesNo) != ZebIdYes)
            return;
        // Both lists are taken back together or not at all; a failure keeps the dialog open with
        // its lists, so that the user may try again or keep the changes with OK.
        IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
        if (!db || db->UndoMaterialChanges(m_added, m_deleted, 0) != ZebDbOk) {
            Message(Text(IDS_DATABASE_UNDO_FAILED), ZebMsgIcon::Error);
            return;
        }
        m_added.clear();
        m_deleted.clear();
    }
    CZEBRuleDlgBase::OnCancel();
}
