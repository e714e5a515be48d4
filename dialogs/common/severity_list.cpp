#include "dialogs/common/severity_list.h"

#include <list>
#include <string>
#include <vector>

#include "controls/wrapper_combo_ctrl.h"
#include "util/texts.h"

void LoadSeverityList(CWrapperComboCtrl& list, int32_t severity) {
    std::list<std::wstring> names;
    FillSeverityNames(names);
    list.FillFromList(std::vector<std::wstring>(names.begin(), names.end()));
    list.setCurrentIndex(SeverityComboIndex(severity));
}

void StoreSeverityList(CWrapperComboCtrl& list, int32_t& severity) {
    if (list.currentIndex() < 0) {
        list.setCurrentIndex(SeverityComboIndex(severity));
        return;
    }
    severity = SeverityFromName(list.currentText().toStdWString());
}
