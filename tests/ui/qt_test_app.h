#pragma once

#include <QLineEdit>
#include <QWidget>

// The QApplication every UI test runs in (offscreen), created on first use, with the module's
// resource libraries started so that texts and bitmaps load.
void EnsureQtTestApp();

// Shows the window and makes it the active one, so that focus and shortcuts work.
void ShowActive(QWidget* window);

// Replaces the field's text by typing `text` into it, key by key, as a user would.
void Type(QLineEdit* field, const char* text);
