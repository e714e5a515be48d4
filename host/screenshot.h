#pragma once

#include <string>

class QWidget;

// Pictures of the host's windows for the documentation and for machines without a screen: they
// work with any Qt platform, the offscreen one included, since widgets are drawn, not the screen
// read.

// Writes `widget` as drawn to the PNG file `path`; false when it cannot be written.
bool SaveWidgetPicture(QWidget& widget, const std::string& path);

// Once a modal dialog is open, writes its picture to `path` and closes it as Cancel would. A
// dialog with tabs gets one picture per tab: the first at `path`, tab n at `path` with "-n"
// before its extension. `saved` tells afterwards whether every picture was written.
void PictureNextModalDialog(const std::string& path, bool& saved);
