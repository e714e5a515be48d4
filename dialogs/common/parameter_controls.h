#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>

#include "framework/param_storage.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class QAbstractButton;

// What the small rule dialogs do with a parameter's controls, each written once: a number field
// over element 0 of a number list, an operator drop-down over the parameter's operator, and a
// check box over its enabled or criteria status.

// Element 0 as number text; the field stays as it is when the list is empty.
void LoadFirstValue(CDoubleEditEx& field, const ZebTypedParam<double>& param);
// The field's number (0 for one that cannot be read; OK refuses those before anything is stored).
double ReadNumberField(const CDoubleEditEx& field);

// What storing into a list of more than one value does.
enum class LongerList { LeftAlone, FirstReplaced };
// `value` over element 0, or appended to an empty list. False when nothing was written (a longer
// list left alone).
template <class T>
bool StoreFirstValue(ZebTypedParam<T>& param, std::type_identity_t<T> value, LongerList longer) {
    if (param.values.IsEmpty()) {
        param.values.Add(value);
        return true;
    }
    if (param.values.GetSize() > 1 && longer == LongerList::LeftAlone) return false;
    param.values[0] = value;
    return true;
}

// A check box over element 0 of a list of switches: unchecked when the list is empty; stored over
// element 0, or appended to an empty list.
void LoadSwitchBox(QAbstractButton& box, const ZebTypedParam<bool>& param);
void StoreSwitchBox(const QAbstractButton& box, ZebTypedParam<bool>& param);

// How a drop-down writes operator codes: OperatorSymbol or OperatorToText.
using OperatorTextFn = std::wstring (*)(int code);
// The texts of `codes` in order, with the entry reading as `stored` selected; nothing is selected
// when no entry does. The list's change signals stay quiet while it is filled.
void LoadOperatorList(CWrapperComboCtrl& list, std::initializer_list<int> codes,
                      OperatorTextFn text, int32_t stored);
// The selected operator into `op`. With nothing selected `op` stays, the drop-down shows its
// symbol again, and the result is false.
bool StoreOperatorList(CWrapperComboCtrl& list, int32_t& op);

// Which flag of a parameter a check box shows.
enum class ParamFlag { Enabled, Criteria };
void LoadFlagBox(QAbstractButton& box, const ZebTypedParamBase& param, ParamFlag flag);
void StoreFlagBox(const QAbstractButton& box, ZebTypedParamBase& param, ParamFlag flag);
