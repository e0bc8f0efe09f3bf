#include "platform/qt/XdgAutoStart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace velmora {

namespace {

// Exec keys quote arguments with double quotes and escape these inside.
QString QuoteExec(const QString& path) {
    QString escaped;
    for (const QChar c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            escaped += '\\';
        escaped += c;
    }
    return '"' + escaped + '"';
}

} // namespace

QString XdgAutoStart::EntryPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/velmora.desktop");
}

void XdgAutoStart::SetRunAtStartUp() {
    const QString path = EntryPath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Velmora\n"
                                         "Comment=Watches POP3 mailboxes from the tray\n"
                                         "Exec=%1\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(QuoteExec(executable));
    file.write(entry.toUtf8());
    file.commit();
}

void XdgAutoStart::ClearRunAtStartUp() {
    QFile::remove(EntryPath());
}

} // namespace velmora
