#include "platform/qt/QtColourDialog.h"

#include <QApplication>
#include <QColorDialog>

namespace velmora {

namespace {

QColor FromBgr(quint32 bgr) {
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

quint32 ToBgr(const QColor& c) {
    return quint32(c.red()) | (quint32(c.green()) << 8) | (quint32(c.blue()) << 16);
}

} // namespace

bool QtColourDialog::PickColour(quint32& colour) {
    const QColor chosen =
        QColorDialog::getColor(FromBgr(lastPicked.value_or(colour)), QApplication::activeWindow());
    if (!chosen.isValid())
        return false;
    colour = ToBgr(chosen);
    lastPicked = colour;
    return true;
}

} // namespace velmora
