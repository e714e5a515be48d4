#pragma once

#include <QPixmap>
#include <QPushButton>
#include <cstdint>

// Flat push button with a bitmap whose transparent colour lets the dialog background through; it
// shows a raised border while the mouse is over it.
class CZEBButton : public QPushButton {
    Q_OBJECT
public:
    enum : int { kBitmapOk = 0, kBitmapInvalid = 1, kBitmapFailedMask = 2 };

    explicit CZEBButton(QWidget* parent = nullptr);

    // Bitmaps of the current resource library; the second (id 0: none) shows while the mouse is
    // elsewhere. Colours are 0x00BBGGRR. Returns 0, 1 when a bitmap cannot be read, 2 when its
    // mask cannot be built; on 1 and 2 the button has no image.
    int SetBitmaps(unsigned id, std::uint32_t transparent, unsigned secondId = 0,
                   std::uint32_t secondTransparent = 0);
    bool HasBitmap() const { return !m_bitmaps[0].isNull(); }

    // Set when a dialog button is attached: the dialog's default button, or a check box.
    void SetDefaultButtonFlag(bool flag) { m_default = flag; }
    void SetCheckBoxMode(bool on) { m_checkBoxMode = on; }
    int GetCheck() const { return m_check; }
    void SetCheck(int check);

    void SetFlat(bool flat);
    bool IsFlat() const { return m_flat; }
    bool IsHovering() const { return m_hovering; }
    void SetTransparentBackground(bool on) {
        m_transparentBackground = on;
        update();
    }
    void SetDrawBorder(bool on) {
        m_drawBorder = on;
        update();
    }
    void SetDrawFlatFocus(bool on) {
        m_drawFlatFocus = on;
        update();
    }
    void SetShowDisabledBitmap(bool on) {
        m_showDisabledBitmap = on;
        update();
    }

    // Where the image goes in the current state; empty without an image.
    QRect BitmapRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct StateColours {
        QColor background, foreground;
    };
    void ReleaseImages();
    int LoadBitmap(int slot, unsigned id, std::uint32_t transparent);
    void CancelHover();
    bool IsPressed() const;
    const QPixmap& CurrentBitmap() const;
    void ResetColours();

    bool m_flat = true;
    bool m_hovering = false;
    bool m_transparentBackground = false;
    bool m_default = false;
    bool m_checkBoxMode = false;
    bool m_drawBorder = true;
    bool m_drawFlatFocus = false;
    int m_imageSpacing[2] = {3, 3};
    QPoint m_pressedOffset{1, 1};
    StateColours m_hoverColours, m_normalColours, m_focusColours;
    int m_check = 0;
    bool m_showDisabledBitmap = true;
    QPixmap m_bitmaps[2];
};
