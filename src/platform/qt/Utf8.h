#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

namespace velmora {

// UTF-8 bytes of part of a file as text. QString::fromUtf8 drops a byte
// order mark at the start of what it is given, which is right for a whole
// file but takes U+FEFF off a value or a name that begins with it.
inline QString Utf8Text(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(bytes);
}

} // namespace velmora
