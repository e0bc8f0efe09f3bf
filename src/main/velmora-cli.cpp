// The command-line program: the logic on the real platform, without
// widgets, a window kept in memory and message boxes and sounds recorded.
#include "app/CommandLine.h"
#include "context/AppContext.h"
#include "platform/Headless.h"
#include "platform/StateView.h"
#include "platform/qt/QtPlatform.h"
#include "platform/qt/XdgAutoStart.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>

using namespace velmora;

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("Velmora");

    QtPlatform platform(QCoreApplication::applicationDirPath());
    // A logon entry names the desktop program beside this one.
    XdgAutoStart autoStart(QCoreApplication::applicationDirPath() + QStringLiteral("/velmora"));
    Headless headless;
    StateView view;

    Services services = platform.services();
    services.autoStart = &autoStart;
    headless.fillBlanks(services);

    AppContext ctx(services);
    ctx.view = &view;

    QTextStream out(stdout);
    QTextStream err(stderr);
    const int status =
        RunCommandLine(ctx, view, headless, QCoreApplication::arguments().mid(1), out, err);
    // Settings and rules are written through as they change, so nothing is
    // left to save: leave without freeing every message, which a script
    // calling us in a loop would otherwise wait for each time.
    out.flush();
    err.flush();
    std::fflush(nullptr);
    std::_Exit(status);
}
