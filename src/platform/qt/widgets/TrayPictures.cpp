#include "platform/qt/widgets/TrayPictures.h"

#include <QFont>
#include <QHash>
#include <QPainter>
#include <QPainterPath>

#include <cstdio>

namespace velmora::TrayPictures {

namespace {

// The colour boxes of the Accounts page, in order.
const QColor FieldColours[6] = {QColor(0, 0, 255),   QColor(0, 255, 255), QColor(0, 255, 0),
                                QColor(255, 0, 255), QColor(255, 0, 0),   QColor(0, 0, 0)};

int FieldOf(const QList<int>& stack) {
    for (int layer : stack) {
        if (layer >= 1 && layer <= 6)
            return layer;
    }
    return 0;
}

// Digits stay readable on every field: dark on the bright ones.
QColor InkFor(int field) {
    if (field == 0)
        return QColor(20, 20, 20);
    const QColor c = FieldColours[field - 1];
    const double luma = 0.299 * c.red() + 0.587 * c.green() + 0.114 * c.blue();
    return luma > 140 ? Qt::black : Qt::white;
}

void DrawField(QPainter& p, qreal s, const QColor& colour) {
    const qreal inset = s / 32.0;
    p.setPen(QPen(colour.darker(160), qMax(1.0, s / 24.0)));
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(inset, inset, s - 2 * inset, s - 2 * inset), s / 8, s / 8);
}

void DrawEnvelope(QPainter& p, qreal s, const QColor& fill, const QColor& line) {
    const QRectF body(s * 0.06, s * 0.2, s * 0.88, s * 0.6);
    p.setPen(QPen(line, qMax(1.0, s / 16.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(fill);
    p.drawRoundedRect(body, s / 20, s / 20);
    QPainterPath flap;
    flap.moveTo(body.topLeft() + QPointF(s * 0.02, s * 0.02));
    flap.lineTo(QPointF(s * 0.5, s * 0.55));
    flap.lineTo(body.topRight() + QPointF(-s * 0.02, s * 0.02));
    p.setBrush(Qt::NoBrush);
    p.drawPath(flap);
}

void DrawCross(QPainter& p, qreal s) {
    p.setPen(QPen(QColor(210, 30, 30), qMax(2.0, s / 8.0), Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(s * 0.58, s * 0.55), QPointF(s * 0.92, s * 0.89));
    p.drawLine(QPointF(s * 0.92, s * 0.55), QPointF(s * 0.58, s * 0.89));
}

// Auto Check off: a clock face struck through.
void DrawClockOff(QPainter& p, qreal s) {
    const QRectF face(s * 0.46, s * 0.46, s * 0.5, s * 0.5);
    p.setPen(QPen(QColor(60, 60, 60), qMax(1.0, s / 20.0)));
    p.setBrush(Qt::white);
    p.drawEllipse(face);
    p.drawLine(face.center(), face.center() - QPointF(0, s * 0.17));
    p.drawLine(face.center(), face.center() + QPointF(s * 0.12, 0));
    p.setPen(QPen(QColor(210, 30, 30), qMax(1.5, s / 12.0), Qt::SolidLine, Qt::RoundCap));
    p.drawLine(face.topLeft(), face.bottomRight());
}

// A digit filling a box, drawn from the font's outline so that it scales
// without blur and takes a dark edge on any field.
void DrawGlyph(QPainter& p, const QRectF& box, const QString& text, const QColor& ink) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(100);
    QPainterPath path;
    path.addText(0, 0, font, text);
    const QRectF bounds = path.boundingRect();
    const qreal scale = qMin(box.width() / bounds.width(), box.height() / bounds.height());
    QTransform t;
    t.translate(box.center().x(), box.center().y());
    t.scale(scale, scale);
    t.translate(-bounds.center().x(), -bounds.center().y());
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
    p.drawPath(t.map(path));
}

void DrawLayer(QPainter& p, qreal s, int layer, const QColor& ink) {
    const qreal m = s * 0.1;
    if (layer >= 1 && layer <= 6) {
        DrawField(p, s, FieldColours[layer - 1]);
    } else if (layer == 7) {
        DrawEnvelope(p, s, QColor(255, 226, 110), QColor(50, 60, 90));
    } else if (layer == 8) {
        DrawEnvelope(p, s, QColor(235, 235, 235), QColor(90, 90, 90));
        DrawCross(p, s);
    } else if (layer == 9) {
        DrawEnvelope(p, s, QColor(210, 210, 210), QColor(120, 120, 120));
        DrawClockOff(p, s);
    } else if (layer >= 10 && layer <= 19) {
        DrawGlyph(p, QRectF(s * 0.22, m, s * 0.56, s - 2 * m), QString::number(layer - 10), ink);
    } else if (layer >= 20 && layer <= 29) {
        DrawGlyph(p, QRectF(s * 0.53, m, s * 0.42, s - 2 * m), QString::number(layer - 20), ink);
    } else if (layer >= 30 && layer <= 38) {
        // A gap between tens and units keeps "11" from reading as one mark.
        DrawGlyph(p, QRectF(s * 0.05, m, s * 0.42, s - 2 * m), QString::number(layer - 29), ink);
    } else if (layer == 39) {
        DrawGlyph(p, QRectF(s * 0.12, s * 0.12, s * 0.76, s * 0.76), QStringLiteral("+"), ink);
    }
    // 40 is the empty field the digits lie on.
}

int drawn = 0;

} // namespace

QPixmap Render(const QList<int>& stack, int pixels) {
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink = InkFor(FieldOf(stack));
    for (int layer : stack)
        DrawLayer(p, pixels, layer, ink);
    return pixmap;
}

QIcon Icon(const QList<int>& stack) {
    static QHash<QList<int>, QIcon> cache;
    auto it = cache.constFind(stack);
    if (it != cache.constEnd())
        return *it;
    ++drawn;
    // For measuring: each drawing of a stack, one line on standard error.
    static const bool trace = qEnvironmentVariableIsSet("VELMORA_TRACE_DRAWS");
    if (trace) {
        QStringList layers;
        for (int layer : stack)
            layers << QString::number(layer);
        std::fprintf(stderr, "velmora: tray picture drawn: %s\n", qPrintable(layers.join(' ')));
    }
    QIcon icon;
    // Each size is drawn for itself so that thin lines stay on whole pixels;
    // the large ones serve scaled screens.
    for (int pixels : {16, 20, 22, 24, 32, 40, 44, 48, 64, 96})
        icon.addPixmap(Render(stack, pixels));
    cache.insert(stack, icon);
    return icon;
}

int DrawnStacks() {
    return drawn;
}

} // namespace velmora::TrayPictures
