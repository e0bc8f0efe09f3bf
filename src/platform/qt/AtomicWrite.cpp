#include "platform/qt/AtomicWrite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

QString SystemReason(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

QByteArray Native(const QString& path) {
    return QFile::encodeName(path);
}

// The rename is on disk only once the folder is; a failure here costs
// durability after a power cut, not the file, so it is not reported.
void SyncFolder(const QString& folder) {
    const int fd = ::open(Native(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// QTemporaryFile's placeholder: six letters and digits.
bool IsPlaceholder(QStringView text) {
    if (text.size() != 6)
        return false;
    for (const QChar c : text) {
        if (!(c.isDigit() || (c.unicode() < 128 && c.isLetter())))
            return false;
    }
    return true;
}

// Qt's random placeholders mix lower case, upper case and digits; a suffix
// a person chose ("backup", "202401") rarely does.
bool LooksRandom(QStringView text) {
    bool lower = false, upper = false, digit = false;
    for (const QChar c : text) {
        lower |= c.isLower();
        upper |= c.isUpper();
        digit |= c.isDigit();
    }
    return int(lower) + int(upper) + int(digit) >= 2;
}

} // namespace

QString MakePrivateFolder(const QString& folder) {
    const QString clean = QDir::cleanPath(QDir(folder).absolutePath());
    QFileInfo info(clean);
    if (info.isDir())
        return {};
    // Parents first, so that each one this call makes is made private.
    const QString parent = info.absolutePath();
    if (parent != clean) {
        if (QString why = MakePrivateFolder(parent); !why.isEmpty())
            return why;
    }
    if (::mkdir(Native(clean).constData(), 0700) != 0) {
        const int error = errno;
        if (error == EEXIST && QFileInfo(clean).isDir())
            return {};
        return clean + QStringLiteral(": ") + SystemReason(error);
    }
    // The umask may have taken more than the others' bits.
    ::chmod(Native(clean).constData(), 0700);
    return {};
}

QString WriteFileAtomically(const QString& path, const QByteArray& bytes) {
    const QFileInfo info(path);
    if (QString why = MakePrivateFolder(info.absolutePath()); !why.isEmpty())
        return why;
    QSaveFile file(path);
    // Unbuffered, so that every write reaches the system here and its count
    // can be checked; a buffered one fails unseen at the commit.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file.errorString();
    // Private before the first byte: the file holds passwords.
    if (::fchmod(file.handle(), 0600) != 0) {
        const int error = errno;
        file.cancelWriting();
        return SystemReason(error);
    }
    qint64 done = 0;
    while (done < bytes.size()) {
        errno = 0;
        const qint64 n = file.write(bytes.constData() + done, bytes.size() - done);
        if (n <= 0) {
            const int error = errno;
            const QString reason = error != 0 ? SystemReason(error) : file.errorString();
            file.cancelWriting();
            return reason;
        }
        done += n;
    }
    if (!file.commit())
        return file.errorString();
    SyncFolder(info.absolutePath());
    return {};
}

QString PutAsideUnreadable(const QString& path, const QDateTime& now, QString* reason) {
    const QString stem = path + QStringLiteral(".unreadable-") + now.toString("yyyyMMdd-HHmmss");
    QString target = stem;
    for (int n = 2; QFileInfo::exists(target); ++n)
        target = stem + QStringLiteral("-%1").arg(n);
    if (std::rename(Native(path).constData(), Native(target).constData()) != 0) {
        if (reason)
            *reason = SystemReason(errno);
        return {};
    }
    return target;
}

bool ReadWholeFile(const QString& path, QByteArray* bytes, QString* reason) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (reason)
            *reason = file.errorString();
        return false;
    }
    // Read into a buffer of the file's size: readAll and resize grow theirs
    // ahead, and a large file would hold half as much again.
    *bytes = QByteArray(file.size(), Qt::Uninitialized);
    const qint64 got = file.read(bytes->data(), bytes->size());
    if (got >= 0) {
        bytes->resize(got);
        if (const QByteArray more = file.readAll(); !more.isEmpty())
            *bytes += more; // grown meanwhile
    }
    if (got < 0 || file.error() != QFileDevice::NoError) {
        if (reason)
            *reason = file.errorString();
        return false;
    }
    return true;
}

bool IsStaleTemporary(const QString& entry, const QString& name) {
    if (name.isEmpty())
        return false;
    // The older rules writer's fresh file, and the lock QSettings left
    // when the program that held it ended unexpectedly.
    if (entry == name + QStringLiteral(".new") || entry == name + QStringLiteral(".lock"))
        return true;
    // QSaveFile's "<name>.XXXXXX", where the system has no unnamed files.
    if (entry.size() == name.size() + 7 && entry.startsWith(name) && entry[name.size()] == '.') {
        const QStringView suffix = QStringView(entry).mid(name.size() + 1);
        return IsPlaceholder(suffix) && LooksRandom(suffix);
    }
    // The older profile writer's ".<name>.XXXXXX" and ".<name>.new.XXXXXX".
    for (const QString& hidden : {'.' + name + '.', '.' + name + QStringLiteral(".new.")}) {
        if (entry.size() == hidden.size() + 6 && entry.startsWith(hidden) &&
            IsPlaceholder(QStringView(entry).mid(hidden.size())))
            return true;
    }
    return false;
}

void RemoveStaleTemporaries(const QString& folder, const QStringList& names) {
    const QDir dir(folder);
    const QStringList entries =
        dir.entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        for (const QString& name : names) {
            if (IsStaleTemporary(entry, name)) {
                QFile::remove(dir.filePath(entry));
                break;
            }
        }
    }
}

} // namespace velmora
