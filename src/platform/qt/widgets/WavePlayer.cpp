#include "platform/qt/widgets/WavePlayer.h"

#include <QAudioDevice>
#include <QEventLoop>
#include <QFile>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>
#include <QtEndian>

namespace velmora {

namespace {

// Loading may take a moment beyond the sound itself.
constexpr int kMarginMs = 2000;

} // namespace

int WavePlayer::DurationMs(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray head = file.read(12);
    if (head.size() < 12 || !head.startsWith("RIFF") || head.mid(8, 4) != "WAVE")
        return -1;
    quint32 byteRate = 0;
    for (;;) {
        const QByteArray chunk = file.read(8);
        if (chunk.size() < 8)
            return -1;
        const quint32 size = qFromLittleEndian<quint32>(chunk.constData() + 4);
        if (chunk.startsWith("fmt ")) {
            const QByteArray fmt = file.read(size);
            if (fmt.size() < 12)
                return -1;
            byteRate = qFromLittleEndian<quint32>(fmt.constData() + 8);
            if (size % 2)
                file.read(1);
        } else if (chunk.startsWith("data")) {
            return byteRate == 0 ? -1 : int(qint64(size) * 1000 / byteRate);
        } else if (!file.seek(file.pos() + size + (size % 2))) {
            return -1;
        }
    }
}

void WavePlayer::PlayWave(const QString& path) {
    const int length = DurationMs(path);
    if (length < 0 || QMediaDevices::defaultAudioOutput().isNull())
        return;
    QSoundEffect effect;
    QEventLoop loop;
    QTimer bound;
    bound.setSingleShot(true);
    QObject::connect(&bound, &QTimer::timeout, &loop, &QEventLoop::quit);
    bool started = false;
    QObject::connect(&effect, &QSoundEffect::statusChanged, &loop, [&] {
        if (effect.status() == QSoundEffect::Ready && !started) {
            started = true;
            effect.play();
        } else if (effect.status() == QSoundEffect::Error) {
            loop.quit();
        }
    });
    QObject::connect(&effect, &QSoundEffect::playingChanged, &loop, [&] {
        if (started && !effect.isPlaying())
            loop.quit();
    });
    effect.setSource(QUrl::fromLocalFile(path));
    bound.start(length + kMarginMs);
    loop.exec();
    effect.stop();
}

} // namespace velmora
