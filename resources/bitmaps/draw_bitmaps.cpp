// Build-time generator of the resource library's bitmaps.
//
//   draw_bitmaps <out.cpp> [png-folder]
//
// Draws every bitmap with shapes only (build machines may have no fonts), encodes each as
// PNG and writes one C++ source that embeds the bytes (see embedded_bitmaps.h). With a
// second argument each image is also written there as <id>.png, for looking at them.
//
// Output is deterministic: the same program writes the same bytes on every run.

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>
#include <QString>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

// ---------------------------------------------------------------------------------------------
// Palette: engineering-drawing look, a few flat colours.

const QColor kInk(0x2b, 0x30, 0x36);
const QColor kPart(0xc6, 0xcb, 0xd1);
const QColor kPart2(0xde, 0xe2, 0xe6);
const QColor kSteel(0x46, 0x82, 0xb4);
const QColor kSteelLight(0x8c, 0xb4, 0xd8);
const QColor kSteelDark(0x1f, 0x44, 0x66);
const QColor kRed(0xd0, 0x2b, 0x2b);
const QColor kRedLight(0xf6, 0xc8, 0xc8);
const QColor kGreen(0x2e, 0x9e, 0x44);
const QColor kGreenDark(0x1c, 0x6b, 0x2c);
const QColor kGreenLight(0xd4, 0xf0, 0xda);
const QColor kAxis(0x7a, 0x80, 0x88);
const QColor kBronze(0xe0, 0xac, 0x80);

// Scenes are drawn in a 220 x 160 design space and scaled to the bitmap's size.
constexpr double kDesignW = 220.0;
constexpr double kDesignH = 160.0;

// Line widths are given in device pixels so that scaled-down pictures keep crisp lines.
double Px(QPainter& p) { return 1.0 / p.transform().m11(); }

QPen Pen(QPainter& p, const QColor& c, double px = 1.2) {
    QPen pen(c, px * Px(p));
    pen.setJoinStyle(Qt::MiterJoin);
    pen.setCapStyle(Qt::FlatCap);
    return pen;
}

void AxisLine(QPainter& p, QPointF a, QPointF b, const QColor& c = kAxis) {
    QPen pen = Pen(p, c, 1.0);
    pen.setDashPattern({10, 3, 2, 3});
    p.setPen(pen);
    p.drawLine(a, b);
}

void ThinLine(QPainter& p, QPointF a, QPointF b) {
    p.setPen(Pen(p, kAxis, 0.8));
    p.drawLine(a, b);
}

void ArrowHead(QPainter& p, QPointF tip, QPointF toward, const QColor& c) {
    const QPointF d0 = toward - tip;
    const double len = std::hypot(d0.x(), d0.y());
    if (len <= 0.0) return;
    const QPointF d = d0 / len;
    const QPointF n(-d.y(), d.x());
    const double l = 7.0, w = 2.8;
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPolygon(QPolygonF{tip, tip + d * l + n * w, tip + d * l - n * w});
}

// Dimension with arrows inside, pointing at both ends.
void Dim(QPainter& p, QPointF a, QPointF b, const QColor& c) {
    p.setPen(Pen(p, c, 1.2));
    p.drawLine(a, b);
    ArrowHead(p, a, b, c);
    ArrowHead(p, b, a, c);
}

// Dimension for a gap too small for inner arrows: arrows come from outside.
void DimOutside(QPainter& p, QPointF a, QPointF b, const QColor& c) {
    const QPointF d0 = b - a;
    const double len = std::hypot(d0.x(), d0.y());
    const QPointF d = d0 / len;
    p.setPen(Pen(p, c, 1.2));
    p.drawLine(a - d * 14.0, b + d * 14.0);
    ArrowHead(p, a, a - d * 10.0, c);
    ArrowHead(p, b, b + d * 10.0, c);
}

// Section lines at 45 degrees inside an area.
void Hatch(QPainter& p, const QPainterPath& area, const QColor& c, double step, bool rising) {
    p.save();
    p.setClipPath(area, Qt::IntersectClip);
    const QRectF r = area.boundingRect();
    p.setPen(Pen(p, c, 0.7));
    for (double x = r.left() - r.height(); x < r.right() + r.height(); x += step) {
        if (rising)
            p.drawLine(QPointF(x, r.bottom()), QPointF(x + r.height(), r.top()));
        else
            p.drawLine(QPointF(x, r.top()), QPointF(x + r.height(), r.bottom()));
    }
    p.restore();
}

void Section(QPainter& p, const QPainterPath& area, const QColor& fill, bool rising,
             double step = 7.0) {
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawPath(area);
    Hatch(p, area, kInk, step, rising);
    p.setPen(Pen(p, kInk, 1.2));
    p.setBrush(Qt::NoBrush);
    p.drawPath(area);
}

void Solid(QPainter& p, const QPainterPath& area, const QColor& fill, const QColor& edge) {
    p.setPen(Pen(p, edge, 1.2));
    p.setBrush(fill);
    p.drawPath(area);
}

