// The command-line program: the logic on the real platform, without
// widgets, a window kept in memory and message boxes recorded.
#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "platform/RecordedBoxes.h"
#include "platform/RecordedSounds.h"
#include "platform/StateView.h"
#include "platform/qt/GuardedTimer.h"
#include "platform/qt/IniProfileFiles.h"
#include "platform/qt/LocalFiles.h"
#include "platform/qt/QtEventPump.h"
#include "platform/qt/QtPopClient.h"
#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/SystemClock.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace velmora;

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("Velmora");

    QtSettingsStore settings;
    RecordedBoxes boxes;
    RecordedSounds sounds;
    SystemClock clock;
    GuardedTimerFactory timers;
    QtEventPump pump;
    LocalFiles files(LocalFiles::DataFolderBeside(QCoreApplication::applicationDirPath()));
    QtPopClientFactory pop;
    IniProfileFiles profiles;
    StateView view;

    Services services;
    services.settings = &settings;
    services.boxes = &boxes;
    services.clock = &clock;
    services.timers = &timers;
    services.events = &pump;
    services.files = &files;
    services.pop = &pop;
    services.sound = &sounds;
    services.profiles = &profiles;

    AppContext ctx(services);
    ctx.view = &view;

    QTextStream out(stdout);
    QTextStream err(stderr);
    return RunCommandLine(ctx, boxes, sounds, QCoreApplication::arguments().mid(1), out, err);
}
