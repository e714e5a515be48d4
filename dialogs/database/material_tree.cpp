#include "dialogs/database/material_tree.h"

#include <QTreeWidget>
#include <algorithm>
#include <list>

#include "app/assembly_rules_app.h"
#include "database/service/data_helper.h"
#include "framework/case_fold.h"

std::wstring TrimBlanksAndTabs(const std::wstring& text) {
    const size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

std::vector<std::wstring> SplitMaterialList(const std::wstring& list) {
    std::vector<std::wstring> names;
    size_t start = 0;
    while (start < list.size()) {
        const size_t end = std::min(list.find(L';', start), list.size());
        if (end == start) break;
        names.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

namespace {
QTreeWidgetItem* NewItem(QTreeWidgetItem* parent, const std::wstring& name) {
    auto* item = new QTreeWidgetItem(parent, {QString::fromStdWString(TrimBlanksAndTabs(name))});
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    return item;
}

// The order of the tree's materials: the service's alphabetical order, letter case aside.
bool MaterialBefore(const std::wstring& a, const std::wstring& b) {
    const std::wstring foldedA = ZebFoldCase(a), foldedB = ZebFoldCase(b);
    return foldedA != foldedB ? foldedA < foldedB : a < b;
}

std::vector<std::wstring> PathOf(const QTreeWidgetItem* item) {
    std::vector<std::wstring> path;
    for (; item; item = item->parent()) path.insert(path.begin(), CZebMaterialTree::NameOf(item));
    return path;
}

QTreeWidgetItem* ChildNamed(QTreeWidgetItem* parent, const std::wstring& name) {
    for (int i = 0; parent && i < parent->childCount(); ++i)
        if (ZebEqualsNoCase(CZebMaterialTree::NameOf(parent->child(i)), name))
            return parent->child(i);
    return nullptr;
}

QTreeWidgetItem* ItemAt(QTreeWidgetItem* root, const std::vector<std::wstring>& path) {
    if (!root || path.empty() || CZebMaterialTree::NameOf(root) != path.front()) return nullptr;
    QTreeWidgetItem* item = root;
    for (size_t i = 1; item && i < path.size(); ++i) item = ChildNamed(item, path[i]);
    return item;
}

template <class Visit>
void ForEachItem(QTreeWidgetItem* item, const Visit& visit) {
    if (!item) return;
    visit(item);
    for (int i = 0; i < item->childCount(); ++i) ForEachItem(item->child(i), visit);
}
}  // namespace

CZebMaterialTree::CZebMaterialTree(QTreeWidget* tree, MaterialParentRule rule)
    : QObject(tree), m_tree(tree), m_rule(rule) {
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(true);
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(m_tree, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem* item, int) { OnItemChanged(item); });
    connect(m_tree, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* current) { emit HighlightChanged(current); });
    connect(m_tree, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { emit Clicked(item); });
}

bool CZebMaterialTree::Rebuild() {
    m_updating = true;
    m_tree->clear();
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    std::list<std::wstring> groups;
    bool read = true;
    if (db && (read = db->GetMaterialGroups(groups, 0) == ZebDbOk)) {
        auto* root = NewItem(nullptr, LoadLocalizedString(IDS_MATERIALS_ROOT));
        m_tree->addTopLevelItem(root);
        for (const std::wstring& group : groups) {
            QTreeWidgetItem* groupItem = NewItem(root, group);
            std::wstring list;
            if (db->GetGroupMaterials(group, list, 0) != ZebDbOk) read = false;
            std::vector<std::wstring> materials = SplitMaterialList(list);
            std::sort(materials.begin(), materials.end(), MaterialBefore);
            for (const std::wstring& material : materials) NewItem(groupItem, material);
        }
        root->setExpanded(true);
    }
    m_updating = false;
    return read;
}

QTreeWidgetItem* CZebMaterialTree::Root() const { return m_tree->topLevelItem(0); }

QTreeWidgetItem* CZebMaterialTree::Highlighted() const { return m_tree->currentItem(); }

void CZebMaterialTree::Highlight(QTreeWidgetItem* item) { m_tree->setCurrentItem(item); }

void CZebMaterialTree::Check(QTreeWidgetItem* item, bool checked) {
    // The change runs through OnItemChanged exactly as a click on the box does.
    if (item) item->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
}

void CZebMaterialTree::CheckNamed(const std::wstring& name) {
    std::vector<QTreeWidgetItem*> named;
    for (int g = 0; Root() && g < Root()->childCount(); ++g)
        ForEachItem(Root()->child(g), [&](QTreeWidgetItem* item) {
            if (ZebEqualsNoCase(NameOf(item), name)) named.push_back(item);
        });
    for (QTreeWidgetItem* item : named) Check(item, true);
}

void CZebMaterialTree::MarkChoice(const MaterialChoice& choice) {
    for (const auto& [group, materials] : choice) {
        QTreeWidgetItem* groupItem = ChildNamed(Root(), group);
        if (!groupItem) continue;
        Mark(groupItem, true);
        for (const std::wstring& material : materials) Mark(ChildNamed(groupItem, material), true);
        UpdateAncestors(groupItem);
    }
}

QTreeWidgetItem* CZebMaterialTree::FindMaterial(const std::wstring& group,
                                                const std::wstring& material) const {
    return ChildNamed(ChildNamed(Root(), group), material);
}

void CZebMaterialTree::ExpandCheckedGroups() {
    for (int g = 0; Root() && g < Root()->childCount(); ++g) {
        QTreeWidgetItem* group = Root()->child(g);
        for (int m = 0; m < group->childCount(); ++m)
            if (IsChecked(group->child(m))) group->setExpanded(true);
    }
}

CZebMaterialTree::Snapshot CZebMaterialTree::Remember() const {
    Snapshot snapshot;
    ForEachItem(Root(), [&](QTreeWidgetItem* item) {
        if (IsChecked(item)) snapshot.checked.insert(PathOf(item));
        if (item->isExpanded()) snapshot.expanded.insert(PathOf(item));
    });
    return snapshot;
}

void CZebMaterialTree::Reapply(const Snapshot& snapshot) {
    for (const std::vector<std::wstring>& path : snapshot.checked) Mark(ItemAt(Root(), path), true);
    for (const std::vector<std::wstring>& path : snapshot.expanded)
        if (QTreeWidgetItem* item = ItemAt(Root(), path)) item->setExpanded(true);
}

MaterialChoice CZebMaterialTree::Checked() const {
    MaterialChoice choice;
    for (int g = 0; Root() && g < Root()->childCount(); ++g) {
        const QTreeWidgetItem* group = Root()->child(g);
        std::vector<std::wstring> materials;
        for (int m = 0; m < group->childCount(); ++m)
            if (IsChecked(group->child(m))) materials.push_back(NameOf(group->child(m)));
        // Under "all children" a group keeps no mark for a part of its materials, yet that part
        // is still the user's choice.
        if (IsChecked(group) || !materials.empty()) choice[NameOf(group)] = std::move(materials);
    }
    return choice;
}

std::wstring CZebMaterialTree::NameOf(const QTreeWidgetItem* item) {
    return item ? item->text(0).toStdWString() : std::wstring();
}

bool CZebMaterialTree::IsChecked(const QTreeWidgetItem* item) {
    return item && item->checkState(0) == Qt::Checked;
}

bool CZebMaterialTree::IsGroup(const QTreeWidgetItem* item) {
    return item && item->parent() && !item->parent()->parent();
}

bool CZebMaterialTree::IsMaterial(const QTreeWidgetItem* item) {
    return item && item->parent() && item->parent()->parent();
}

void CZebMaterialTree::OnItemChanged(QTreeWidgetItem* item) {
    // Labels never change after a build, so any other change is the user's check box.
    if (m_updating) return;
    Highlight(item);
    m_updating = true;
    SetSubtree(item, IsChecked(item));
    UpdateAncestors(item);
    m_updating = false;
}

void CZebMaterialTree::SetSubtree(QTreeWidgetItem* item, bool checked) {
    for (int i = 0; i < item->childCount(); ++i) {
        Mark(item->child(i), checked);
        SetSubtree(item->child(i), checked);
    }
}

void CZebMaterialTree::UpdateAncestors(QTreeWidgetItem* item) {
    for (QTreeWidgetItem* parent = item->parent(); parent; parent = parent->parent()) {
        int checked = 0;
        for (int i = 0; i < parent->childCount(); ++i) checked += IsChecked(parent->child(i));
        Mark(parent, m_rule == MaterialParentRule::AnyChildChecked
                         ? checked > 0
                         : checked == parent->childCount());
    }
}

void CZebMaterialTree::Mark(QTreeWidgetItem* item, bool checked) {
    if (!item) return;
    const bool updating = m_updating;
    m_updating = true;
    item->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    m_updating = updating;
}