QPainterPath RectPath(double x, double y, double w, double h) {
    QPainterPath path;
    path.addRect(x, y, w, h);
    return path;
}

QPainterPath SlotPath(QPointF centre, double length, double width) {
    QPainterPath path;
    path.addRoundedRect(QRectF(centre.x() - length / 2, centre.y() - width / 2, length, width),
                        width / 2, width / 2);
    return path;
}

// Sawtooth edge of a thread between the major and minor line, from y0 down to y1.
// Bolt and tapped hole share it, so an engaged thread lines up exactly.
std::vector<QPointF> ThreadEdge(double xMajor, double xMinor, double y0, double y1, double pitch) {
    std::vector<QPointF> pts;
    bool major = true;
    for (double y = y0; y < y1; y += pitch / 2) {
        pts.emplace_back(major ? xMajor : xMinor, y);
        major = !major;
    }
    pts.emplace_back(major ? xMajor : xMinor, y1);
    return pts;
}

// Side view of a hex bolt standing upright; the head's top is at `top`.
void Bolt(QPainter& p, double cx, double top, double headW, double headH, double d, double len,
          double threadLen) {
    const double y0 = top + headH;
    const double yEnd = y0 + len;
    const double yThread = yEnd - threadLen;
    const double depth = std::max(1.5, d * 0.12);
    const double pitch = std::max(3.0, d * 0.22);

    p.setPen(Pen(p, kSteelDark, 1.2));
    p.setBrush(kSteel);
    if (yThread > y0) p.drawRect(QRectF(cx - d / 2, y0, d, yThread - y0));

    QPolygonF thread;
    for (const QPointF& pt : ThreadEdge(cx - d / 2, cx - d / 2 + depth, yThread, yEnd, pitch))
        thread << pt;
    auto right = ThreadEdge(cx + d / 2, cx + d / 2 - depth, yThread, yEnd, pitch);
    std::reverse(right.begin(), right.end());
    for (const QPointF& pt : right) thread << pt;
    p.drawPolygon(thread);

    // Head: three visible hex faces, chamfered top corners.
    QPolygonF head{{cx - headW / 2, y0},      {cx - headW / 2, top + 2}, {cx - headW / 2 + 2, top},
                   {cx + headW / 2 - 2, top}, {cx + headW / 2, top + 2}, {cx + headW / 2, y0}};
    p.drawPolygon(head);
    p.setPen(Pen(p, kSteelDark, 0.9));
    p.drawLine(QPointF(cx - headW / 6, top), QPointF(cx - headW / 6, y0));
    p.drawLine(QPointF(cx + headW / 6, top), QPointF(cx + headW / 6, y0));
}

void Nut(QPainter& p, double cx, double top, double w, double h) {
    p.setPen(Pen(p, kSteelDark, 1.2));
    p.setBrush(kSteelLight);
    p.drawRect(QRectF(cx - w / 2, top, w, h));
    p.setPen(Pen(p, kSteelDark, 0.9));
    p.drawLine(QPointF(cx - w / 6, top), QPointF(cx - w / 6, top + h));
    p.drawLine(QPointF(cx + w / 6, top), QPointF(cx + w / 6, top + h));
}

// Round badge: green tick for a check that passes, red cross for one that fails.
void Badge(QPainter& p, QPointF c, double r, bool ok) {
    p.setPen(Pen(p, ok ? kGreenDark : QColor(0x8a, 0x1a, 0x1a), 1.0));
    p.setBrush(ok ? kGreen : kRed);
    p.drawEllipse(c, r, r);
    QPen mark = Pen(p, Qt::white, 2.2);
    mark.setCapStyle(Qt::RoundCap);
    mark.setJoinStyle(Qt::RoundJoin);
    p.setPen(mark);
    p.setBrush(Qt::NoBrush);
    const double k = r * 0.45;
    if (ok) {
        p.drawPolyline(QPolygonF{c + QPointF(-k, 0), c + QPointF(-k * 0.3, k * 0.7),
                                 c + QPointF(k, -k * 0.7)});
    } else {
        p.drawLine(c + QPointF(-k, -k), c + QPointF(k, k));
        p.drawLine(c + QPointF(-k, k), c + QPointF(k, -k));
    }
}

void BigArrow(QPainter& p, QPointF a, QPointF b) {
    QPen pen = Pen(p, kAxis, 3.0);
    p.setPen(pen);
    const QPointF d = (b - a) / std::hypot(b.x() - a.x(), b.y() - a.y());
    p.drawLine(a, b - d * 6.0);
    p.setPen(Qt::NoPen);
    p.setBrush(kAxis);
    const QPointF n(-d.y(), d.x());
    p.drawPolygon(QPolygonF{b, b - d * 10.0 + n * 6.0, b - d * 10.0 - n * 6.0});
}

// Letters drawn as strokes (no fonts); used to tell the two conditions apart.
void GlyphA(QPainter& p, QPointF at, double h, const QColor& c) {
    const double w = h * 0.75;
    p.setPen(Pen(p, c, 1.5));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF{at + QPointF(0, h), at + QPointF(w / 2, 0), at + QPointF(w, h)});
    p.drawLine(at + QPointF(w * 0.22, h * 0.62), at + QPointF(w * 0.78, h * 0.62));
}

