#pragma once

#include <QLineEdit>
#include <QWidget>
#include <vector>

// The QApplication every UI test runs in (offscreen), created on first use, with the module's
// resource libraries started so that texts and bitmaps load.
void EnsureQtTestApp();

// Shows the window and makes it the active one, so that focus and shortcuts work.
void ShowActive(QWidget* window);

// Replaces the field's text by typing `text` into it, key by key, as a user would.
void Type(QLineEdit* field, const char* text);

// The controls Tab reaches from `first` (given the focus), in order, until it comes back to it;
// at most 60.
std::vector<QWidget*> WalkWithTab(QWidget* first);

// The control ids of `controls` (0 for a control without one).
std::vector<int> ControlIdsOf(const std::vector<QWidget*>& controls);

// Each control stands further down in `dialog` than the one before, or on the same row further
// right.
void ExpectReadingOrder(QWidget* dialog, const std::vector<QWidget*>& controls);
