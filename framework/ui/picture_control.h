#pragma once

#include <QLabel>
#include <QPixmap>

#include "framework/ui/fwui_export.h"

// Static picture of a dialog.
class VANTOR_FWUI_API PictureControl : public QLabel {
    Q_OBJECT
public:
    explicit PictureControl(QWidget* parent = nullptr);
    void SetBitmap(const QPixmap& bitmap);
    // Shows bitmap `id` of the current resource library; false (picture unchanged) when the
    // library lacks it or its bytes are no image.
    bool SetBitmapId(unsigned id);
};

// Bitmap `id` of the current resource library; a null pixmap when absent or unreadable.
VANTOR_FWUI_API QPixmap ZebLoadBitmap(unsigned id);
