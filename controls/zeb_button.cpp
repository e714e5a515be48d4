#include "controls/zeb_button.h"

#include <QApplication>
#include <QBitmap>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "controls/colorref.h"
#include "framework/ui/picture_control.h"

CZEBButton::CZEBButton(QWidget* parent) : QPushButton(parent) {
    setMouseTracking(true);
    ResetColours();
    // A click only takes the focus, and in check-box mode toggles the check.
    connect(this, &QPushButton::clicked, this, [this] {
        setFocus();
        if (m_checkBoxMode) SetCheck(m_check ? 0 : 1);
    });
}

void CZEBButton::ResetColours() {
    const QPalette& system = QApplication::palette();
    const StateColours colours{system.color(QPalette::Button), system.color(QPalette::ButtonText)};
    m_hoverColours = m_normalColours = m_focusColours = colours;
}

void CZEBButton::SetCheck(int check) {
    m_check = check;
    update();
}

void CZEBButton::SetFlat(bool flat) {
    m_flat = flat;
    update();
}

void CZEBButton::ReleaseImages() {
    m_bitmaps[0] = QPixmap();
    m_bitmaps[1] = QPixmap();
}

int CZEBButton::LoadBitmap(int slot, unsigned id, std::uint32_t transparent) {
    QPixmap bitmap = ZebLoadBitmap(id);
    if (bitmap.isNull() || bitmap.width() <= 0 || bitmap.height() <= 0) return kBitmapInvalid;
    // Pixels of the transparent colour drop out of the mask.
    const QBitmap mask = bitmap.createMaskFromColor(ColorFromRef(transparent), Qt::MaskInColor);
    if (mask.isNull()) return kBitmapFailedMask;
    bitmap.setMask(mask);
    m_bitmaps[slot] = bitmap;
    return kBitmapOk;
}

int CZEBButton::SetBitmaps(unsigned id, std::uint32_t transparent, unsigned secondId,
                           std::uint32_t secondTransparent) {
    ReleaseImages();
    int result = id ? LoadBitmap(0, id, transparent) : kBitmapOk;
    if (result == kBitmapOk && secondId) result = LoadBitmap(1, secondId, secondTransparent);
    if (result != kBitmapOk) ReleaseImages();
    update();
    return result;
}

bool CZEBButton::IsPressed() const { return isDown() || (m_checkBoxMode && m_check != 0); }

const QPixmap& CZEBButton::CurrentBitmap() const {
    const bool first = m_checkBoxMode ? IsPressed() : (m_hovering || IsPressed());
    return first || m_bitmaps[1].isNull() ? m_bitmaps[0] : m_bitmaps[1];
}

QRect CZEBButton::BitmapRect() const {
    const QPixmap& bitmap = CurrentBitmap();
    if (bitmap.isNull()) return {};
    const QSize size = bitmap.deviceIndependentSize().toSize();
    QRect image(QPoint(), size);
    if (text().isEmpty()) {
        image.moveCenter(rect().center());
    } else {
        image.moveTopLeft(QPoint(m_imageSpacing[0], (height() - size.height()) / 2));
    }
    if (IsPressed()) image.translate(m_pressedOffset);
    return image;
}

void CZEBButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette& pal = palette();
    const bool pressed = IsPressed();
    const bool focused = hasFocus();
    const bool disabled = !isEnabled();
    QRect area = rect();

    if (!m_flat && (focused || m_default)) {
        painter.setPen(Qt::black);
        painter.drawRect(area.adjusted(0, 0, -1, -1));
        area.adjust(1, 1, -1, -1);
    }

    const StateColours& colours = (m_hovering || pressed) ? m_hoverColours
                                  : focused               ? m_focusColours
                                                          : m_normalColours;
    if (!m_transparentBackground) painter.fillRect(area, colours.background);

    const QRect edge = area.adjusted(0, 0, -1, -1);
    auto drawEdge = [&](const QColor& topLeft, const QColor& bottomRight) {
        painter.setPen(topLeft);
        painter.drawLine(edge.topLeft(), edge.topRight());
        painter.drawLine(edge.topLeft(), edge.bottomLeft());
        painter.setPen(bottomRight);
        painter.drawLine(edge.bottomLeft(), edge.bottomRight());
        painter.drawLine(edge.topRight(), edge.bottomRight());
    };
    if (pressed) {
        if (m_flat) {
            if (m_drawBorder) drawEdge(pal.color(QPalette::Dark), pal.color(QPalette::Light));
        } else {
            painter.setPen(pal.color(QPalette::Dark));
            painter.drawRect(edge);
        }
    } else if (m_flat) {
        if (m_hovering && m_drawBorder && !disabled)
            drawEdge(pal.color(QPalette::Light), pal.color(QPalette::Dark));
    } else {
        drawEdge(pal.color(QPalette::Light), pal.color(QPalette::Shadow));
        const QRect inner = edge.adjusted(1, 1, -1, -1);
        painter.setPen(pal.color(QPalette::Midlight));
        painter.drawLine(inner.topLeft(), inner.topRight());
        painter.drawLine(inner.topLeft(), inner.bottomLeft());
        painter.setPen(pal.color(QPalette::Dark));
        painter.drawLine(inner.bottomLeft(), inner.bottomRight());
        painter.drawLine(inner.topRight(), inner.bottomRight());
    }

    const QRect image = BitmapRect();
    if (!image.isNull()) {
        if (!disabled) {
            painter.drawPixmap(image.topLeft(), CurrentBitmap());
        } else if (m_showDisabledBitmap) {
            QStyleOption option;
            option.initFrom(this);
            painter.drawPixmap(image.topLeft(), style()->generatedIconPixmap(
                                                    QIcon::Disabled, CurrentBitmap(), &option));
        }
    }

    if (!text().isEmpty()) {
        QRect caption = area;
        if (!image.isNull()) caption.setLeft(image.right() + 1 + m_imageSpacing[1]);
        const int flags = Qt::AlignCenter | Qt::TextWordWrap;
        if (disabled) {
            painter.setPen(pal.color(QPalette::Light));
            painter.drawText(caption.translated(1, 1), flags, text());
            painter.setPen(pal.color(QPalette::Dark));
        } else {
            painter.setPen(colours.foreground);
        }
        painter.drawText(caption, flags, text());
    }

    if (focused && (!m_flat || m_drawFlatFocus)) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = area.adjusted(3, 3, -3, -3);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void CZEBButton::CancelHover() {
    if (!m_hovering) return;
    m_hovering = false;
    if (m_flat) update();
}

void CZEBButton::mouseMoveEvent(QMouseEvent* event) {
    QPushButton::mouseMoveEvent(event);
    if ((event->buttons() & Qt::LeftButton) && !m_hovering) return;
    if (rect().contains(event->position().toPoint())) {
        if (m_flat && !m_hovering) {
            m_hovering = true;
            update();
        }
    } else {
        CancelHover();
    }
}

void CZEBButton::leaveEvent(QEvent* event) {
    CancelHover();
    QPushButton::leaveEvent(event);
}

void CZEBButton::focusOutEvent(QFocusEvent* event) {
    CancelHover();
    QPushButton::focusOutEvent(event);
}

void CZEBButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        CancelHover();
        if (hasFocus()) focusNextChild();
    } else if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        CancelHover();
    } else if (event->type() == QEvent::PaletteChange) {
        ResetColours();
    }
    QPushButton::changeEvent(event);
}
