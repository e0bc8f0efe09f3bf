#pragma once

#include "platform/ProfileFiles.h"

#include <QHash>
#include <QStringList>

#include <utility>

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
    // What tells a file's versions apart, read by one stat.
    struct Stamp {
        bool exists = false;
        qint64 size = -1;
        qint64 modified = 0; // nanoseconds
        quint64 inode = 0;
        bool operator==(const Stamp&) const = default;
    };
    static Stamp StampOf(const QString& file);

    // The last file read or written, kept while it is unchanged on disk:
    // a Rules file is read a key at a time.
    const QStringList& lines(const QString& file);
    void remember(const QString& file, const QStringList& lines, const Stamp& stamp);
    // The kept file's sections, [first, end) of their bodies, where the
    // first of a name is found.
    bool findSection(const QString& section, int* first, int* end) const;

    QString cachedFile;
    Stamp cachedStamp;
    QStringList cachedLines;
    QHash<QString, std::pair<int, int>> cachedSections; // by case-folded name
};

} // namespace velmora
