#include "platform/qt/LocalFiles.h"

#include "platform/qt/AtomicWrite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

LocalFiles::LocalFiles(QString installDataFolder) : installData(std::move(installDataFolder)) {}

LocalFiles::~LocalFiles() {
    // rmdir takes only an empty folder: a file the user may still want, or
    // one of another run of ours, keeps it.
    if (!temp.isEmpty())
        ::rmdir(QFile::encodeName(temp).constData());
}

QString LocalFiles::DataFolderBeside(const QString& executableFolder) {
    return QDir::cleanPath(executableFolder + QStringLiteral("/../share/velmora"));
}

bool LocalFiles::FileExists(const QString& path) {
    return !path.isEmpty() && QFileInfo(path).isFile();
}

void LocalFiles::RemoveFile(const QString& path) {
    QFile::remove(path);
}

bool LocalFiles::MoveFileOver(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

QString LocalFiles::ProgramFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           QStringLiteral("/Kestrum/Velmora");
    MakePrivateFolder(folder);
    return folder;
}

QString LocalFiles::TempFolder() {
    if (fallbackTemp)
        return temp;
    // Our own folder, closed to others; if the name is taken by someone
    // else, a private folder of this run stands in. Looked at each time: it
    // may have been removed, empty, by another run ending meanwhile.
    const QString mine = QDir::tempPath() + QStringLiteral("/velmora-%1").arg(getuid());
    ::mkdir(QFile::encodeName(mine).constData(), 0700);
    const QFileInfo info(mine);
    if (info.isDir() && !info.isSymLink() && info.ownerId() == getuid()) {
        QFile::setPermissions(mine, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        temp = mine;
    } else {
        fallbackTemp = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/velmora-XXXXXX");
        // Removed as ours is, only when empty.
        fallbackTemp->setAutoRemove(false);
        temp = fallbackTemp->path();
    }
    return temp;
}

void LocalFiles::RemoveStaleTemporaries() {
    const QString folder = ProgramFolder();
    QStringList names = QDir(folder).entryList(QDir::Files);
    names << QStringLiteral("Rules.ini") << QStringLiteral("frmMain.ini");
    names.removeDuplicates();
    velmora::RemoveStaleTemporaries(folder, names);
    for (const QString& file : tidied) {
        const QFileInfo info(file);
        velmora::RemoveStaleTemporaries(info.absolutePath(), {info.fileName()});
    }
}

} // namespace velmora
