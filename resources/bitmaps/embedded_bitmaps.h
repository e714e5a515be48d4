#pragma once

// Bitmaps of the resource library, embedded as PNG bytes by the build
// (draw_bitmaps.cpp writes the table; the resource library looks images up by id).
namespace zebres {

struct EmbeddedBitmap {
    unsigned id;
    const unsigned char* data;
    unsigned long size;
};

extern const EmbeddedBitmap kBitmaps[];
extern const unsigned kBitmapCount;

}  // namespace zebres
