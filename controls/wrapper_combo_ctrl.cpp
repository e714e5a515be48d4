#include "controls/wrapper_combo_ctrl.h"

#include "framework/case_fold.h"

void CWrapperComboCtrl::FillFromList(const std::vector<std::wstring>& texts) {
    clear();
    for (const std::wstring& text : texts) addItem(QString::fromStdWString(text));
}

void CWrapperComboCtrl::CollectItems(std::vector<std::wstring>& texts) const {
    for (int i = 0; i < count(); ++i) {
        const QString text = itemText(i);
        if (!text.isEmpty()) texts.push_back(text.toStdWString());
    }
}

void CWrapperComboCtrl::AddIfAbsent(const std::wstring& text) {
    for (int i = 0; i < count(); ++i)
        if (ZebEqualsNoCase(itemText(i).toStdWString(), text)) return;
    addItem(QString::fromStdWString(text));
}
