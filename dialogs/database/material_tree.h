#pragma once

#include <QObject>
#include <map>
#include <set>
#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

// Group name -> the chosen materials of that group (possibly none).
using MaterialChoice = std::map<std::wstring, std::vector<std::wstring>>;

// `text` without blanks and tabs at either end.
std::wstring TrimBlanksAndTabs(const std::wstring& text);
// The names of a material list as the service gives it ("A;B;"): each up to the next ";", ending
// at the first empty one.
std::vector<std::wstring> SplitMaterialList(const std::wstring& list);

// When a group (or the root) shows a check mark, given the check marks of its children.
enum class MaterialParentRule { AnyChildChecked, AllChildrenChecked };

// The material database as a tree with check boxes, over a QTreeWidget of the dialog: one root,
// the groups in the service's order, under each its materials in sorted order. A change of a
// check box, by click or keyboard, sets the item's whole subtree to its new state and updates
// its ancestors by the parent rule.
class CZebMaterialTree : public QObject {
    Q_OBJECT
public:
    // The check marks of a tree, by the names along each item's path, to be put back after a
    // rebuild.
    struct Snapshot {
        std::set<std::vector<std::wstring>> checked;
        std::set<std::vector<std::wstring>> expanded;
    };

    CZebMaterialTree(QTreeWidget* tree, MaterialParentRule rule);

    // Builds the tree anew from the database service and expands the root; without the service
    // the tree stays empty. False when the database could not be read: the tree then holds what
    // was read, and the caller tells the user.
    [[nodiscard]] bool Rebuild();

    QTreeWidget* Widget() const { return m_tree; }
    // Null while the tree is empty.
    QTreeWidgetItem* Root() const;
    QTreeWidgetItem* Highlighted() const;
    void Highlight(QTreeWidgetItem* item);

    // Sets the check box as a click on it does: subtree and ancestors follow.
    void Check(QTreeWidgetItem* item, bool checked);
    // Checks, as a click would, every group and material named `name` (letter case aside).
    void CheckNamed(const std::wstring& name);
    // Marks the groups that are keys of `choice` and, under each, the materials of its list; no
    // other item follows, except the root by the parent rule.
    void MarkChoice(const MaterialChoice& choice);
    // The material `material` of group `group` (letter case aside); null when the tree lacks it.
    QTreeWidgetItem* FindMaterial(const std::wstring& group, const std::wstring& material) const;

    // Opens every group that holds a checked material, so that a choice is seen at once.
    void ExpandCheckedGroups();

    Snapshot Remember() const;
    // Marks again what `snapshot` holds and the tree still has; nothing else changes.
    void Reapply(const Snapshot& snapshot);

    // Every group that is checked or holds a checked material, with its checked materials.
    MaterialChoice Checked() const;

    static std::wstring NameOf(const QTreeWidgetItem* item);
    static bool IsChecked(const QTreeWidgetItem* item);
    static bool IsGroup(const QTreeWidgetItem* item);
    static bool IsMaterial(const QTreeWidgetItem* item);

signals:
    // The highlighted item changed, by click, keyboard or code (null: none).
    void HighlightChanged(QTreeWidgetItem* item);
    // The user clicked an item, on its label or its check box.
    void Clicked(QTreeWidgetItem* item);

private:
    void OnItemChanged(QTreeWidgetItem* item);
    void SetSubtree(QTreeWidgetItem* item, bool checked);
    void UpdateAncestors(QTreeWidgetItem* item);
    // Sets a check box without the click rules.
    void Mark(QTreeWidgetItem* item, bool checked);

    QTreeWidget* m_tree;
    MaterialParentRule m_rule;
    // Set while the tree changes its own check boxes, which must not count as clicks.
    bool m_updating = false;
};
