#pragma once

#include <functional>

// What the vantor-tools commands that open a window share: a Qt application, the module's
// resources started and current while `show` runs. 1, after a message, when the resources cannot
// be loaded; otherwise what `show` returns.
int RunWindowCommand(const std::function<int()>& show);
