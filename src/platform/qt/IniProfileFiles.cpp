#include "platform/qt/IniProfileFiles.h"

#include "platform/qt/AtomicWrite.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace velmora {

namespace {

// Fills the buffer as far as it goes, leaving room for the closing NUL.
int Fill(QString& buffer, const QString& text, int size) {
    if (size <= 0) {
        buffer.clear();
        return 0;
    }
    buffer = text.left(size - 1);
    return int(buffer.size());
}

} // namespace

IniProfileFiles::Stamp IniProfileFiles::StampOf(const QString& file) {
    struct stat st;
    if (::stat(QFile::encodeName(file).constData(), &st) != 0)
        return {};
    return {true, qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec,
            quint64(st.st_ino)};
}

const ProfileText& IniProfileFiles::text(const QString& file) {
    const Stamp stamp = StampOf(file);
    if (file != cachedFile || !stamp.exists || stamp != cachedStamp) {
        // A file that cannot be read reads as empty.
        QByteArray bytes;
        ReadWholeFile(file, &bytes, nullptr);
        cachedFile = file;
        cachedStamp = stamp;
        cachedText = ProfileText(std::move(bytes));
    }
    return cachedText;
}

void IniProfileFiles::remember(const QString& file, QByteArray bytes) {
    cachedFile = file;
    cachedStamp = StampOf(file);
    cachedText = ProfileText(std::move(bytes));
}

bool IniProfileFiles::replace(const QString& file, const QByteArray& bytes, QString* reason,
                              bool keep) {
    QString why;
    if (untouchable.contains(QFileInfo(file).absoluteFilePath()))
        why = QStringLiteral("an unreadable file lies there that could not be put aside");
    else
        why = WriteFileAtomically(file, bytes);
    if (!why.isEmpty()) {
        if (reason)
            *reason = why;
        return false;
    }
    // A file written a key at a time is read and written again at once; one
    // written whole is read, if at all, at the next start.
    if (keep)
        remember(file, bytes);
    else if (file == cachedFile)
        cachedFile.clear();
    return true;
}

int IniProfileFiles::GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                              const QString& file) {
    const auto lines = text(file).sectionLines(section, size);
    QString joined;
    for (const QString& line : lines.value_or(QStringList()))
        joined += line + QChar(0);
    if (joined.isEmpty()) {
        buffer.clear();
        return 0;
    }
    // Too long for the buffer: cut, and still end in two NULs.
    if (joined.size() + 1 > size && size >= 2)
        joined = joined.left(size - 2) + QChar(0);
    buffer = joined + QChar(0);
    return int(joined.size());
}

int IniProfileFiles::GetPrivateProfileString(const QString& section, const QString& key,
                                             const QString& defaultValue, QString& buffer, int size,
                                             const QString& file) {
    if (const auto value = text(file).value(section, key))
        return Fill(buffer, *value, size);
    return Fill(buffer, defaultValue.trimmed(), size);
}

bool IniProfileFiles::WritePrivateProfileString(const QString& section, const QString& key,
                                                const QString& value, const QString& file,
                                                QString* reason) {
    return replace(file, text(file).withValue(section, key, value), reason, true);
}

bool IniProfileFiles::WriteProfileFile(const QString& file, const QString& text, QString* reason) {
    const QByteArray& old = this->text(file).bytes();
    if (ProfileText::HasHandMadeLines(old)) {
        const QString backup = file + QStringLiteral(".bak");
        if (const QString why = WriteFileAtomically(backup, old); !why.isEmpty()) {
            if (reason)
                *reason = QStringLiteral("the old file could not be kept as %1 (%2)")
                              .arg(QFileInfo(backup).fileName(), why);
            return false;
        }
    }
    return replace(file, text.toUtf8(), reason, false);
}

bool IniProfileFiles::PutAsideIfUnreadable(const QString& file, const QString& required,
                                           QString* reason, QString* keptAs) {
    if (!QFileInfo::exists(file))
        return false;
    QByteArray bytes;
    QString why;
    if (ReadWholeFile(file, &bytes, &why))
        why = ProfileText::Problem(bytes, required);
    if (why.isEmpty())
        return false;
    QString moveFailure;
    const QString aside = PutAsideUnreadable(file, QDateTime::currentDateTime(), &moveFailure);
    if (aside.isEmpty()) {
        untouchable.insert(QFileInfo(file).absoluteFilePath());
        why += QStringLiteral("; it could not be put aside: ") + moveFailure;
    }
    cachedFile.clear();
    if (reason)
        *reason = why;
    if (keptAs)
        *keptAs = aside;
    return true;
}

} // namespace velmora
