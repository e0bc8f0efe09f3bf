// Runs a program against a demonstration mailbox: two scripted POP3
// servers on loopback with made-up mail, the settings of two accounts on
// them and a spam rule, all in a folder of the demo's own. The servers live
// exactly as long as the program does.
#include "DemoMailbox.h"
#include "platform/qt/LockFileInstanceGuard.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTextStream>

using namespace velmora;

namespace {

const char* const kUsage = "usage: velmora-demo --home FOLDER [--] PROGRAM [ARGUMENTS...]\n"
                           "Starts the demonstration servers, writes the settings of their\n"
                           "accounts into FOLDER (emptied first) and runs PROGRAM on them.\n";

int Fail(const QString& why) {
    QTextStream(stderr) << "velmora-demo: " << why << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    QString home;
    if (args.size() >= 2 && args[0] == QLatin1String("--home")) {
        home = args[1];
        args = args.mid(2);
    }
    if (!args.isEmpty() && args[0] == QLatin1String("--"))
        args.removeFirst();
    if (home.isEmpty() || args.isEmpty()) {
        QTextStream(stderr) << kUsage;
        return 2;
    }

    // A Velmora the user already runs would make the demo's leave without a
    // word; say so instead.
    {
        LockFileInstanceGuard running;
        if (!running.claim())
            return Fail(QStringLiteral("Velmora is running already; quit it first (the demo "
                                       "runs one of its own, on settings of its own)"));
    }

    // The folder is the demo's alone: emptied, so each run starts the same.
    home = QDir(home).absolutePath();
    if (QDir(home).exists() && !QDir(home).removeRecursively())
        return Fail(QStringLiteral("cannot empty %1").arg(home));
    const QString config = home + QStringLiteral("/config");
    const QString data = home + QStringLiteral("/data");
    const QString tmp = home + QStringLiteral("/tmp");
    if (!QDir().mkpath(tmp))
        return Fail(QStringLiteral("cannot make %1").arg(tmp));

    ScriptedPopServer homeServer;
    ScriptedPopServer workServer;
    if (!homeServer.listen() || !workServer.listen())
        return Fail(QStringLiteral("cannot listen on 127.0.0.1"));
    const QDateTime now = QDateTime::currentDateTime();
    homeServer.setMessages(demo::HomeMailbox(now));
    workServer.setMessages(demo::WorkMailbox(now));

    QString error;
    if (!demo::WriteDemoSettings(config, data, homeServer.port(), workServer.port(), &error))
        return Fail(error);

    // The runtime folder stays the user's: the desktop's bus, display and
    // sound server are found there.
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), config);
    env.insert(QStringLiteral("XDG_DATA_HOME"), data);
    env.insert(QStringLiteral("TMPDIR"), tmp);

    QProcess program;
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.setInputChannelMode(QProcess::ForwardedInputChannel);
    int status = 0;
    QObject::connect(&program, &QProcess::finished, &app, [&](int code, QProcess::ExitStatus how) {
        status = how == QProcess::NormalExit ? code : 1;
        app.quit();
    });
    QObject::connect(&program, &QProcess::errorOccurred, &app, [&](QProcess::ProcessError problem) {
        if (problem != QProcess::FailedToStart)
            return;
        status = Fail(QStringLiteral("cannot start %1: %2").arg(args[0], program.errorString()));
        app.quit();
    });
    program.start(args[0], args.mid(1));
    QCoreApplication::exec();
    return status;
}
