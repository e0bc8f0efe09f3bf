#include "platform/qt/widgets/Pictures.h"

#include "platform/qt/widgets/TrayPictures.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace velmora::Pictures {

namespace {

constexpr int Size = 32;

void DrawEnvelope(QPainter& p, const QColor& fill, const QColor& line) {
    const QRectF body(3, 8, 26, 17);
    p.setPen(QPen(line, 2));
    p.setBrush(fill);
    p.drawRoundedRect(body, 2, 2);
    p.drawLine(QPointF(4, 9), QPointF(16, 18));
    p.drawLine(QPointF(28, 9), QPointF(16, 18));
}

void DrawCross(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(20, 18), QPointF(29, 27));
    p.drawLine(QPointF(29, 18), QPointF(20, 27));
}

void DrawBadge(QPainter& p, const QColor& colour, const QString& letter) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QRectF(2, 2, 28, 28));
    p.setPen(Qt::white);
    QFont font = p.font();
    font.setBold(true);
    font.setPixelSize(16);
    p.setFont(font);
    p.drawText(QRectF(2, 2, 28, 28), Qt::AlignCenter, letter);
}

QColor BadgeColour(const QString& key) {
    // In this order: "SpamNew" is spam first, "RulesAdd" an addition.
    struct Entry {
        const char* word;
        QColor colour;
    };
    static const Entry colours[] = {
        {"Delete", QColor(200, 50, 50)},    {"Spam", QColor(200, 110, 30)},
        {"Stop", QColor(200, 50, 50)},      {"Cancel", QColor(180, 90, 40)},
        {"Quit", QColor(170, 40, 40)},      {"Add", QColor(40, 150, 80)},
        {"New", QColor(40, 150, 80)},       {"CheckAll", QColor(40, 150, 80)},
        {"Attach", QColor(90, 90, 160)},    {"Help", QColor(60, 120, 200)},
        {"Close", QColor(110, 110, 110)},   {"Save", QColor(40, 110, 170)},
        {"Pause", QColor(200, 150, 30)},    {"Size", QColor(100, 100, 160)},
        {"Options", QColor(90, 90, 90)},    {"Rules", QColor(130, 80, 160)},
        {"Accounts", QColor(40, 130, 140)}, {"Folder", QColor(200, 160, 60)},
    };
    for (const Entry& e : colours) {
        if (key.contains(QLatin1String(e.word)))
            return e.colour;
    }
    return QColor(70, 100, 140);
}

// The letter of a badge: a toolbar's buttons share their first word
// ("EmailPreview", "EmailDelete"), so theirs comes from the second.
QString BadgeLetter(const QString& key) {
    for (const char* prefix : {"Email", "Acnt", "Rules"}) {
        const QLatin1String p(prefix);
        if (key.startsWith(p) && key.size() > p.size() && key.at(p.size()).isUpper())
            return key.mid(p.size(), 1);
    }
    return key.left(1).toUpper();
}

// The column the list is sorted by: a triangle pointing the way it runs.
void DrawSortArrow(QPainter& p, bool descending) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(90, 90, 90));
    QPainterPath path;
    if (descending) {
        path.moveTo(8, 11);
        path.lineTo(24, 11);
        path.lineTo(16, 22);
    } else {
        path.moveTo(8, 22);
        path.lineTo(24, 22);
        path.lineTo(16, 11);
    }
    path.closeSubpath();
    p.drawPath(path);
}

QPixmap Blank() {
    QPixmap pixmap(Size, Size);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

} // namespace

QIcon Keyed(const QString& key) {
    static QHash<QString, QIcon> cache;
    if (auto it = cache.constFind(key); it != cache.constEnd())
        return *it;
    if (key.isEmpty() || key == QLatin1String("Blank"))
        return cache[key] = QIcon();
    QPixmap pixmap = Blank();
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    if (key == QLatin1String("Ascending") || key == QLatin1String("Descending")) {
        DrawSortArrow(p, key == QLatin1String("Descending"));
    } else if (key == QLatin1String("Normal") || key == QLatin1String("New")) {
        // A message row: read, or new and lit.
        DrawEnvelope(p, key == QLatin1String("New") ? QColor(255, 230, 120) : QColor(245, 245, 245),
                     QColor(40, 60, 90));
    } else if (key.startsWith(QLatin1String("Mail")) || key == QLatin1String("Email")) {
        const bool disabled = key.endsWith(QLatin1String("Disabled"));
        const QColor line = disabled ? QColor(150, 150, 150) : QColor(40, 60, 90);
        QColor fill = key.startsWith(QLatin1String("MailYes")) ? QColor(255, 230, 120)
                                                               : QColor(245, 245, 245);
        if (key.startsWith(QLatin1String("MailSpin"))) {
            const int frame = key.mid(8).toInt();
            fill = QColor::fromHsv((frame * 45) % 360, 90, 255);
        }
        DrawEnvelope(p, disabled ? fill.lighter(110) : fill, line);
        if (key.startsWith(QLatin1String("MailError")))
            DrawCross(p, QColor(200, 40, 40));
    } else {
        DrawBadge(p, BadgeColour(key), BadgeLetter(key));
    }
    p.end();
    return cache[key] = QIcon(pixmap);
}

QIcon Tray(const QList<int>& layers) {
    return TrayPictures::Icon(layers);
}

} // namespace velmora::Pictures
