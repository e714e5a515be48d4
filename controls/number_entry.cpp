#include "controls/number_entry.h"

#include <QPalette>
#include <QVariant>
#include <QWidget>

#include "app/assembly_rules_app.h"

namespace {
constexpr const char* kRefusedProperty = "zebRefused";
}  // namespace

std::wstring NumberFaultText(NumberTextFault fault) {
    switch (fault) {
        case NumberTextFault::Negative:
            return LoadLocalizedString(IDS_VALUE_NEGATIVE);
        case NumberTextFault::Ambiguous:
            return LoadLocalizedString(IDS_VALUE_AMBIGUOUS);
        case NumberTextFault::None:
            return {};
        case NumberTextFault::Empty:
        case NumberTextFault::NotNumber:
            break;
    }
    return LoadLocalizedString(IDS_VALUE_NOT_A_NUMBER);
}

void MarkRefused(QWidget& editor, bool refused) {
    if (IsMarkedRefused(editor) == refused) return;
    editor.setProperty(kRefusedProperty, refused);
    if (!refused) {
        // An empty palette resolves nothing of its own: the editor looks as before.
        editor.setPalette(QPalette());
        return;
    }
    QPalette palette = editor.palette();
    palette.setColor(QPalette::Base, QColor(255, 215, 215));
    editor.setPalette(palette);
}

bool IsMarkedRefused(const QWidget& editor) { return editor.property(kRefusedProperty).toBool(); }
