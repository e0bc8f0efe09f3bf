#pragma once

#include "platform/ProfileFiles.h"
#include "platform/qt/ProfileText.h"

#include <QSet>

namespace velmora {

// Profile files as UTF-8 text. Every write replaces the file whole through
// WriteFileAtomically: a crash or a full disk never leaves half a file.
class IniProfileFiles : public ProfileFiles {
public:
    int GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                 const QString& file) override;
    int GetPrivateProfileString(const QString& section, const QString& key,
                                const QString& defaultValue, QString& buffer, int size,
                                const QString& file) override;
    bool WritePrivateProfileString(const QString& section, const QString& key, const QString& value,
                                   const QString& file, QString* reason = nullptr) override;
    bool WriteProfileFile(const QString& file, const QString& text, QString* reason) override;
    bool PutAsideIfUnreadable(const QString& file, const QString& required, QString* reason,
                              QString* keptAs) override;

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
    const ProfileText& text(const QString& file);
    void remember(const QString& file, QByteArray bytes);
    bool replace(const QString& file, const QByteArray& bytes, QString* reason, bool keep);

    QString cachedFile;
    Stamp cachedStamp;
    ProfileText cachedText;
    // Unreadable files that could not be put aside: never written over.
    QSet<QString> untouchable;
};

} // namespace velmora
