// Image lookup of a resource library; the images are drawn at build time.
#include "embedded_bitmaps.h"

extern "C" __attribute__((visibility("default"))) int ZEBResBitmap(unsigned id,
                                                                   const unsigned char** data,
                                                                   unsigned long* size) {
    for (unsigned i = 0; i < zebres::kBitmapCount; ++i) {
        if (zebres::kBitmaps[i].id == id) {
            *data = zebres::kBitmaps[i].data;
            *size = zebres::kBitmaps[i].size;
            return 1;
        }
    }
    return 0;
}
