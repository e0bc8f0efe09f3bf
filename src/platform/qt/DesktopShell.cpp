#include "platform/qt/DesktopShell.h"

#include "messages/MessageFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace velmora {

namespace {

bool IsExecutableFile(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

// "mailto:", "https://" and the like. "C:\..." from a settings file written
// on another system names a drive, not a scheme.
bool HasScheme(const QString& target) {
    const QUrl url(target, QUrl::StrictMode);
    return url.isValid() && url.scheme().size() > 1;
}

// The program `target` names, absolute; empty when it names none.
QString ProgramPath(const QString& target) {
    if (QFileInfo(target).isAbsolute())
        return IsExecutableFile(target) ? target : QString();
    // Only a bare name is looked up on PATH: "bin/tool" or "notes.txt" in
    // the current folder is a file to open, never a program to run.
    if (target.contains(QLatin1Char('/')))
        return {};
    return QStandardPaths::findExecutable(target);
}

// The address the desktop is asked to open; empty for a path to nothing.
QString UriFor(const QString& target) {
    // A file comes first: "notes:2024.txt" beside us is no address.
    const QFileInfo info(target);
    if (info.exists())
        return QUrl::fromLocalFile(info.absoluteFilePath()).toString(QUrl::FullyEncoded);
    return HasScheme(target) ? target : QString();
}

} // namespace

bool DesktopShell::Open(const QString& target, const QString& parameters, int) {
    const QString wanted = target.trimmed();
    if (wanted.isEmpty())
        return false;

    // A desktop entry starts the program it describes, as the desktop's
    // own menus do, not the editor of its text.
    if (wanted.endsWith(QLatin1String(".desktop"), Qt::CaseInsensitive) &&
        QFileInfo(wanted).isFile()) {
        GDesktopAppInfo* entry =
            g_desktop_app_info_new_from_filename(QFile::encodeName(wanted).constData());
        if (!entry)
            return false;
        GError* error = nullptr;
        const gboolean started = g_app_info_launch(G_APP_INFO(entry), nullptr, nullptr, &error);
        g_clear_error(&error);
        g_object_unref(entry);
        return started;
    }

    const QString program = ProgramPath(wanted);
    if (!program.isEmpty()) {
        // Detached: the program outlives us and we never wait on it. Qt
        // reports a program that could not be executed.
        return QProcess::startDetached(program, QProcess::splitCommand(parameters));
    }

    // A document or an address goes to its handler as it is; parameters
    // are for programs alone.
    const QString uri = UriFor(wanted);
    if (uri.isEmpty())
        return false;
    GError* error = nullptr;
    const gboolean launched =
        g_app_info_launch_default_for_uri(uri.toUtf8().constData(), nullptr, &error);
    // No handler, or one that could not be started.
    g_clear_error(&error);
    return launched;
}

bool DesktopShell::Compose(const QString& recipient, const QString& subject, const QString& body) {
    const QString xdgEmail = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (!xdgEmail.isEmpty()) {
        QStringList arguments = {QStringLiteral("--utf8"), QStringLiteral("--subject"), subject,
                                 QStringLiteral("--body"), body};
        if (!recipient.isEmpty())
            arguments.append(recipient);
        if (QProcess::startDetached(xdgEmail, arguments))
            return true;
    }
    return Open(MailtoAddress(recipient, subject, body), QString(), 1);
}

} // namespace velmora
