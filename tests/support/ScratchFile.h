#pragma once

#include <QFile>
#include <QTemporaryDir>

// A file of a test's own in a fresh folder, written and read whole.
class ScratchFile {
public:
    explicit ScratchFile(const QString& name) : name(name) {}

    QString folder() const { return dir.path(); }
    QString path() const { return dir.path() + QLatin1Char('/') + name; }
    bool write(const QByteArray& text) const {
        QFile f(path());
        return f.open(QIODevice::WriteOnly) && f.write(text) == text.size();
    }
    QByteArray read() const {
        QFile f(path());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private:
    QTemporaryDir dir;
    QString name;
};
