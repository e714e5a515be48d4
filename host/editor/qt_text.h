#pragma once

#include <QString>
#include <string>

// The host's texts are wide or UTF-8; Qt's are QString.
inline QString Q(const std::wstring& text) { return QString::fromStdWString(text); }
inline QString Q(const std::string& text) { return QString::fromStdString(text); }