void GlyphB(QPainter& p, QPointF at, double h, const QColor& c) {
    const double w = h * 0.62;
    QPainterPath b;
    b.moveTo(at + QPointF(0, h));
    b.lineTo(at);
    b.lineTo(at + QPointF(w * 0.6, 0));
    b.cubicTo(at + QPointF(w * 1.05, 0), at + QPointF(w * 1.05, h * 0.48),
              at + QPointF(w * 0.6, h * 0.48));
    b.lineTo(at + QPointF(0, h * 0.48));
    b.moveTo(at + QPointF(w * 0.6, h * 0.48));
    b.cubicTo(at + QPointF(w * 1.15, h * 0.48), at + QPointF(w * 1.15, h),
              at + QPointF(w * 0.6, h));
    b.lineTo(at + QPointF(0, h));
    p.setPen(Pen(p, c, 1.5));
    p.setBrush(Qt::NoBrush);
    p.drawPath(b);
}

// ---------------------------------------------------------------------------------------------
// Scenes. `detail` adds what the small pictures of a dialog explain beyond its rule image.

void HoleAlignment(QPainter& p, bool detail) {
    const double h1 = 96, h2 = 116, hw = 30;  // hole axes, hole width
    Section(p, RectPath(24, 42, 172, 28).subtracted(RectPath(h1 - hw / 2, 42, hw, 28)), kPart,
            true);
    Section(p, RectPath(24, 70, 172, 28).subtracted(RectPath(h2 - hw / 2, 70, hw, 28)), kPart2,
            false);
    AxisLine(p, {h1, 26}, {h1, 136});
    AxisLine(p, {h2, 26}, {h2, 136});
    Dim(p, {h1, 128}, {h2, 128}, kRed);
    if (detail) {
        // The passage the offset leaves open.
        p.setPen(Qt::NoPen);
        p.setBrush(kRedLight);
        p.drawRect(QRectF(h2 - hw / 2 + 1, 42, h1 + hw / 2 - h2 + hw / 2 - 2, 56));
        AxisLine(p, {h1, 26}, {h1, 136});
        AxisLine(p, {h2, 26}, {h2, 136});
    }
    Badge(p, {176, 128}, 10, false);
}

void SlotAlignment(QPainter& p, bool detail) {
    const QPointF s1(108, 72), s2(108, 90);
    const double len = 76, wid = 22;
    // Lower plate first, upper plate over it; the upper slot shows the lower plate through.
    Solid(p, RectPath(60, 44, 140, 100).subtracted(SlotPath(s2, len, wid)), kPart2, kInk);
    Solid(p, RectPath(20, 24, 140, 96).subtracted(SlotPath(s1, len, wid)), kPart, kInk);
    // Hidden outline of the lower slot.
    QPen hidden = Pen(p, kInk, 1.0);
    hidden.setDashPattern({4, 3});
    p.setPen(hidden);
    p.setBrush(Qt::NoBrush);
    p.drawPath(SlotPath(s2, len, wid));
    AxisLine(p, {s1.x() - len / 2 - 10, s1.y()}, {206, s1.y()});
    AxisLine(p, {s2.x() - len / 2 - 10, s2.y()}, {206, s2.y()});
    DimOutside(p, {196, s1.y()}, {196, s2.y()}, kRed);
    if (detail) {
        AxisLine(p, {s1.x() - len / 2, 12}, {s1.x() - len / 2, 152});
        AxisLine(p, {s1.x() + len / 2, 12}, {s1.x() + len / 2, 152});
    }
}

void Interference(QPainter& p, bool) {
    QPainterPath a;
    a.addRoundedRect(QRectF(20, 58, 120, 74), 6, 6);
    QPainterPath b;
    b.addRoundedRect(QRectF(96, 26, 104, 66), 6, 6);
    Solid(p, a, kPart, kInk);
    Solid(p, b, kPart2, kInk);
    const QPainterPath overlap = a.intersected(b);
    p.setPen(Qt::NoPen);
    p.setBrush(kRedLight);
    p.drawPath(overlap);
    Hatch(p, overlap, kRed, 5, true);
    p.setPen(Pen(p, kRed, 2.0));
    p.setBrush(Qt::NoBrush);
    p.drawPath(overlap);
    // Hidden edges of both parts inside the overlap.
    QPen hidden = Pen(p, kInk, 1.0);
    hidden.setDashPattern({4, 3});
    p.setPen(hidden);
    p.drawPath(a);
    p.drawPath(b);
    Badge(p, {40, 36}, 11, false);
}

