// The command-line program: the logic on the real platform, without
// widgets, a window kept in memory and message boxes and sounds recorded.
#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "platform/RecordedBoxes.h"
#include "platform/RecordedSounds.h"
#include "platform/StateView.h"
#include "platform/qt/QtPlatform.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace velmora;

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("Velmora");

    QtPlatform platform(QCoreApplication::applicationDirPath());
    RecordedBoxes boxes;
    RecordedSounds sounds;
    StateView view;

    Services services = platform.services();
    services.boxes = &boxes;
    services.sound = &sounds;

    AppContext ctx(services);
    ctx.view = &view;

    QTextStream out(stdout);
    QTextStream err(stderr);
    return RunCommandLine(ctx, boxes, sounds, QCoreApplication::arguments().mid(1), out, err);
}
