#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

namespace velmora {

// Every file the program writes goes through here: the user's settings,
// rules and logon entry are either replaced whole or left exactly as they
// were, and nobody else can read them.

// Replaces `path` with `bytes`: a QSaveFile beside it, made the owner's
// alone before anything is written, every write checked (Qt takes a short
// write for success), synced to disk and renamed over the old file. Missing
// folders are made private. Blank when written; otherwise the reason, and
// the old file is untouched and no temporary is left.
QString WriteFileAtomically(const QString& path, const QByteArray& bytes);

// Makes the folder and its missing parents, each 0700 whatever the umask;
// folders that exist keep their mode. Blank, or the reason.
QString MakePrivateFolder(const QString& folder);

// Renames a file that could not be read to "<path>.unreadable-<date>", so
// that no write replaces it. The new path, or blank with the reason.
QString PutAsideUnreadable(const QString& path, const QDateTime& now, QString* reason);

// Reads a whole file: false with the reason when it cannot be read.
bool ReadWholeFile(const QString& path, QByteArray* bytes, QString* reason);

// What writes cut short by a crash leave beside the files `names` of
// `folder`: a temporary of QSaveFile, and of the older writers, and the
// older settings writer's lock. Removed;
// anything else, a person's own "Rules.ini.backup" included, stays.
void RemoveStaleTemporaries(const QString& folder, const QStringList& names);
// Whether `entry` is such a leftover of the file `name`.
bool IsStaleTemporary(const QString& entry, const QString& name);

} // namespace velmora
