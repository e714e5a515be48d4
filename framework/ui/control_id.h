#pragma once

#include <QWidget>

#include "framework/ui/fwui_export.h"

// Every control of a dialog carries its numeric control id as the dynamic property "zebId", so
// that code and tests find it by that id.
VANTOR_FWUI_API void SetZebControlId(QWidget* control, int id);
// The control's id; 0 when it has none.
VANTOR_FWUI_API int GetZebControlId(const QWidget* control);
// The first descendant of `root` (depth first, creation order) carrying `id`; null when none.
VANTOR_FWUI_API QWidget* FindZebControl(const QWidget* root, int id);

// `control`, carrying `id`: dialogs make and name a control in one expression.
template <class Control>
Control* WithZebControlId(Control* control, int id) {
    SetZebControlId(control, id);
    return control;
}

template <class T>
T* FindZebControlAs(const QWidget* root, int id) {
    return qobject_cast<T*>(FindZebControl(root, id));
}
