#include "framework/ui/picture_control.h"

#include "framework/resource_library.h"

QPixmap ZebLoadBitmap(unsigned id) {
    QPixmap pixmap;
    const unsigned char* data = nullptr;
    unsigned long size = 0;
    ZebResourceHandle library = ZebGetResourceHandle();
    if (library && library->LoadBitmap(id, &data, &size)) pixmap.loadFromData(data, size);
    return pixmap;
}

PictureControl::PictureControl(QWidget* parent) : QLabel(parent) { setAlignment(Qt::AlignCenter); }

void PictureControl::SetBitmap(const QPixmap& bitmap) { setPixmap(bitmap); }

bool PictureControl::SetBitmapId(unsigned id) {
    const QPixmap bitmap = ZebLoadBitmap(id);
    if (bitmap.isNull()) return false;
    SetBitmap(bitmap);
    return true;
}
