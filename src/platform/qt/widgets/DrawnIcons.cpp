#include "platform/qt/widgets/DrawnIcons.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QtMath>

#include <initializer_list>
#include <optional>

namespace velmora::DrawnIcons {

namespace {

// Every pictogram is drawn on a 32 by 32 grid; a 2-unit stroke is one
// pixel at 16 px. Fills carry the shape on dark panels, outlines on light.
constexpr qreal Grid = 32;
constexpr qreal Stroke = 2;

const QColor Ink(40, 52, 70);
const QColor Paper(250, 250, 246);
const QColor Lit(255, 212, 72);
const QColor Green(40, 150, 70);
const QColor Red(210, 50, 50);
const QColor Blue(45, 120, 205);
const QColor Orange(235, 140, 20);
const QColor Metal(150, 160, 172);
const QColor Manila(232, 172, 56);
const QColor Purple(150, 100, 205);
// Lines that stand alone, seen on light and dark panels alike.
const QColor Slate(110, 124, 145);

enum class Shape {
    Envelope,
    Bin,
    Folder,
    OpenFolder,
    Magnifier,
    Reply,
    Stop,
    Pause,
    Help,
    Floppy,
    Cancel,
    Close,
    Gear,
    Info,
    Globe,
    Power,
    Corners,
    People,
    Funnel,
    SpeakerOn,
    SpeakerOff,
    Clock,
    Palette,
    Transfer,
    Import,
    Rename,
    SortUp,
    SortDown,
    Page,
    Printer,
};

// A mark in the lower right corner: what is done to the thing, or its state.
enum class Mark { None, Plus, Down, Cross, Tick, Warning, Clip };

struct Picture {
    Shape shape = Shape::Page;
    Mark mark = Mark::None;
    QColor fill = Paper; // an envelope's paper
    bool faded = false;  // an account that is not checked
};

QPen Line(const QColor& colour, qreal width = Stroke) {
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// A line through the points in order, left open.
QPainterPath Polyline(std::initializer_list<QPointF> points) {
    QPainterPath path;
    for (const QPointF& point : points) {
        if (path.elementCount() == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

// The same, closed back to the first point.
QPainterPath Polygon(std::initializer_list<QPointF> points) {
    QPainterPath path = Polyline(points);
    path.closeSubpath();
    return path;
}

// Draws the path and leaves the pen and brush set, as the next strokes of a
// pictogram often carry on with them.
void DrawPath(QPainter& p, const QPainterPath& path, const QPen& line, const QBrush& fill) {
    p.setPen(line);
    p.setBrush(fill);
    p.drawPath(path);
}

// An X of two strokes, `reach` from the centre along each axis.
void DrawCross(QPainter& p, const QPointF& centre, qreal reach, const QPen& line) {
    p.setPen(line);
    p.drawLine(centre + QPointF(-reach, -reach), centre + QPointF(reach, reach));
    p.drawLine(centre + QPointF(reach, -reach), centre + QPointF(-reach, reach));
}

void DrawEnvelope(QPainter& p, const QRectF& body, const QColor& fill, const QColor& line) {
    p.setPen(Line(line));
    p.setBrush(fill);
    p.drawRoundedRect(body, 2, 2);
    const qreal top = body.top() + 1.5;
    DrawPath(p,
             Polyline({{body.left() + 1.5, top},
                       {body.center().x(), body.top() + body.height() * 0.58},
                       {body.right() - 1.5, top}}),
             Line(line), Qt::NoBrush);
}

void DrawBin(QPainter& p) {
    DrawPath(p, Polygon({{7.5, 10}, {24.5, 10}, {22.5, 29}, {9.5, 29}}), Line(Ink), Metal);
    p.setBrush(Metal.lighter(115));
    p.drawRoundedRect(QRectF(5, 6, 22, 4), 1, 1);
    p.setBrush(Qt::NoBrush);
    p.drawLine(QPointF(13, 6), QPointF(13.5, 3.5));
    p.drawLine(QPointF(13.5, 3.5), QPointF(18.5, 3.5));
    p.drawLine(QPointF(18.5, 3.5), QPointF(19, 6));
    p.setPen(Line(Ink, 1.5));
    p.drawLine(QPointF(13.5, 14), QPointF(13.5, 25));
    p.drawLine(QPointF(18.5, 14), QPointF(18.5, 25));
}

void DrawFolderBack(QPainter& p, qreal right) {
    DrawPath(p, Polygon({{3, 26.5}, {3, 6}, {11.5, 6}, {14, 8.5}, {right, 8.5}, {right, 26.5}}),
             Line(Manila.darker(190)), Manila);
}

// The mail program's folder: a letter in a closed folder.
void DrawFolder(QPainter& p) {
    DrawFolderBack(p, 29);
    DrawEnvelope(p, QRectF(7, 3, 18, 13), Paper, Ink);
    p.setPen(Line(Manila.darker(190)));
    p.setBrush(Manila.lighter(118));
    p.drawRoundedRect(QRectF(3, 14.5, 26, 12), 1.5, 1.5);
}

void DrawOpenFolder(QPainter& p) {
    DrawFolderBack(p, 26);
    p.setPen(Line(Ink, 1.5));
    p.setBrush(Paper);
    p.drawRect(QRectF(7, 5, 16, 14));
    DrawPath(p, Polygon({{3, 26.5}, {8, 14}, {30.5, 14}, {26, 26.5}}), Line(Manila.darker(190)),
             Manila.lighter(118));
}

void DrawMagnifier(QPainter& p) {
    p.setPen(Line(Ink, 6));
    p.drawLine(QPointF(19.5, 19.5), QPointF(27.5, 27.5));
    p.setPen(Line(Slate, 3));
    p.drawLine(QPointF(20, 20), QPointF(27.5, 27.5));
    p.setPen(Line(Ink, 2.5));
    p.setBrush(QColor(200, 226, 250));
    p.drawEllipse(QPointF(13, 13), 9, 9);
    p.setPen(Line(Paper, 1.75));
    p.drawArc(QRectF(8, 8, 10, 10), 100 * 16, 70 * 16);
}

void DrawReply(QPainter& p) {
    QPainterPath stem;
    stem.moveTo(28, 27);
    stem.cubicTo(28, 17, 22, 13, 12, 13);
    DrawPath(p, stem, Line(Blue, 4.5), Qt::NoBrush);
    DrawPath(p, Polygon({{3, 13}, {13, 4}, {13, 22}}), Line(Blue, 1.5), Blue);
}

void DrawStop(QPainter& p) {
    QPolygonF octagon;
    for (int i = 0; i < 8; ++i) {
        const qreal a = qDegreesToRadians(22.5 + 45.0 * i);
        octagon << QPointF(16 + 14 * qCos(a), 16 + 14 * qSin(a));
    }
    p.setPen(Line(Red.darker(150)));
    p.setBrush(Red);
    p.drawPolygon(octagon);
    p.setPen(Qt::NoPen);
    p.setBrush(Paper);
    p.drawRoundedRect(QRectF(8, 13.5, 16, 5), 1, 1);
}

void DrawPause(QPainter& p) {
    p.setPen(Line(Blue.darker(150)));
    p.setBrush(Blue);
    p.drawRoundedRect(QRectF(7, 5, 7, 22), 1.5, 1.5);
    p.drawRoundedRect(QRectF(18, 5, 7, 22), 1.5, 1.5);
}

void DrawDisc(QPainter& p, const QColor& colour) {
    p.setPen(Line(colour.darker(150)));
    p.setBrush(colour);
    p.drawEllipse(QPointF(16, 16), 14, 14);
}

void DrawHelp(QPainter& p) {
    DrawDisc(p, Blue);
    QPainterPath hook;
    hook.arcMoveTo(QRectF(11, 6.5, 10, 10), 160);
    hook.arcTo(QRectF(11, 6.5, 10, 10), 160, -235);
    hook.lineTo(16, 19);
    DrawPath(p, hook, Line(Paper, 3.2), Qt::NoBrush);
    p.setPen(Qt::NoPen);
    p.setBrush(Paper);
    p.drawEllipse(QPointF(16, 24), 2, 2);
}

void DrawInfo(QPainter& p) {
    DrawDisc(p, Blue);
    p.setPen(Qt::NoPen);
    p.setBrush(Paper);
    p.drawEllipse(QPointF(16, 9), 2.2, 2.2);
    p.setPen(QPen(Paper, 3.6, Qt::SolidLine, Qt::FlatCap));
    p.drawLine(QPointF(16, 13.5), QPointF(16, 24.5));
    p.setPen(QPen(Paper, 2, Qt::SolidLine, Qt::FlatCap));
    p.drawLine(QPointF(12.5, 14.5), QPointF(17.5, 14.5));
    p.drawLine(QPointF(12.5, 24.5), QPointF(19.5, 24.5));
}

void DrawFloppy(QPainter& p) {
    DrawPath(p, Polygon({{4, 4}, {23.5, 4}, {28, 8.5}, {28, 28}, {4, 28}}), Line(Blue.darker(170)),
             Blue);
    p.setPen(Line(Blue.darker(170), 1.5));
    p.setBrush(Metal.lighter(120));
    p.drawRect(QRectF(9.5, 4, 12, 8));
    p.setBrush(Ink);
    p.setPen(Qt::NoPen);
    p.drawRect(QRectF(17, 5.5, 2.5, 5));
    p.setPen(Line(Blue.darker(170), 1.5));
    p.setBrush(Paper);
    p.drawRect(QRectF(8, 17, 16, 11));
}

void DrawCancel(QPainter& p) {
    DrawDisc(p, Red);
    DrawCross(p, QPointF(16, 16), 5.5, Line(Paper, 3.5));
}

void DrawClose(QPainter& p) {
    p.setPen(Line(Ink));
    p.setBrush(Paper);
    p.drawRoundedRect(QRectF(3, 4, 26, 24), 2, 2);
    p.setBrush(Ink);
    p.drawRect(QRectF(3, 4, 26, 5));
    DrawCross(p, QPointF(16, 18), 4.5, Line(Red, 3));
}

void DrawGear(QPainter& p) {
    QPolygonF teeth;
    const auto at = [](qreal degrees, qreal radius) {
        const qreal a = qDegreesToRadians(degrees);
        return QPointF(16 + radius * qCos(a), 16 + radius * qSin(a));
    };
    for (int i = 0; i < 8; ++i) {
        const qreal a = 45.0 * i;
        teeth << at(a - 15, 10.5) << at(a - 8, 14.5) << at(a + 8, 14.5) << at(a + 15, 10.5);
    }
    QPainterPath gear;
    gear.addPolygon(teeth);
    gear.closeSubpath();
    gear.addEllipse(QPointF(16, 16), 4.5, 4.5);
    gear.setFillRule(Qt::OddEvenFill);
    DrawPath(p, gear, Line(Ink), Metal);
}

void DrawGlobe(QPainter& p) {
    DrawDisc(p, QColor(60, 140, 215));
    p.setPen(Line(QColor(225, 240, 252), 1.5));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(16, 16), 5.5, 14);
    p.drawLine(QPointF(2.5, 16), QPointF(29.5, 16));
    p.drawLine(QPointF(5, 9), QPointF(27, 9));
    p.drawLine(QPointF(5, 23), QPointF(27, 23));
}

void DrawPower(QPainter& p) {
    p.setPen(Line(Red, 3.5));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(5, 6.5, 22, 22), 125 * 16, 290 * 16);
    p.drawLine(QPointF(16, 3.5), QPointF(16, 15.5));
}

void DrawCorners(QPainter& p) {
    p.setPen(Line(Ink, 1.5));
    p.setBrush(Paper);
    p.drawRect(QRectF(10.5, 10.5, 11, 11));
    p.setPen(Line(Blue, 3));
    p.setBrush(Qt::NoBrush);
    for (const QPointF& c : {QPointF(4, 4), QPointF(28, 4), QPointF(28, 28), QPointF(4, 28)}) {
        const qreal dx = c.x() < 16 ? 7 : -7;
        const qreal dy = c.y() < 16 ? 7 : -7;
        p.drawPath(Polyline({{c.x() + dx, c.y()}, c, {c.x(), c.y() + dy}}));
    }
}

void DrawPerson(QPainter& p, const QPointF& head, qreal size, const QColor& colour) {
    p.setPen(Line(colour.darker(170), 1.5));
    p.setBrush(colour);
    const qreal w = size * 1.9;
    p.drawPie(QRectF(head.x() - w / 2, head.y() + size * 1.1, w, w), 0, 180 * 16);
    p.drawEllipse(head, size * 0.55, size * 0.55);
}

void DrawPeople(QPainter& p) {
    DrawPerson(p, QPointF(21.5, 8.5), 8, Metal);
    DrawPerson(p, QPointF(11.5, 12), 9.5, Blue);
}

void DrawFunnel(QPainter& p) {
    DrawPath(p, Polygon({{3, 5}, {29, 5}, {19, 17}, {19, 26}, {13, 29}, {13, 17}}),
             Line(Purple.darker(170)), Purple);
}

void DrawSpeaker(QPainter& p) {
    DrawPath(p, Polygon({{3.5, 12}, {9, 12}, {16, 5.5}, {16, 26.5}, {9, 20}, {3.5, 20}}), Line(Ink),
             Metal);
}

void DrawSpeakerOn(QPainter& p) {
    DrawSpeaker(p);
    p.setPen(Line(Blue, 2.5));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(11, 10, 12, 12), -50 * 16, 100 * 16);
    p.drawArc(QRectF(7, 4, 24, 24), -50 * 16, 100 * 16);
}

void DrawSpeakerOff(QPainter& p) {
    DrawSpeaker(p);
    DrawCross(p, QPointF(24.5, 15.5), 4, Line(Red, 3));
}

void DrawClock(QPainter& p) {
    p.setPen(Line(Ink));
    p.setBrush(Paper);
    p.drawEllipse(QPointF(14.5, 14.5), 12, 12);
    p.setPen(Line(Ink, 2.25));
    p.drawLine(QPointF(14.5, 14.5), QPointF(14.5, 7));
    p.drawLine(QPointF(14.5, 14.5), QPointF(20, 14.5));
}

void DrawPalette(QPainter& p) {
    QPainterPath board;
    board.addEllipse(QRectF(2.5, 5, 27, 22));
    board.addEllipse(QPointF(11, 20.5), 2.8, 2.8);
    board.setFillRule(Qt::OddEvenFill);
    DrawPath(p, board, Line(QColor(140, 95, 45)), QColor(236, 204, 150));
    struct Dab {
        QPointF at;
        QColor colour;
    };
    const Dab dabs[] = {{QPointF(9, 12.5), Blue},
                        {QPointF(15.5, 9.5), QColor(250, 200, 30)},
                        {QPointF(22, 10.5), Red},
                        {QPointF(24, 17.5), Green}};
    p.setPen(Line(Ink, 1));
    for (const Dab& d : dabs) {
        p.setBrush(d.colour);
        p.drawEllipse(d.at, 2.8, 2.8);
    }
}

void DrawArrow(QPainter& p, const QPointF& from, const QPointF& to, const QColor& colour,
               qreal width) {
    p.setPen(Line(colour, width));
    p.setBrush(Qt::NoBrush);
    p.drawLine(from, to);
    const qreal dir = to.y() > from.y() ? -1 : 1;
    p.drawPath(
        Polyline({{to.x() - 5.5, to.y() + dir * 5.5}, to, {to.x() + 5.5, to.y() + dir * 5.5}}));
}

// An account's test: sending and receiving.
void DrawTransfer(QPainter& p) {
    DrawArrow(p, QPointF(10.5, 28), QPointF(10.5, 5), Green, 3.5);
    DrawArrow(p, QPointF(21.5, 4), QPointF(21.5, 27), Blue, 3.5);
}

void DrawImport(QPainter& p) {
    DrawPath(p, Polyline({{3.5, 17}, {3.5, 28}, {28.5, 28}, {28.5, 17}}), Line(Slate, 3),
             Qt::NoBrush);
    DrawArrow(p, QPointF(16, 3), QPointF(16, 22), Blue, 3.5);
}

void DrawRename(QPainter& p) {
    p.setPen(Line(Slate, 3));
    p.drawLine(QPointF(3.5, 28.5), QPointF(28.5, 28.5));
    p.save();
    p.translate(17, 14);
    p.rotate(-45);
    p.setPen(Line(Ink, 1.5));
    p.setBrush(Manila);
    p.drawRect(QRectF(-9, -3.5, 16, 7));
    p.setBrush(QColor(230, 140, 150));
    p.drawRect(QRectF(7, -3.5, 4, 7));
    DrawPath(p, Polygon({{-9, -3.5}, {-16, 0}, {-9, 3.5}}), Line(Ink, 1.5), Paper);
    p.restore();
}

void DrawSortArrow(QPainter& p, bool descending) {
    const qreal base = descending ? 11 : 22;
    const qreal tip = descending ? 22 : 11;
    DrawPath(p, Polygon({{8, base}, {24, base}, {16, tip}}), Qt::NoPen, QColor(90, 90, 90));
}

void DrawPage(QPainter& p) {
    DrawPath(p, Polygon({{7, 3}, {19, 3}, {25, 9}, {25, 29}, {7, 29}}), Line(Ink), Paper);
    p.drawLine(QPointF(19, 3), QPointF(19, 9));
    p.drawLine(QPointF(19, 9), QPointF(25, 9));
}

// A sheet rising from the printer's body, the printed sheet below.
void DrawPrinter(QPainter& p) {
    p.setPen(Line(Ink));
    p.setBrush(Paper);
    p.drawRect(QRectF(9, 3, 14, 9));
    p.setBrush(Metal);
    p.drawRoundedRect(QRectF(3, 11, 26, 12), 2, 2);
    p.setBrush(Paper);
    p.drawRect(QRectF(8, 19, 16, 10));
    p.drawLine(QPointF(11, 23), QPointF(21, 23));
    p.drawLine(QPointF(11, 26), QPointF(18, 26));
    p.setBrush(Green);
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(25, 15), 1.5, 1.5);
}

// Three strands two pixels apart at 16 px, so the clip stays a clip.
void DrawClip(QPainter& p) {
    QPainterPath clip;
    clip.moveTo(19, 13);
    clip.lineTo(19, 26);
    clip.arcTo(QRectF(19, 22, 8, 8), 180, 180);
    clip.lineTo(27, 10);
    clip.arcTo(QRectF(23, 8, 4, 4), 0, 180);
    clip.lineTo(23, 24);
    // A paper rim first, so the clip stands off the envelope.
    DrawPath(p, clip, Line(Paper, 4.5), Qt::NoBrush);
    DrawPath(p, clip, Line(Ink, 2), Qt::NoBrush);
}

// A bold arrow rather than a disc: at 16 px a disc's arrow reads as a plus.
void DrawDownArrow(QPainter& p) {
    const QPainterPath arrow =
        Polygon({{21.5, 12}, {26.5, 12}, {26.5, 20}, {31, 20}, {24, 30}, {17, 20}, {21.5, 20}});
    DrawPath(p, arrow, Line(Paper, 3), Paper);
    DrawPath(p, arrow, Line(Green.darker(140), 1.5), Green);
}

void DrawMark(QPainter& p, Mark mark) {
    if (mark == Mark::None)
        return;
    if (mark == Mark::Clip) {
        DrawClip(p);
        return;
    }
    if (mark == Mark::Down) {
        DrawDownArrow(p);
        return;
    }
    const QPointF c(23.5, 23.5);
    const QColor colour = mark == Mark::Cross ? Red : mark == Mark::Warning ? Orange : Green;
    p.setPen(QPen(Paper, 1.5));
    p.setBrush(colour);
    p.drawEllipse(c, 8, 8);
    p.setPen(Line(Paper, 2.5));
    p.setBrush(Qt::NoBrush);
    switch (mark) {
    case Mark::Plus:
        p.setPen(Line(Paper, 3));
        p.drawLine(c + QPointF(-5, 0), c + QPointF(5, 0));
        p.drawLine(c + QPointF(0, -5), c + QPointF(0, 5));
        break;
    case Mark::Cross:
        DrawCross(p, c, 3.5, Line(Paper, 2.5));
        break;
    case Mark::Tick:
        p.drawPath(Polyline({c + QPointF(-4, 0.3), c + QPointF(-1, 3.3), c + QPointF(4, -2.8)}));
        break;
    case Mark::Warning:
        p.drawLine(c + QPointF(0, -4.5), c + QPointF(0, 0.8));
        p.setPen(Qt::NoPen);
        p.setBrush(Paper);
        p.drawEllipse(c + QPointF(0, 4), 1.5, 1.5);
        break;
    default:
        break;
    }
}

// A marked envelope moves up and left to leave room for the mark.
void DrawMail(QPainter& p, const Picture& pic) {
    const QColor line = pic.faded ? QColor(150, 150, 150) : Ink;
    const QColor fill = pic.faded ? pic.fill.lighter(110) : pic.fill;
    const QRectF body = pic.mark == Mark::None ? QRectF(3, 7, 26, 18) : QRectF(2, 5, 24, 17);
    DrawEnvelope(p, body, fill, line);
}

void Draw(QPainter& p, const Picture& pic) {
    switch (pic.shape) {
    case Shape::Envelope:
        DrawMail(p, pic);
        break;
    case Shape::Bin:
        DrawBin(p);
        break;
    case Shape::Folder:
        DrawFolder(p);
        break;
    case Shape::OpenFolder:
        DrawOpenFolder(p);
        break;
    case Shape::Magnifier:
        DrawMagnifier(p);
        break;
    case Shape::Reply:
        DrawReply(p);
        break;
    case Shape::Stop:
        DrawStop(p);
        break;
    case Shape::Pause:
        DrawPause(p);
        break;
    case Shape::Help:
        DrawHelp(p);
        break;
    case Shape::Floppy:
        DrawFloppy(p);
        break;
    case Shape::Cancel:
        DrawCancel(p);
        break;
    case Shape::Close:
        DrawClose(p);
        break;
    case Shape::Gear:
        DrawGear(p);
        break;
    case Shape::Info:
        DrawInfo(p);
        break;
    case Shape::Globe:
        DrawGlobe(p);
        break;
    case Shape::Power:
        DrawPower(p);
        break;
    case Shape::Corners:
        DrawCorners(p);
        break;
    case Shape::People:
        DrawPeople(p);
        break;
    case Shape::Funnel:
        DrawFunnel(p);
        break;
    case Shape::SpeakerOn:
        DrawSpeakerOn(p);
        break;
    case Shape::SpeakerOff:
        DrawSpeakerOff(p);
        break;
    case Shape::Clock:
        DrawClock(p);
        break;
    case Shape::Palette:
        DrawPalette(p);
        break;
    case Shape::Transfer:
        DrawTransfer(p);
        break;
    case Shape::Import:
        DrawImport(p);
        break;
    case Shape::Rename:
        DrawRename(p);
        break;
    case Shape::SortUp:
        DrawSortArrow(p, false);
        break;
    case Shape::SortDown:
        DrawSortArrow(p, true);
        break;
    case Shape::Page:
        DrawPage(p);
        break;
    case Shape::Printer:
        DrawPrinter(p);
        break;
    }
    DrawMark(p, pic.mark);
}

const QHash<QString, Picture>& Table() {
    using S = Shape;
    using M = Mark;
    static const QHash<QString, Picture> table = {
        // Mail itself: the program, the list's rows and the tabs.
        {"Email", {S::Envelope, M::None, Lit}},
        {"Show", {S::Envelope, M::None, Lit}},
        {"Normal", {S::Envelope}},
        {"New", {S::Envelope, M::None, Lit}},
        {"MailNo", {S::Envelope}},
        {"MailYes", {S::Envelope, M::None, Lit}},
        {"MailError", {S::Envelope, M::Cross}},
        {"Attach", {S::Envelope, M::Clip}},
        {"AttachNew", {S::Envelope, M::Clip, Lit}},
        {"Spam", {S::Envelope, M::Warning}},
        {"SpamNew", {S::Envelope, M::Warning, Lit}},
        {"EmailSpam", {S::Envelope, M::Warning}},
        {"CheckAll", {S::Envelope, M::Down}},
        {"EmailCheck", {S::Envelope, M::Down}},
        {"NewMessage", {S::Envelope, M::Plus}},
        {"EmailNew", {S::Envelope, M::Plus}},
        // What is done to a message.
        {"Preview", {S::Magnifier}},
        {"EmailPreview", {S::Magnifier}},
        {"Reply", {S::Reply}},
        {"EmailReply", {S::Reply}},
        {"Open", {S::OpenFolder}},
        {"EmailOpen", {S::OpenFolder}},
        {"Delete", {S::Bin}},
        {"EmailDelete", {S::Bin}},
        {"DeleteAttach", {S::Bin, M::Clip}},
        {"AcntDelete", {S::Bin}},
        {"RulesDelete", {S::Bin}},
        // The mail program.
        {"Folder", {S::Folder}},
        {"FolderX", {S::Folder, M::Cross}},
        // The pages and their buttons.
        {"Accounts", {S::People}},
        {"AcntAdd", {S::People, M::Plus}},
        {"AcntTest", {S::Transfer}},
        {"Rules", {S::Funnel}},
        {"RulesAdd", {S::Funnel, M::Plus}},
        {"RulesImport", {S::Import}},
        {"RulesRename", {S::Rename}},
        {"Options", {S::Gear}},
        {"Gears", {S::Gear}},
        {"Quit", {S::Power}},
        {"Size", {S::Corners}},
        {"Help", {S::Help}},
        {"About", {S::Info}},
        {"Stop", {S::Stop}},
        {"Pause", {S::Pause}},
        {"Close", {S::Close}},
        {"Save", {S::Floppy}},
        {"Cancel", {S::Cancel}},
        {"Updates", {S::Globe, M::Down}},
        {"Update", {S::Globe, M::Down}},
        {"ReadMe", {S::Page}},
        {"Print", {S::Printer}},
        {"Browse", {S::OpenFolder}},
        {"Test", {S::Page, M::Tick}},
        {"MenuColours", {S::Palette}},
        {"SoundOn", {S::SpeakerOn}},
        {"SoundOff", {S::SpeakerOff}},
        {"AutoCheckOn", {S::Clock, M::Tick}},
        {"AutoCheckOff", {S::Clock, M::Cross}},
        {"Ascending", {S::SortUp}},
        {"Descending", {S::SortDown}},
    };
    return table;
}

std::optional<Picture> Find(const QString& key) {
    const auto& table = Table();
    if (auto it = table.constFind(key); it != table.constEnd())
        return *it;
    // One client picture for every client the menu lists.
    if (key.startsWith(QLatin1String("MailClient")))
        return Picture{Shape::Folder};
    // The tab of a checking account turns through the colours.
    if (key.startsWith(QLatin1String("MailSpin"))) {
        const int frame = key.mid(8).toInt();
        return Picture{Shape::Envelope, Mark::None, QColor::fromHsv((frame * 45) % 360, 90, 255)};
    }
    const QLatin1String disabled("Disabled");
    if (key.startsWith(QLatin1String("Mail")) && key.endsWith(disabled)) {
        if (auto pic = Find(key.chopped(disabled.size()))) {
            pic->faded = true;
            return pic;
        }
    }
    return std::nullopt;
}

Picture Lookup(const QString& key) {
    return Find(key).value_or(Picture{});
}

// Greyed and half seen, as a disabled control shows.
void Fade(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = line[x];
            const int grey = (qGray(c) + 2 * 150) / 3;
            line[x] = qRgba(grey, grey, grey, qAlpha(c) / 2);
        }
    }
}

