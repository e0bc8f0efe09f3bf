// The command-line face of Velmora: the same logic as the desktop program,
// on the same settings, with message boxes recorded and printed instead of
// shown.
#include "app/AppContext.h"
#include "app/frmMain.h"
#include "platform/RecordedBoxes.h"
#include "platform/StateView.h"
#include "platform/qt/GuardedTimer.h"
#include "platform/qt/LocalFiles.h"
#include "platform/qt/QtEventPump.h"
#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/SystemClock.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace velmora;

namespace {

const char* const kUsage = "usage: velmora-cli <command> [options]\n"
                           "\n"
                           "commands:\n"
                           "  accounts    list the accounts of the settings store\n";

int Usage(const QString& problem) {
    QTextStream err(stderr);
    if (!problem.isEmpty())
        err << "velmora-cli: " << problem << "\n";
    err << kUsage;
    return 2;
}

int ListAccounts(AppContext& ctx) {
    QTextStream out(stdout);
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        const Account& a = ctx.accounts[n];
        out << n << "  " << a.AcntName << "  " << a.AcntServer << ":" << a.AcntPort
            << (a.AcntSecure == 1 ? "  secure" : "") << (a.AcntEnabled == 1 ? "" : "  disabled")
            << "\n";
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("Velmora");
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty())
        return Usage(QString());

    QtSettingsStore settings;
    RecordedBoxes boxes;
    SystemClock clock;
    GuardedTimerFactory timers;
    QtEventPump pump;
    LocalFiles files(LocalFiles::DataFolderBeside(QCoreApplication::applicationDirPath()));
    StateView view;

    Services services;
    services.settings = &settings;
    services.boxes = &boxes;
    services.clock = &clock;
    services.timers = &timers;
    services.events = &pump;
    services.files = &files;

    AppContext ctx(services);
    ctx.view = &view;

    const QString command = args.first();
    if (command == QLatin1String("accounts")) {
        if (args.size() != 1)
            return Usage("accounts takes no arguments");
        frmMain::LoadStores(ctx);
        return ListAccounts(ctx);
    }
    return Usage(QStringLiteral("unknown command '%1'").arg(command));
}
