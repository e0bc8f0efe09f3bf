#include "app/CommandLine.h"

#include "app/CheckReport.h"
#include "app/Main.h"
#include "app/RulePageEvents.h"
#include "app/UiScript.h"
#include "app/frmMain.h"
#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "checking/Deletion.h"
#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "messages/MessageList.h"
#include "platform/Headless.h"
#include "platform/MainView.h"
#include "platform/StateView.h"
#include "rules/RuleReport.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QTimer>

namespace velmora {

namespace {

const char* const kUsage =
    "usage: velmora-cli <command> [options]\n"
    "\n"
    "commands:\n"
    "  accounts [--json]        list the accounts of the settings store, passwords\n"
    "                           shown as ********\n"
    "  test N [--json]          test the connection of account N and print the\n"
    "                           boxes the desktop program would show\n"
    "  check [--json] [--auto] [--account N] [--repeat K] [--pause MS]\n"
    "        [--tray-ticks T]   check all enabled accounts (or account N alone),\n"
    "                           K times with MS milliseconds between passes;\n"
    "                           --auto walks as the Auto Check timer does;\n"
    "                           --tray-ticks shows T seconds of the tray picture\n"
    "                           after the last pass\n"
    "  delete N (--rows I,J,... | --spam | --report) [--answer yes|no] [--json]\n"
    "                           check account N (with --spam or --report all\n"
    "                           accounts), then delete those list rows, or the\n"
    "                           spam of every account, or what the Rule Report's\n"
    "                           Delete Now deletes; the question is answered\n"
    "                           as told (yes)\n"
    "  ui SCRIPT|- [--trace]    run a script of user actions against the window\n"
    "                           without a screen and print what it showed as JSON\n";

struct Usage {
    QString problem;
};

// The value after an option, as a whole number of at least `minimum`.
int NumberAfter(QStringList& args, const QString& option, int fallback, int minimum) {
    const qsizetype at = args.indexOf(option);
    if (at < 0)
        return fallback;
    bool ok = false;
    const int value = args.value(at + 1).toInt(&ok);
    if (!ok || value < minimum)
        throw Usage{option + QStringLiteral(" needs a number of at least %1").arg(minimum)};
    args.remove(at, 2);
    return value;
}

bool Flag(QStringList& args, const QString& flag) {
    return args.removeAll(flag) > 0;
}

int AccountNumber(const AppContext& ctx, const QString& text) {
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok || n < 1 || n > ctx.accounts.AcntNum)
        throw Usage{QStringLiteral("no account %1: the settings hold %2")
                        .arg(text)
                        .arg(ctx.accounts.AcntNum)};
    return n;
}

// What Form_Load does for the logic beyond the reads, which the caller has
// made (a second read would report a damaged file twice): the timers, the
// client, one tab per account.
void Prepare(AppContext& ctx) {
    frmMain::CreateTimers(ctx);
    frmMain::AddAccountTabs(ctx);
    CreatePopClient(ctx);
    // No start-up countdown runs here.
    ctx.check.StartUpDone = true;
}

void Pause(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// What the stores said while loading, a file they could not read above
// all, goes to the error stream rather than into a pass's boxes.
void LoadStoresAndTell(AppContext& ctx, RecordedBoxes& boxes, QTextStream& err) {
    frmMain::LoadStores(ctx);
    if (boxes.boxes.isEmpty())
        return;
    err << DialogsSummary(boxes.boxes);
    err.flush();
    boxes.boxes.clear();
}

// A password is never printed, only whether there is one.
QString Masked(const QString& password) {
    return password.isEmpty() ? QString() : QStringLiteral("********");
}

int Accounts(AppContext& ctx, RecordedBoxes& boxes, QStringList args, QTextStream& out,
             QTextStream& err) {
    const bool json = Flag(args, "--json");
    if (!args.isEmpty())
        throw Usage{QStringLiteral("accounts takes no arguments but --json")};
    LoadStoresAndTell(ctx, boxes, err);
    QJsonArray list;
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        const Account& a = ctx.accounts[n];
        if (json) {
            QJsonObject o{{"number", n}};
            for (const AccountStore::Field& f : AccountStore::fields()) {
                if (f.key == QLatin1String("AcntPassword"))
                    o[f.key] = Masked(a.AcntPassword);
                else if (f.acntText)
                    o[f.key] = a.*f.acntText;
                else
                    o[f.key] = a.*f.acntNumber;
            }
            list.append(o);
            continue;
        }
        out << n << "  " << a.AcntName << "  " << a.AcntServer << ":" << a.AcntPort
            << (a.AcntSecure == 1 ? "  secure" : "") << (a.AcntEnabled == 1 ? "" : "  disabled");
        if (!a.AcntLoginID.isEmpty() || !a.AcntPassword.isEmpty())
            out << "  login " << a.AcntLoginID << " " << Masked(a.AcntPassword);
        out << "\n";
    }
    if (json)
        out << QJsonDocument(list).toJson(QJsonDocument::Compact) << "\n";
    return 0;
}

int Test(AppContext& ctx, RecordedBoxes& boxes, QStringList args, QTextStream& out,
         QTextStream& err) {
    const bool json = Flag(args, "--json");
    if (args.size() != 1)
        throw Usage{QStringLiteral("test takes one account number")};
    LoadStoresAndTell(ctx, boxes, err);
    const int account = AccountNumber(ctx, args.first());
    Prepare(ctx);
    ctx.accounts.AcntCurrent = account;
    ctx.check.TestInProgress = true;
    TestConnection(ctx, account);
    ctx.check.TestInProgress = false;
    out << (json ? DialogsJson(boxes.boxes) + '\n' : DialogsSummary(boxes.boxes));
    return 0;
}

int Check(AppContext& ctx, RecordedBoxes& boxes, RecordedSounds& sounds, QStringList args,
          QTextStream& out, QTextStream& err) {
    const bool json = Flag(args, "--json");
    const bool autoWalk = Flag(args, "--auto");
    const int repeat = NumberAfter(args, "--repeat", 1, 1);
    const int pause = NumberAfter(args, "--pause", 0, 0);
    const int single = NumberAfter(args, "--account", 0, 1);
    const int trayTicks = NumberAfter(args, "--tray-ticks", 0, 0);
    if (!args.isEmpty())
        throw Usage{QStringLiteral("unknown argument '%1'").arg(args.first())};
    if (autoWalk && single > 0)
        throw Usage{QStringLiteral("--auto walks all accounts; it takes no --account")};
    LoadStoresAndTell(ctx, boxes, err);
    if (single > 0)
        AccountNumber(ctx, QString::number(single));
    Prepare(ctx);
    if (single > 0) {
        ctx.view->tabs(TabStrip::Email).select(single);
        ctx.accounts.AcntCurrent = single;
    }
    for (int pass = 1; pass <= repeat; ++pass) {
        if (pass > 1 && pause > 0)
            Pause(pause);
        boxes.boxes.clear();
        sounds.played.clear();
        ctx.check.AutoCheckHeadline = QString();
        if (autoWalk)
            AutoCheckAccounts(ctx);
        else if (single > 0)
            CheckSingleAccount(ctx);
        else
            CheckAllAccounts(ctx);
        PassExtras extras;
        extras.autoWalk = autoWalk;
        extras.autoCheckMessage = ctx.check.AutoCheckHeadline;
        extras.sounds = sounds.played;
        extras.ruleReport = ctx.check.RuleReportWanted;
        // Each pass asks afresh whether the report would open.
        UnloadRuleReport(ctx);
        if (pass == repeat && trayTicks > 0) {
            // The window goes to the tray and the clock ticks.
            ctx.view->setWindowState(WindowState::Minimized);
            for (int tick = 0; tick < trayTicks; ++tick) {
                UpdateTrayIcon(ctx);
                extras.tray.append({ctx.view->tray().picture(), ctx.view->tray().tip()});
            }
        }
        if (json)
            WritePassJson(out, ctx, pass, boxes.boxes, extras);
        else
            out << PassSummary(ctx, pass, boxes.boxes, extras);
        out.flush();
    }
    return 0;
}

// The value after an option as text; blank when the option is missing.
QString TextAfter(QStringList& args, const QString& option) {
    const qsizetype at = args.indexOf(option);
    if (at < 0)
        return {};
    if (at + 1 >= args.size())
        throw Usage{option + QStringLiteral(" needs a value")};
    const QString value = args.at(at + 1);
    args.remove(at, 2);
    return value;
}

int Delete(AppContext& ctx, RecordedBoxes& boxes, QStringList args, QTextStream& out,
           QTextStream& err) {
    const bool json = Flag(args, "--json");
    const bool spam = Flag(args, "--spam");
    const bool report = Flag(args, "--report");
    const QString rowsText = TextAfter(args, "--rows");
    const QString answer = TextAfter(args, "--answer");
    if (args.size() != 1)
        throw Usage{QStringLiteral("delete takes one account number")};
    if (int(spam) + int(report) + int(!rowsText.isEmpty()) != 1)
        throw Usage{QStringLiteral("delete takes one of --rows, --spam and --report")};
    if (!answer.isEmpty() && answer != QLatin1String("yes") && answer != QLatin1String("no"))
        throw Usage{QStringLiteral("--answer takes yes or no")};
    QList<int> rows;
    for (const QString& text : rowsText.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool ok = false;
        rows.append(text.toInt(&ok));
        if (!ok || rows.last() < 1)
            throw Usage{QStringLiteral("--rows takes row numbers from 1, not '%1'").arg(text)};
    }
    LoadStoresAndTell(ctx, boxes, err);
    const int account = AccountNumber(ctx, args.first());
    Prepare(ctx);
    ctx.view->tabs(TabStrip::Email).select(account);
    ctx.accounts.AcntCurrent = account;
    if (spam || report)
        CheckAllAccounts(ctx);
    else
        CheckSingleAccount(ctx);
    const bool reportOpened = ctx.check.RuleReportWanted;
    UnloadRuleReport(ctx);
    // The boxes of the check are not the deletion's.
    boxes.boxes.clear();
    if (answer == QLatin1String("no")) {
        // One question an account at most, and nothing else before it.
        for (int n = 0; n < ctx.accounts.AcntNum; ++n)
            boxes.answers.append(BoxAnswer::No);
    }
    if (spam) {
        EmailSpam(ctx);
    } else if (report) {
        // The report opens on its first tab, which Delete Now acts on.
        if (reportOpened)
            RuleReportDeleteNow(ctx, RuleReportTabs().first());
    } else {
        MessageListView& list = ctx.view->list();
        for (int row : rows) {
            if (row > list.rowCount())
                throw Usage{QStringLiteral("the list has no row %1").arg(row)};
            list.setRowSelected(row, true);
        }
        EmailDelete(ctx);
    }
    boxes.answers.clear();
    PassExtras extras;
    if (json)
        WritePassJson(out, ctx, 1, boxes.boxes, extras);
    else
        out << PassSummary(ctx, 1, boxes.boxes, extras);
    return 0;
}

int Ui(AppContext& ctx, StateView& view, Headless& headless, QStringList args, QTextStream& out,
       QTextStream& err) {
    const bool trace = Flag(args, "--trace");
    if (args.size() != 1)
        throw Usage{QStringLiteral("ui takes one script file, or - for standard input")};
    // Time moves only by the script's ticks.
    ctx.svc.timers = &headless.timers;
    RulePageEvents events(ctx);
    Main(ctx);
    return RunUiScript({ctx, view, headless, events}, args.first(), trace, out, err);
}

} // namespace

int RunCommandLine(AppContext& ctx, StateView& view, Headless& headless,
                   const QStringList& arguments, QTextStream& out, QTextStream& err) {
    RecordedBoxes& boxes = headless.boxes;
    RecordedSounds& sounds = headless.sounds;
    try {
        if (arguments.isEmpty())
            throw Usage{};
        const QString command = arguments.first();
        const QStringList rest = arguments.mid(1);
        if (command == QLatin1String("accounts"))
            return Accounts(ctx, boxes, rest, out, err);
        if (command == QLatin1String("test"))
            return Test(ctx, boxes, rest, out, err);
        if (command == QLatin1String("check"))
            return Check(ctx, boxes, sounds, rest, out, err);
        if (command == QLatin1String("delete"))
            return Delete(ctx, boxes, rest, out, err);
        if (command == QLatin1String("ui"))
            return Ui(ctx, view, headless, rest, out, err);
        throw Usage{QStringLiteral("unknown command '%1'").arg(command)};
    } catch (const Usage& usage) {
        if (!usage.problem.isEmpty())
            err << "velmora-cli: " << usage.problem << "\n";
        err << kUsage;
        return 2;
    }
}

} // namespace velmora
