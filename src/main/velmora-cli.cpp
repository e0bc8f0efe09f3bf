// The command-line program: the logic on the real platform, without
// widgets, a window kept in memory and message boxes and sounds recorded.
#include "app/CommandLine.h"
#include "context/AppContext.h"
#include "platform/Headless.h"
#include "platform/StateView.h"
#include "platform/qt/QtPlatform.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/XdgAutoStart.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace velmora;

int main(int argc, char** argv) {
    // Printing into a file lays text out in fonts, which takes a GUI
    // application; offscreen, it needs no screen.
    QString pdfPath;
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--print-pdf") == 0)
            pdfPath = QString::fromLocal8Bit(argv[i + 1]);
    }
    if (!pdfPath.isEmpty())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app =
        pdfPath.isEmpty() ? std::make_unique<QCoreApplication>(argc, argv)
                          : std::make_unique<QGuiApplication>(argc, argv);
    PdfPrinter pdf(pdfPath);
    QCoreApplication::setApplicationName("Velmora");

    QtPlatform platform(QCoreApplication::applicationDirPath());
    // A logon entry names the desktop program beside this one.
    XdgAutoStart autoStart(QCoreApplication::applicationDirPath() + QStringLiteral("/velmora"));
    Headless headless;
    StateView view;

    Services services = platform.services();
    services.autoStart = &autoStart;
    if (!pdfPath.isEmpty())
        services.printer = &pdf;
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