void MinClearance(QPainter& p, bool detail) {
    const double gapL = 98, gapR = 130;
    Solid(p, RectPath(20, 30, gapL - 20, 100), kPart, kInk);
    p.setPen(Qt::NoPen);
    p.setBrush(kGreenLight);
    p.drawRect(QRectF(gapL, 36, gapR - gapL, 88));
    Solid(p, RectPath(gapR, 36, 200 - gapR, 88), kPart2, kInk);
    QPen zone = Pen(p, kGreen, 1.0);
    zone.setDashPattern({4, 3});
    p.setPen(zone);
    p.drawLine(QPointF(gapL, 20), QPointF(gapL, 140));
    p.drawLine(QPointF(gapR, 20), QPointF(gapR, 140));
    Dim(p, {gapL, 80}, {gapR, 80}, kGreen);
    if (detail) Badge(p, {114, 146}, 9, true);
}

void ContactMaterial(QPainter& p, bool) {
    Section(p, RectPath(22, 94, 176, 42), kPart, true, 7);
    const QPainterPath top = RectPath(58, 46, 104, 48);
    Section(p, top, kBronze, false, 4);
    // The contact face between the two materials.
    p.setPen(Pen(p, kRed, 3.0));
    p.drawLine(QPointF(58, 94), QPointF(162, 94));
    ArrowHead(p, {70, 96}, {56, 118}, kRed);
    p.setPen(Pen(p, kRed, 1.2));
    p.drawLine(QPointF(64, 106), QPointF(52, 126));
    ArrowHead(p, {150, 96}, {164, 118}, kRed);
    p.setPen(Pen(p, kRed, 1.2));
    p.drawLine(QPointF(156, 106), QPointF(168, 126));
    // Material pair: one swatch per side of the contact.
    p.setPen(Pen(p, kInk, 1.0));
    p.setBrush(kBronze);
    p.drawRect(QRectF(174, 16, 14, 14));
    p.setBrush(kPart);
    p.drawRect(QRectF(174, 46, 14, 14));
    p.setPen(Pen(p, kInk, 1.0));
    p.drawLine(QPointF(181, 30), QPointF(181, 46));
    Badge(p, {200, 38}, 8, false);
}

void Bracket(QPainter& p, QPointF o, const QColor& fill, bool slotted) {
    QPainterPath b;
    b.moveTo(o);
    b.lineTo(o + QPointF(56, 0));
    b.lineTo(o + QPointF(56, 14));
    b.lineTo(o + QPointF(14, 14));
    b.lineTo(o + QPointF(14, 56));
    b.lineTo(o + QPointF(0, 56));
    b.closeSubpath();
    QPainterPath holes;
    if (slotted) {
        holes.addPath(SlotPath(o + QPointF(38, 7), 18, 7));
        holes.addPath(SlotPath(o + QPointF(7, 38), 7, 7));
    } else {
        holes.addEllipse(o + QPointF(38, 7), 3.5, 3.5);
        holes.addEllipse(o + QPointF(7, 38), 3.5, 3.5);
    }
    Solid(p, b.subtracted(holes), fill, kInk);
}

void PreferredComponents(QPainter& p, bool) {
    for (double x : {14.0, 122.0}) {
        p.setPen(Pen(p, kAxis, 1.0));
        p.setBrush(Qt::white);
        p.drawRoundedRect(QRectF(x, 34, 84, 96), 5, 5);
    }
    Bracket(p, {28, 56}, kPart, true);
    Bracket(p, {136, 56}, kSteelLight, false);
    BigArrow(p, {102, 82}, {120, 82});
    Badge(p, {96, 36}, 11, false);
    Badge(p, {204, 36}, 11, true);
}

void FastenerClearance(QPainter& p, bool detail) {
    const double cx = 62, hole = 36, d = 18;
    const auto plate = [&](double y, bool rising, const QColor& c) {
        Section(p, RectPath(12, y, 100, 22).subtracted(RectPath(cx - hole / 2, y, hole, 22)), c,
                rising);
    };
    plate(62, true, kPart);
    plate(84, false, kPart2);
    // Clearance between shank and hole wall.
    p.setPen(Qt::NoPen);
    p.setBrush(kGreenLight);
    p.drawRect(QRectF(cx - hole / 2 + 0.6, 62, hole - 1.2, 44));
    Bolt(p, cx, 46, 40, 16, d, 76, 30);
    Nut(p, cx, 106, 40, 14);
    AxisLine(p, {cx, 36}, {cx, 146});

    // Top view: hex head with the free ring around it.
    const QPointF c(164, 84);
    const double ring = 38;
    p.setPen(Qt::NoPen);
    p.setBrush(kGreenLight);
    p.drawEllipse(c, ring, ring);
    QPen dashed = Pen(p, kGreen, 1.4);
    dashed.setDashPattern({4, 3});
    p.setPen(dashed);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(c, ring, ring);
    QPolygonF hex;
    for (int i = 0; i < 6; ++i) {
        const double a = M_PI / 3 * i;
        hex << c + QPointF(20 * std::cos(a), 20 * std::sin(a));
    }
    p.setPen(Pen(p, kSteelDark, 1.2));
    p.setBrush(kSteel);
    p.drawPolygon(hex);
    p.setBrush(kSteelLight);
    p.drawEllipse(c, 9, 9);
    AxisLine(p, c - QPointF(ring + 8, 0), c + QPointF(ring + 8, 0));
    AxisLine(p, c - QPointF(0, ring + 8), c + QPointF(0, ring + 8));
    const QPointF dir(std::cos(-M_PI / 4), std::sin(-M_PI / 4));
    Dim(p, c + dir * 20.0, c + dir * ring, kGreen);
    if (detail) {
        GlyphA(p, {cx + hole / 2 + 4, 44}, 11, kGreenDark);
        p.setPen(Pen(p, kGreenDark, 1.0));
        p.drawLine(QPointF(cx + hole / 2 + 3, 56), QPointF(cx + hole / 2 - 4, 68));
        GlyphB(p, c + QPointF(ring * 0.72 + 3, -ring * 0.72 - 16), 11, kGreenDark);
    }
}