QImage RenderPicture(const Picture& pic, int pixels, QIcon::Mode mode) {
    QImage image(pixels, pixels, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    if (pixels <= 0)
        return image;
    {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(pixels / Grid, pixels / Grid);
        Draw(p, pic);
    }
    if (mode == QIcon::Disabled)
        Fade(image);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

class DrawnEngine final : public QIconEngine {
public:
    explicit DrawnEngine(const QString& key) : name(key), picture(Lookup(key)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const int side = qMin(rect.width(), rect.height());
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        const QImage image = RenderPicture(picture, qRound(side * ratio), mode);
        const QRect square(rect.x() + (rect.width() - side) / 2,
                           rect.y() + (rect.height() - side) / 2, side, side);
        painter->drawImage(square, image);
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override {
        const int side = qMin(size.width(), size.height());
        return QSize(side, side);
    }

    // Asked at device pixels: QIcon passes the scaled size for dense screens.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const int side = qMin(size.width(), size.height());
        if (mode != QIcon::Disabled)
            mode = QIcon::Normal;
        const QString cacheKey =
            QStringLiteral("velmora-drawn:%1:%2:%3").arg(name).arg(side).arg(int(mode));
        QPixmap out;
        if (QPixmapCache::find(cacheKey, &out))
            return out;
        out = QPixmap::fromImage(RenderPicture(picture, side, mode));
        QPixmapCache::insert(cacheKey, out);
        return out;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return {QSize(16, 16), QSize(22, 22), QSize(24, 24), QSize(32, 32), QSize(48, 48)};
    }

    QString key() const override { return QStringLiteral("VelmoraDrawn"); }
    QIconEngine* clone() const override { return new DrawnEngine(*this); }

private:
    QString name;
    Picture picture;
};

} // namespace

bool Knows(const QString& key) {
    return Find(key).has_value();
}

QIcon Icon(const QString& key) {
    return QIcon(new DrawnEngine(key));
}

QImage Render(const QString& key, int pixels, QIcon::Mode mode) {
    return RenderPicture(Lookup(key), pixels, mode);
}

} // namespace velmora::DrawnIcons
