// The desktop program: builds the context on the real platform and runs.
#include "app/Main.h"
#include "app/frmMainEvents.h"
#include "context/AppContext.h"
#include "platform/Headless.h"
#include "platform/qt/DBusNotifier.h"
#include "platform/qt/DesktopShell.h"
#include "platform/qt/LockFileInstanceGuard.h"
#include "platform/qt/QtColourDialog.h"
#include "platform/qt/QtFileDialogs.h"
#include "platform/qt/QtPlatform.h"
#include "platform/qt/XdgAutoStart.h"
#include "platform/qt/widgets/HelpWindow.h"
#include "platform/qt/widgets/MainWindow.h"
#include "platform/qt/widgets/MessageWindow.h"
#include "platform/qt/widgets/SystemPrinter.h"
#include "platform/qt/widgets/WavePlayer.h"
#include "platform/qt/widgets/WidgetMessageBoxes.h"

#include <QApplication>

using namespace velmora;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Velmora");
    // Ties the windows to the menu entry: its name and icon on the desktop.
    QGuiApplication::setDesktopFileName(QStringLiteral("velmora"));
    // Hidden in the tray, the program has no visible window and must go on.
    QApplication::setQuitOnLastWindowClosed(false);

    QtPlatform platform(QApplication::applicationDirPath());
    WidgetMessageBoxes boxes;
    XdgAutoStart autoStart(QApplication::applicationFilePath());
    LockFileInstanceGuard instance;
    WidgetWindowFactory windows;
    QtFileDialogs fileDialogs;
    WavePlayer sound;
    DBusNotifier notifier;
    DesktopShell desktopShell;
    HelpWindow helpWindow;
    SystemPrinter printer;
    QtColourDialog colourDialog;
    // What the desktop has no version of is filled from here.
    Headless headless;

    Services services = platform.services();
    services.boxes = &boxes;
    services.autoStart = &autoStart;
    services.instance = &instance;
    services.windows = &windows;
    services.sound = &sound;
    services.notifier = &notifier;
    services.shell = &desktopShell;
    services.help = &helpWindow;
    services.printer = &printer;
    services.dialogs = &fileDialogs;
    services.colours = &colourDialog;
    headless.fillBlanks(services);

    AppContext ctx(services);
    MainWindow window;
    ctx.view = &window;
    frmMainEvents events(ctx);
    window.setEvents(&events);

    if (!Main(ctx))
        return 0;
    return QApplication::exec();
}
