#pragma once

#include <QColor>

namespace velmora {

// The logic keeps colours as stored in the settings, 0x00BBGGRR; the
// widgets take QColor. These two are the only place the two meet.
inline QColor ToQColor(quint32 bgr) {
    return QColor(int(bgr & 0xFFu), int((bgr >> 8) & 0xFFu), int((bgr >> 16) & 0xFFu));
}

inline quint32 ToBgr(const QColor& colour) {
    const QRgb rgb = colour.rgb();
    return quint32(qRed(rgb)) | quint32(qGreen(rgb)) << 8 | quint32(qBlue(rgb)) << 16;
}

} // namespace velmora
