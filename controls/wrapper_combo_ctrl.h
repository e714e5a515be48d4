#pragma once

#include <QComboBox>
#include <string>
#include <vector>

// Drop-down list of the dialogs (severities, operators, names).
class CWrapperComboCtrl : public QComboBox {
    Q_OBJECT
public:
    explicit CWrapperComboCtrl(QWidget* parent = nullptr) : QComboBox(parent) {}

    // Replaces every entry by the texts, in order.
    void FillFromList(const std::vector<std::wstring>& texts);
    // Appends the text of every non-empty entry, in order.
    void CollectItems(std::vector<std::wstring>& texts) const;
    // Adds the text at the end unless an entry already reads the same, ignoring letter case.
    void AddIfAbsent(const std::wstring& text);
};
