#include "dialogs/common/parameter_controls.h"

#include <QAbstractButton>
#include <QSignalBlocker>
#include <vector>

#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "util/number_text.h"
#include "util/texts.h"

void LoadFirstValue(CDoubleEditEx& field, const ZebTypedParam<double>& param) {
    if (!param.values.IsEmpty())
        field.setText(QString::fromStdWString(FormatNumber(param.values[0])));
}

double ReadNumberField(const CDoubleEditEx& field) {
    const NumberEntry entry = field.Read();
    return entry.Ok() ? entry.value : 0.0;
}

void LoadSwitchBox(QAbstractButton& box, const ZebTypedParam<bool>& param) {
    box.setChecked(!param.values.IsEmpty() && param.values[0]);
}

void StoreSwitchBox(const QAbstractButton& box, ZebTypedParam<bool>& param) {
    StoreFirstValue(param, box.isChecked(), LongerList::FirstReplaced);
}

void LoadOperatorList(CWrapperComboCtrl& list, std::initializer_list<int> codes,
                      OperatorTextFn text, int32_t stored) {
    std::vector<std::wstring> texts;
    for (int code : codes) texts.push_back(text(code));
    // Filling is not a choice of the user's: what follows a change stays out of it.
    const QSignalBlocker quiet(list);
    list.FillFromList(texts);
    list.setCurrentIndex(list.findText(QString::fromStdWString(text(stored))));
}

bool StoreOperatorList(CWrapperComboCtrl& list, int32_t& op) {
    if (list.currentIndex() < 0) {
        // A code the list does not offer stays; the list says which it is.
        list.setPlaceholderText(QString::fromStdWString(OperatorSymbol(op)));
        return false;
    }
    op = OperatorFromText(list.currentText().toStdWString());
    return true;
}

void LoadFlagBox(QAbstractButton& box, const ZebTypedParamBase& param, ParamFlag flag) {
    box.setChecked(flag == ParamFlag::Enabled ? param.status : param.criteriaStatus);
}

void StoreFlagBox(const QAbstractButton& box, ZebTypedParamBase& param, ParamFlag flag) {
    (flag == ParamFlag::Enabled ? param.status : param.criteriaStatus) = box.isChecked();
}
