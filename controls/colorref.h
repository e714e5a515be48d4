#pragma once

#include <QColor>
#include <cstdint>

// Colours are written as the dialogs write them: 0x00BBGGRR.
inline QColor ColorFromRef(std::uint32_t ref) {
    return QColor(ref & 0xFF, (ref >> 8) & 0xFF, (ref >> 16) & 0xFF);
}
