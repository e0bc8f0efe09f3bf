#pragma once

#include "platform/ProfileFiles.h"

#include <QDateTime>
#include <QStringList>

namespace velmora {

// Profile files as UTF-8 text. A write replaces the file whole: it goes to a
// temporary file beside it, which is then renamed over it, so a crash or a
// full disk never leaves half a file.
class IniProfileFiles : public ProfileFiles {
public:
    int GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                 const QString& file) override;
    int GetPrivateProfileString(const QString& section, const QString& key,
                                const QString& defaultValue, QString& buffer, int size,
                                const QString& file) override;
    bool WritePrivateProfileString(const QString& section, const QString& key, const QString& value,
                                   const QString& file) override;

    // The lines of a file, without line ends; empty when it cannot be read.
    static QStringList ReadLines(const QString& file);

private:
    // The last file read or written, kept while it is unchanged on disk:
    // a Rules file is read a key at a time.
    const QStringList& lines(const QString& file);
    void remember(const QString& file, const QStringList& lines);

    QString cachedFile;
    QDateTime cachedModified;
    qint64 cachedSize = -1;
    QStringList cachedLines;
};

} // namespace velmora