void EngagementLength(QPainter& p, bool detail) {
    const double cx = 86, d = 18, depth = 2.2, pitch = 4.0;
    const double blockTop = 62, tip = 112, holeEnd = 124;
    Section(p, RectPath(26, 40, 110, 22).subtracted(RectPath(cx - 12, 40, 24, 22)), kPart2, false);
    // Tapped blind hole with a drill point.
    QPolygonF hole;
    for (const QPointF& pt : ThreadEdge(cx - d / 2, cx - d / 2 + depth, blockTop, holeEnd, pitch))
        hole << pt;
    hole << QPointF(cx, holeEnd + 9);
    auto right = ThreadEdge(cx + d / 2, cx + d / 2 - depth, blockTop, holeEnd, pitch);
    std::reverse(right.begin(), right.end());
    for (const QPointF& pt : right) hole << pt;
    QPainterPath holePath;
    holePath.addPolygon(hole);
    holePath.closeSubpath();
    Section(p, RectPath(26, blockTop, 110, 80).subtracted(holePath), kPart, true);
    Bolt(p, cx, 24, 40, 16, d, tip - 40, tip - blockTop + 6);
    AxisLine(p, {cx, 14}, {cx, 150});
    // Engaged length: from the face of the tapped part to the bolt's end.
    const double dx = 160;
    ThinLine(p, {cx + d / 2 + 2, blockTop}, {dx + 6, blockTop});
    ThinLine(p, {cx + d / 2 + 2, tip}, {dx + 6, tip});
    Dim(p, {dx, blockTop}, {dx, tip}, kGreen);
    if (detail) {
        p.setPen(Qt::NoPen);
        p.setBrush(kGreenLight);
        p.drawRect(QRectF(dx + 10, blockTop, 8, tip - blockTop));
        Badge(p, {200, 136}, 9, true);
    } else {
        Badge(p, {184, 136}, 10, true);
    }
}

void ThreadTypes(QPainter& p, bool) {
    const double cx = 58;
    Bolt(p, cx, 22, 42, 16, 20, 100, 66);
    Nut(p, cx, 96, 44, 20);
    AxisLine(p, {cx, 12}, {cx, 148});
    // Detail: external and internal thread profiles that match.
    const QPointF c(160, 78);
    const double r = 46;
    QPainterPath circle;
    circle.addEllipse(c, r, r);
    p.save();
    p.setClipPath(circle);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::white);
    p.drawPath(circle);
    const double pitch = 20, crest = c.y() - 4, root = c.y() + 13, gap = 3;
    QPolygonF ext, intl;
    ext << QPointF(c.x() - r, c.y() + r);
    intl << QPointF(c.x() - r, c.y() - r);
    bool up = false;
    for (double x = c.x() - r - pitch / 2; x <= c.x() + r + pitch; x += pitch / 2) {
        ext << QPointF(x, up ? crest : root);
        intl << QPointF(x, (up ? crest : root) - gap);
        up = !up;
    }
    ext << QPointF(c.x() + r + pitch, c.y() + r);
    intl << QPointF(c.x() + r + pitch, c.y() - r);
    QPainterPath extPath, intPath;
    extPath.addPolygon(ext);
    intPath.addPolygon(intl);
    p.setPen(Pen(p, kSteelDark, 1.2));
    p.setBrush(kSteel);
    p.drawPath(extPath);
    Section(p, intPath, kPart, true, 6);
    p.restore();
    p.setPen(Pen(p, kInk, 1.4));
    p.setBrush(Qt::NoBrush);
    p.drawPath(circle);
    // Leader from the nut to the detail.
    p.setPen(Pen(p, kAxis, 1.0));
    p.drawEllipse(QPointF(cx + 10, 106), 9, 9);
    p.drawLine(QPointF(cx + 19, 104), QPointF(c.x() - r, 90));
    Badge(p, {200, 138}, 11, true);
}

void FastenerAlignment(QPainter& p, bool detail) {
    const double hx = 96, hole = 34, d = 18, off = 8;
    Section(p, RectPath(20, 66, 170, 22).subtracted(RectPath(hx - hole / 2, 66, hole, 22)), kPart,
            true);
    Section(p, RectPath(20, 88, 170, 22).subtracted(RectPath(hx - hole / 2, 88, hole, 22)), kPart2,
            false);
    Bolt(p, hx + off, 50, 40, 16, d, 76, 30);
    Nut(p, hx + off, 110, 40, 14);
    AxisLine(p, {hx, 28}, {hx, 150});
    AxisLine(p, {hx + off, 28}, {hx + off, 150}, kSteelDark);
    DimOutside(p, {hx, 34}, {hx + off, 34}, kRed);
    if (detail) Badge(p, {176, 40}, 10, false);
}

