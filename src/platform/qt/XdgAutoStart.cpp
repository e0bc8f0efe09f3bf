#include "platform/qt/XdgAutoStart.h"

#include "platform/qt/AtomicWrite.h"

#include <QFile>
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

FileProblem XdgAutoStart::SetRunAtStartUp() {
    const QString path = EntryPath();
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Velmora\n"
                                         "Comment=Watches POP3 mailboxes from the tray\n"
                                         "Exec=%1\n"
                                         "Icon=velmora\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(QuoteExec(executable));
    if (const QString why = WriteFileAtomically(path, entry.toUtf8()); !why.isEmpty())
        return FileProblem::notWritten(path, why);
    return {};
}

void XdgAutoStart::ClearRunAtStartUp() {
    QFile::remove(EntryPath());
}

} // namespace velmora
