#include "platform/qt/DesktopEntryIcons.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTextStream>

namespace velmora::DesktopEntryIcons {

namespace {

// The value of `key` in the [Desktop Entry] group; other groups (actions)
// carry their own Exec= and Icon= and are no answer.
QString EntryValue(const QString& desktopFile, const QString& key) {
    QFile file(desktopFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream in(&file);
    bool inEntry = false;
    const QString prefix = key + QLatin1Char('=');
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (inEntry && line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed();
    }
    return {};
}

QIcon IconFromName(const QString& name) {
    if (name.isEmpty())
        return {};
    // An absolute Icon= names a picture file.
    if (QFileInfo(name).isAbsolute())
        return QFileInfo::exists(name) ? QIcon(name) : QIcon();
    return QIcon::fromTheme(name);
}

} // namespace

QString IconName(const QString& desktopFile) {
    return EntryValue(desktopFile, QStringLiteral("Icon"));
}

QString EntryForProgram(const QString& program, const QStringList& folders) {
    const QString wanted = QFileInfo(program).canonicalFilePath();
    const QString bare = QFileInfo(program).fileName();
    for (const QString& folder : folders) {
        QDirIterator it(folder, {QStringLiteral("*.desktop")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString entry = it.next();
            const QStringList words =
                QProcess::splitCommand(EntryValue(entry, QStringLiteral("Exec")));
            if (words.isEmpty())
                continue;
            const QString exec = words.first();
            if (exec == program || exec == bare ||
                (!wanted.isEmpty() && QFileInfo(exec).canonicalFilePath() == wanted))
                return entry;
        }
    }
    return {};
}

QStringList ApplicationFolders() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

QIcon ClientIcon(const QString& path) {
    if (path.endsWith(QLatin1String(".desktop"), Qt::CaseInsensitive))
        return IconFromName(IconName(path));
    const QString entry = EntryForProgram(path, ApplicationFolders());
    return entry.isEmpty() ? QIcon() : IconFromName(IconName(entry));
}

} // namespace velmora::DesktopEntryIcons
