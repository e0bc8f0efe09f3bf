// The desktop program: builds the context on the real platform and runs.
#include "app/AppContext.h"
#include "app/Main.h"
#include "app/frmMainEvents.h"
#include "platform/qt/DBusNotifier.h"
#include "platform/qt/GuardedTimer.h"
#include "platform/qt/IniProfileFiles.h"
#include "platform/qt/LocalFiles.h"
#include "platform/qt/LockFileInstanceGuard.h"
#include "platform/qt/QtEventPump.h"
#include "platform/qt/QtPopClient.h"
#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/SystemClock.h"
#include "platform/qt/XdgAutoStart.h"
#include "platform/qt/widgets/MainWindow.h"
#include "platform/qt/widgets/MessageWindow.h"
#include "platform/qt/widgets/WavePlayer.h"
#include "platform/qt/widgets/WidgetMessageBoxes.h"

#include <QApplication>

using namespace velmora;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Velmora");
    // Hidden in the tray, the program has no visible window and must go on.
    QApplication::setQuitOnLastWindowClosed(false);

    QtSettingsStore settings;
    WidgetMessageBoxes boxes;
    SystemClock clock;
    GuardedTimerFactory timers;
    QtEventPump pump;
    XdgAutoStart autoStart(QApplication::applicationFilePath());
    LocalFiles files(LocalFiles::DataFolderBeside(QApplication::applicationDirPath()));
    LockFileInstanceGuard instance;
    QtPopClientFactory pop;
    IniProfileFiles profiles;
    WidgetWindowFactory windows;
    WavePlayer sound;
    DBusNotifier notifier;

    Services services;
    services.settings = &settings;
    services.boxes = &boxes;
    services.clock = &clock;
    services.timers = &timers;
    services.events = &pump;
    services.autoStart = &autoStart;
    services.files = &files;
    services.instance = &instance;
    services.pop = &pop;
    services.profiles = &profiles;
    services.windows = &windows;
    services.sound = &sound;
    services.notifier = &notifier;

    AppContext ctx(services);
    MainWindow window;
    ctx.view = &window;
    frmMainEvents events(ctx);
    window.setEvents(&events);

    if (!Main(ctx))
        return 0;
    return QApplication::exec();
}
