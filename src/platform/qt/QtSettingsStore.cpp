#include "platform/qt/QtSettingsStore.h"

#include "platform/qt/AtomicWrite.h"

#include <QDateTime>
#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>

namespace velmora {

namespace {

QString KeyPath(const QString& section, const QString& key) {
    return QString(section).replace('\\', '/') + '/' + key;
}

// Size, time of change and inode: what tells a file's versions apart.
struct Stamp {
    qint64 size = -1, modified = 0;
    quint64 inode = 0;
};

Stamp StampOf(const QString& path) {
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec,
            quint64(st.st_ino)};
}

} // namespace

QString QtSettingsStore::FileName(const QString& appPath) {
    const qsizetype cut = appPath.indexOf('\\');
    const QString organisation = cut < 0 ? appPath : appPath.left(cut);
    const QString application = cut < 0 ? QString() : appPath.mid(cut + 1);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return folder + '/' +
           (application.isEmpty() ? organisation : organisation + '/' + application) +
           QStringLiteral(".conf");
}

void QtSettingsStore::tell(const FileProblem& problem) {
    if (onProblem)
        onProblem(problem);
}

QtSettingsStore::File& QtSettingsStore::open(const QString& appPath) {
    File& file = files[appPath];
    if (file.path.isEmpty())
        file.path = fixedFile.isEmpty() ? FileName(appPath) : fixedFile;
    const Stamp now = StampOf(file.path);
    if (!file.seen || now.size != file.size || now.modified != file.modified ||
        now.inode != file.inode) {
        file.seen = true;
        file.size = now.size;
        file.modified = now.modified;
        file.inode = now.inode;
        if (!file.untouchable)
            load(file);
    }
    return file;
}

void QtSettingsStore::load(File& file) {
    file.text = SettingsText();
    if (file.size < 0)
        return;
    QByteArray bytes;
    QString why;
    if (ReadWholeFile(file.path, &bytes, &why))
        why = SettingsText::Problem(bytes);
    if (why.isEmpty()) {
        file.text = SettingsText(bytes);
        return;
    }
    // Read as empty and written through, it would be lost at the first
    // save: it goes aside, and the user is told once.
    QString moveFailure;
    const QString aside = PutAsideUnreadable(file.path, QDateTime::currentDateTime(), &moveFailure);
    if (aside.isEmpty()) {
        file.untouchable = true;
        why += QStringLiteral("; it could not be put aside: ") + moveFailure;
    }
    file.size = -1;
    file.modified = 0;
    file.inode = 0;
    tell(FileProblem::unreadable(file.path, why, aside));
}

void QtSettingsStore::write(File& file, const SettingsText& next) {
    if (file.untouchable)
        return;
    const QString why = WriteFileAtomically(file.path, next.bytes());
    if (!why.isEmpty()) {
        // Once a failure, not once a key: a save of the options writes
        // forty of them.
        if (!file.failing)
            tell(FileProblem::notWritten(file.path, why));
        file.failing = true;
        return;
    }
    file.failing = false;
    file.text = next;
    const Stamp written = StampOf(file.path);
    file.size = written.size;
    file.modified = written.modified;
    file.inode = written.inode;
}

QString QtSettingsStore::GetSetting(const QString& appPath, const QString& section,
                                    const QString& key, const QString& defaultValue) {
    return open(appPath).text.value(KeyPath(section, key)).value_or(defaultValue);
}

void QtSettingsStore::SaveSetting(const QString& appPath, const QString& section,
                                  const QString& key, const QString& value) {
    File& file = open(appPath);
    SettingsText next = file.text;
    next.setValue(KeyPath(section, key), value);
    write(file, next);
}

void QtSettingsStore::DeleteSetting(const QString& appPath, const QString& section,
                                    const QString& key) {
    File& file = open(appPath);
    SettingsText next = file.text;
    next.remove(KeyPath(section, key));
    write(file, next);
}

} // namespace velmora
