// The message list with 5000 messages: the fill after a check, and a header
// click that sorts them, each timed on the real list widget (offscreen).
//
//     ListBench [--runs N] [--strict]
//
// Prints one JSON line with the median milliseconds of each; with --strict
// the exit status is 3 when a target is missed.

#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "messages/MessageList.h"
#include "platform/qt/widgets/MainWindow.h"
#include "support/TestRig.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

using namespace velmora;

namespace {

constexpr int kMessages = 5000;
constexpr double kFillTarget = 50;
constexpr double kSortTarget = 100;

double Median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const int at = int(args.indexOf("--runs"));
    const int runs = at > 0 ? qMax(1, args.value(at + 1).toInt()) : 7;
    const bool strict = args.contains("--strict");

    TestRig rig;
    MainWindow window;
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\FirstUse", "1");
    rig.settings.set("Settings\\Options\\MessageSort", "1");
    // Identifiers of varied length, so that subjects sort in a new order.
    QStringList& mail = rig.mailbox("Home").mail;
    for (int n = 0; n < kMessages; ++n)
        mail.append(QString::number((n * 7919) % kMessages, 36));
    window.setTaskbarFallback(false);
    rig.ctx->view = &window;
    frmMainEvents events(*rig.ctx);
    window.setEvents(&events);
    if (!rig.start())
        return 1;
    CheckAllAccounts(*rig.ctx);
    if (window.list().rowCount() != kMessages) {
        std::fprintf(stderr, "ListBench: the list holds %d rows, not %d\n",
                     window.list().rowCount(), kMessages);
        return 1;
    }

    QList<double> fills, subjectSorts, dateSorts;
    QElapsedTimer clock;
    for (int run = 0; run < runs; ++run) {
        clock.start();
        ShowAccountMessages(*rig.ctx, 1);
        fills.append(clock.nsecsElapsed() / 1e6);
        // Subjects all differ; the dates are all alike, the sort's worst case.
        clock.start();
        events.ListHeaderClick(3);
        subjectSorts.append(clock.nsecsElapsed() / 1e6);
        clock.start();
        events.ListHeaderClick(4);
        dateSorts.append(clock.nsecsElapsed() / 1e6);
    }
    const double fill = Median(fills);
    const double sort = qMax(Median(subjectSorts), Median(dateSorts));
    QJsonObject result{{"messages", kMessages},
                       {"runs", runs},
                       {"fill_ms", fill},
                       {"subject_sort_ms", Median(subjectSorts)},
                       {"date_sort_ms", Median(dateSorts)},
                       {"fill_target_ms", kFillTarget},
                       {"sort_target_ms", kSortTarget}};
    QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << '\n';
    const bool met = fill < kFillTarget && sort < kSortTarget;
    return strict && !met ? 3 : 0;
}