void Accessibility(QPainter& p, bool detail) {
    const double cx = 104, floor = 100, headTop = 84, wallL = 60, wallR = 150, wallTop = 44;
    QPainterPath part =
        RectPath(18, wallTop, 184, 140 - wallTop)
            .subtracted(RectPath(wallL, wallTop - 1, wallR - wallL, floor - wallTop + 1));
    Section(p, part, kPart, true);
    Bolt(p, cx, headTop, 36, 16, 16, 30, 20);
    // The tool that must reach the head: a socket on its extension.
    QPen tool = Pen(p, kSteelDark, 1.2);
    tool.setDashPattern({4, 2});
    p.setPen(tool);
    p.setBrush(QColor(0xe4, 0xee, 0xf7));
    p.drawRect(QRectF(cx - 22, 42, 44, 40));
    p.drawRect(QRectF(cx - 6, 10, 12, 32));
    AxisLine(p, {cx, 4}, {cx, 150});
    // Room beside the head and depth down to the head.
    Dim(p, {cx + 18, 92}, {wallR, 92}, kGreen);
    ThinLine(p, {wallL, headTop}, {cx - 18, headTop});
    Dim(p, {wallL + 10, wallTop}, {wallL + 10, headTop}, kGreen);
    if (detail) {
        GlyphA(p, {134, 72}, 10, kGreenDark);
        GlyphB(p, {wallL + 14, 56}, 10, kGreenDark);
    }
}

void Rationalization(QPainter& p, bool detail) {
    struct B {
        double cx, d, len;
    };
    for (const B& b : {B{22, 10, 44}, B{46, 12, 58}, B{72, 10, 66}, B{98, 14, 82}})
        Bolt(p, b.cx, 32, b.d * 2, 9, b.d, b.len, b.len * 0.5);
    BigArrow(p, {114, 80}, {136, 80});
    Bolt(p, 160, 32, 24, 9, 12, 58, 29);
    Bolt(p, 190, 32, 24, 9, 12, 82, 41);
    // Step between the lengths kept.
    const double y1 = 32 + 9 + 58, y2 = 32 + 9 + 82;
    ThinLine(p, {167, y1}, {214, y1});
    ThinLine(p, {197, y2}, {214, y2});
    Dim(p, {208, y1}, {208, y2}, kGreen);
    if (detail) {
        ThinLine(p, {154, y1 + 2}, {154, 146});
        ThinLine(p, {166, y1 + 2}, {166, 146});
        DimOutside(p, {154, 142}, {166, 142}, kGreen);
    } else {
        Badge(p, {174, 140}, 10, true);
    }
}

void MaterialDatabase(QPainter& p, bool) {
    // Database drum.
    const double x = 16, w = 56, top = 30, h = 84;
    p.setPen(Pen(p, kSteelDark, 1.2));
    p.setBrush(kSteel);
    QPainterPath drum;
    drum.moveTo(x, top + 8);
    drum.lineTo(x, top + h);
    drum.arcTo(QRectF(x, top + h - 8, w, 16), 180, 180);
    drum.lineTo(x + w, top + 8);
    drum.closeSubpath();
    p.drawPath(drum);
    p.setBrush(kSteelLight);
    p.drawEllipse(QRectF(x, top, w, 16));
    p.setBrush(Qt::NoBrush);
    for (double y : {top + 36.0, top + 62.0})
        p.drawArc(QRectF(x, y - 8, w, 16), 180 * 16, 180 * 16);

    // Tree: root, two groups, materials with check boxes.
    const auto box = [&](QPointF at, bool checked) {
        p.setPen(Pen(p, kInk, 1.0));
        p.setBrush(Qt::white);
        p.drawRect(QRectF(at.x(), at.y() - 5, 10, 10));
        if (!checked) return;
        QPen tick = Pen(p, kGreen, 2.0);
        tick.setCapStyle(Qt::RoundCap);
        p.setPen(tick);
        p.drawPolyline(QPolygonF{at + QPointF(2, 0), at + QPointF(4.5, 3), at + QPointF(8.5, -3)});
    };
    const auto swatch = [&](QPointF at, const QColor& c, bool rising) {
        Section(p, RectPath(at.x(), at.y() - 7, 26, 14), c, rising, 4);
    };
    p.setPen(Pen(p, kAxis, 1.0));
    p.drawLine(QPointF(104, 26), QPointF(104, 128));
    p.drawLine(QPointF(124, 74), QPointF(124, 128));
    for (double y : {48.0, 74.0}) p.drawLine(QPointF(104, y), QPointF(116, y));
    for (double y : {100.0, 128.0}) p.drawLine(QPointF(124, y), QPointF(136, y));
    p.drawLine(QPointF(124, 48), QPointF(136, 48));
    box({90, 20}, true);
    box({116, 74}, true);
    box({138, 100}, true);
    box({138, 128}, false);
    box({116, 48}, true);
    swatch({154, 48}, kPart, true);
    swatch({154, 100}, kBronze, false);
    swatch({154, 128}, kSteelLight, true);
    // Link from the drum to the tree.
    p.setPen(Pen(p, kAxis, 1.0));
    p.drawLine(QPointF(x + w, top + 40), QPointF(88, 20));
}

