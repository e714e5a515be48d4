#pragma once

#include <string>

#include "util/number_text.h"

class QWidget;

// What the user is told about a value that cannot be taken, in the user's language.
std::wstring NumberFaultText(NumberTextFault fault);

// Marks a box or cell editor whose text was refused (a reddish background), or clears the mark.
void MarkRefused(QWidget& editor, bool refused);
bool IsMarkedRefused(const QWidget& editor);
