#include "framework/ui/control_id.h"

namespace {
constexpr const char* kIdProperty = "zebId";
}

void SetZebControlId(QWidget* control, int id) {
    if (control) control->setProperty(kIdProperty, id);
}

int GetZebControlId(const QWidget* control) {
    if (!control) return 0;
    const QVariant id = control->property(kIdProperty);
    return id.isValid() ? id.toInt() : 0;
}

QWidget* FindZebControl(const QWidget* root, int id) {
    if (!root) return nullptr;
    for (QObject* child : root->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (!widget) continue;
        if (GetZebControlId(widget) == id) return widget;
        if (QWidget* found = FindZebControl(widget, id)) return found;
    }
    return nullptr;
}