// ---------------------------------------------------------------------------------------------
// Button bitmaps. The dialog's button masks one exact colour out of them, so the symbol is drawn
// without anti-aliasing (no pixel may blend into that colour) and must never use it.

void SymbolAdd(QPainter& p) {
    p.setPen(QColor(0x14, 0x5c, 0x22));
    p.setBrush(kGreen);
    p.drawRect(9, 3, 5, 17);
    p.drawRect(3, 9, 17, 5);
    p.fillRect(10, 4, 4, 16, kGreen);
    p.fillRect(4, 10, 16, 4, kGreen);
}

void SymbolDelete(QPainter& p) {
    QPen edge(QColor(0x7a, 0x10, 0x10), 6);
    edge.setCapStyle(Qt::SquareCap);
    QPen body(kRed, 4);
    body.setCapStyle(Qt::SquareCap);
    for (const QPen& pen : {edge, body}) {
        p.setPen(pen);
        p.drawLine(7, 7, 16, 16);
        p.drawLine(7, 16, 16, 7);
    }
}

void SymbolRename(QPainter& p) {
    // Name field with a pencil over it.
    p.setPen(QColor(0x50, 0x58, 0x60));
    p.setBrush(QColor(0xfc, 0xfc, 0xfc));
    p.drawRect(1, 12, 21, 9);
    p.fillRect(4, 15, 7, 3, QColor(0x40, 0x48, 0x50));
    QPen body(QColor(0xf0, 0xb4, 0x1e), 4);
    body.setCapStyle(Qt::FlatCap);
    p.setPen(body);
    p.drawLine(20, 2, 12, 10);
    QPolygon tip;
    tip << QPoint(10, 10) << QPoint(13, 13) << QPoint(9, 14);
    p.setPen(QColor(0xc8, 0x9a, 0x6a));
    p.setBrush(QColor(0xe8, 0xc8, 0x9a));
    p.drawPolygon(tip);
    p.fillRect(9, 13, 2, 2, QColor(0x30, 0x30, 0x30));
}

// ---------------------------------------------------------------------------------------------

struct Bitmap {
    unsigned id;
    QImage image;
};

[[noreturn]] void Fail(const QString& what) {
    std::fprintf(stderr, "draw_bitmaps: %s\n", qPrintable(what));
    std::exit(1);
}

QImage Picture(int w, int h, const std::function<void(QPainter&, bool)>& scene, bool detail) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.scale(w / kDesignW, h / kDesignH);
    scene(p, detail);
    p.end();
    return img;
}

// The symbol is drawn twice, over the transparent colour and over a probe colour, so that any
// symbol pixel that equals the transparent colour, or any edge blending into it, is caught.
QImage Button(unsigned id, QRgb transparent, const std::function<void(QPainter&)>& symbol) {
    const auto draw = [&](QRgb background) {
        QImage img(24, 24, QImage::Format_RGB32);
        img.fill(background);
        QPainter p(&img);
        p.setRenderHint(QPainter::Antialiasing, false);
        symbol(p);
        p.end();
        return img;
    };
    const QRgb probe = qRgb(0xff, 0x00, 0xff);
    const QImage img = draw(transparent);
    const QImage check = draw(probe);
    int symbolPixels = 0;
    for (int y = 0; y < img.height(); ++y) {
        for (int x = 0; x < img.width(); ++x) {
            const QRgb a = img.pixel(x, y) & 0xffffff;
            const QRgb b = check.pixel(x, y) & 0xffffff;
            const bool background = b == (probe & 0xffffff);
            if (background != (a == (transparent & 0xffffff)) || (!background && a != b))
                Fail(QStringLiteral("button bitmap %1: symbol uses or blends into the "
                                    "transparent colour at %2,%3")
                         .arg(id)
                         .arg(x)
                         .arg(y));
            if (!background) ++symbolPixels;
        }
    }
    if (symbolPixels < 40) Fail(QStringLiteral("button bitmap %1 is nearly empty").arg(id));
    return img;
}

// A drawn image must show something: enough pixels differ from its background.
void CheckNotBlank(const Bitmap& b) {
    const QRgb bg = b.image.pixel(0, 0);
    long differing = 0;
    for (int y = 0; y < b.image.height(); ++y)
        for (int x = 0; x < b.image.width(); ++x)
            if (b.image.pixel(x, y) != bg) ++differing;
    if (differing * 10 < static_cast<long>(b.image.width()) * b.image.height() / 2)
        Fail(QStringLiteral("bitmap %1 is nearly blank").arg(b.id));
}

QByteArray Png(const Bitmap& b) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !b.image.save(&buffer, "PNG"))
        Fail(QStringLiteral("cannot encode bitmap %1 as PNG").arg(b.id));
    return bytes;
}

std::vector<Bitmap> DrawAll() {
    constexpr int kRuleW = 220, kRuleH = 160;   // dialog images of the rules
    constexpr int kPicW = 132, kPicH = 96;      // pictures inside the dialogs
    const QRgb kGrey100 = qRgb(100, 100, 100);  // 0x646464, passed with Add and Delete
    const QRgb kBlack = qRgb(0, 0, 0);          // colour 0, passed with Rename

    std::vector<Bitmap> all = {
        // Rule dialog images.
        {13010, Picture(kRuleW, kRuleH, HoleAlignment, false)},
        {13090, Picture(kRuleW, kRuleH, SlotAlignment, false)},
        {13050, Picture(kRuleW, kRuleH, Interference, false)},
        {13020, Picture(kRuleW, kRuleH, MinClearance, false)},
        {13100, Picture(kRuleW, kRuleH, ContactMaterial, false)},
        {13070, Picture(kRuleW, kRuleH, PreferredComponents, false)},
        {13040, Picture(kRuleW, kRuleH, FastenerClearance, false)},
        {13030, Picture(kRuleW, kRuleH, EngagementLength, false)},
        {13120, Picture(kRuleW, kRuleH, ThreadTypes, false)},
        {13150, Picture(kRuleW, kRuleH, FastenerAlignment, false)},
        {13060, Picture(kRuleW, kRuleH, Accessibility, false)},
        {13180, Picture(kRuleW, kRuleH, Rationalization, false)},
        // Buttons of the fastener name database dialog.
        {6014, Button(6014, kGrey100, SymbolAdd)},
        {6015, Button(6015, kGrey100, SymbolDelete)},
        {6017, Button(6017, kBlack, SymbolRename)},
        // Pictures inside dialogs.
        {6091, Picture(kPicW, kPicH, FastenerClearance, true)},
        {6009, Picture(kPicW, kPicH, EngagementLength, true)},
        {8032, Picture(kPicW, kPicH, FastenerAlignment, true)},
        {6018, Picture(kPicW, kPicH, Accessibility, true)},
        {9014, Picture(kPicW, kPicH, Rationalization, true)},
        {7095, Picture(kPicW, kPicH, HoleAlignment, true)},
        {8150, Picture(kPicW, kPicH, SlotAlignment, true)},
        {7010, Picture(kPicW, kPicH, MaterialDatabase, false)},
    };
    std::sort(all.begin(), all.end(), [](const Bitmap& a, const Bitmap& b) { return a.id < b.id; });
    for (size_t i = 1; i < all.size(); ++i)
        if (all[i].id == all[i - 1].id) Fail(QStringLiteral("bitmap id %1 twice").arg(all[i].id));
    for (const Bitmap& b : all) CheckNotBlank(b);
    return all;
}

QByteArray Source(const std::vector<Bitmap>& all, const std::vector<QByteArray>& pngs) {
    QByteArray out;
    out += "// generated; do not edit\n#include \"embedded_bitmaps.h\"\n\nnamespace zebres {\n\n";
    char hex[8];
    for (size_t i = 0; i < all.size(); ++i) {
        out += "static const unsigned char kBmp" + QByteArray::number(all[i].id) + "[] = {";
        const QByteArray& png = pngs[i];
        for (qsizetype k = 0; k < png.size(); ++k) {
            out += (k % 16 == 0) ? "\n    " : " ";
            std::snprintf(hex, sizeof hex, "0x%02x,", static_cast<unsigned char>(png[k]));
            out += hex;
        }
        out += "\n};\n";
    }
    out += "\nconst EmbeddedBitmap kBitmaps[] = {\n";
    for (const Bitmap& b : all) {
        const QByteArray id = QByteArray::number(b.id);
        out += "    {" + id + ", kBmp" + id + ", sizeof kBmp" + id + "},\n";
    }
    out += "};\nconst unsigned kBitmapCount = " + QByteArray::number(qsizetype(all.size())) +
           ";\n\n}  // namespace zebres\n";
    return out;
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        Fail(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: %s <out.cpp> [png-folder]\n", argv[0]);
        return 2;
    }
    // Runs during the build, where there is no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    const std::vector<Bitmap> all = DrawAll();
    std::vector<QByteArray> pngs;
    pngs.reserve(all.size());
    for (const Bitmap& b : all) pngs.push_back(Png(b));

    if (argc == 3) {
        const QString dir = QString::fromLocal8Bit(argv[2]);
        if (!QDir().mkpath(dir)) Fail(QStringLiteral("cannot create folder %1").arg(dir));
        for (size_t i = 0; i < all.size(); ++i)
            WriteFile(QDir(dir).filePath(QString::number(all[i].id) + QStringLiteral(".png")),
                      pngs[i]);
    }
    WriteFile(QString::fromLocal8Bit(argv[1]), Source(all, pngs));
    return 0;
}
