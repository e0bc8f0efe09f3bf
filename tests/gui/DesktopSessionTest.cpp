#include "support/SandboxEnvironment.h"

#include <QtTest>

using namespace velmora;

// The desktop program on a real X server (Xvfb) beside a tray host
// (trayer), driven from outside with xdotool as a user would.
class DesktopSessionTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void trayEntryIsEmbeddedAndItsMenuOpens();
    void quitEndsAtOnceAndAStartRightAfterRuns();

private:
    struct Window {
        QString id;
        QSize size;
    };

    QProcessEnvironment environment(const SandboxEnvironment& sandbox) const;
    void writeSettings(const SandboxEnvironment& sandbox, bool minimised) const;
    QString tool(const QString& program, const QStringList& args) const;
    QList<Window> visibleWindows() const;
    QString trayEntry() const;
    QString openTrayMenu();

    QString display;
    QProcess xvfb;
    QProcess tray;
};

namespace {

QString Program() {
    return qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora";
}

} // namespace

QString DesktopSessionTest::tool(const QString& program, const QStringList& args) const {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("DISPLAY", display);
    process.setProcessEnvironment(env);
    process.start(program, args);
    if (!process.waitForFinished(10000))
        return {};
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

void DesktopSessionTest::initTestCase() {
    for (const char* needed : {"Xvfb", "trayer", "xdotool", "xwininfo"})
        QVERIFY2(
            !QStandardPaths::findExecutable(needed).isEmpty(),
            qPrintable(QString("%1 is missing: scripts/install-deps installs it").arg(needed)));
    int number = 140;
    while (QFile::exists(QString("/tmp/.X11-unix/X%1").arg(number)) ||
           QFile::exists(QString("/tmp/.X%1-lock").arg(number)))
        ++number;
    display = QString(":%1").arg(number);
    xvfb.start("Xvfb", {display, "-screen", "0", "1024x768x24", "-nolisten", "tcp"});
    QVERIFY(xvfb.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(QString("/tmp/.X11-unix/X%1").arg(number)), 10000);

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("DISPLAY", display);
    tray.setProcessEnvironment(env);
    tray.start("trayer", {"--edge", "bottom", "--align", "right", "--widthtype", "pixel", "--width",
                          "120", "--heighttype", "pixel", "--height", "32"});
    QVERIFY(tray.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(
        tool("xwininfo", {"-root", "-tree"}).contains("(\"panel\" \"trayer\")"), 10000);
}

void DesktopSessionTest::cleanupTestCase() {
    for (QProcess* process : {&tray, &xvfb}) {
        process->terminate();
        if (!process->waitForFinished(5000))
            process->kill();
    }
}

QProcessEnvironment DesktopSessionTest::environment(const SandboxEnvironment& sandbox) const {
    // The sandbox has set the XDG folders and TMPDIR in ours already.
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("DISPLAY", display);
    env.insert("QT_QPA_PLATFORM", "xcb");
    env.insert("HOME", sandbox.root());
    // Without a session bus the tray entry is the X one that trayer hosts.
    env.remove("DBUS_SESSION_BUS_ADDRESS");
    env.remove("SESSION_MANAGER");
    return env;
}

void DesktopSessionTest::writeSettings(const SandboxEnvironment& sandbox, bool minimised) const {
    QDir().mkpath(sandbox.configHome() + "/Kestrum");
    QFile file(sandbox.configHome() + "/Kestrum/Velmora.conf");
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray text = "[Settings]\nFirstUse=1\nAcntNum=2\n";
    for (int n : {1, 2}) {
        text += QString("AcntName%1=Account %1\nAcntServer%1=127.0.0.1\nAcntPort%1=9\n"
                        "AcntLoginID%1=user%1\nAcntPassword%1=x\n")
                    .arg(n)
                    .toUtf8();
    }
    text += "Options\\UseInterval=1\nOptions\\Minutes=30\nOptions\\EmailCheckStartUp=0\n"
            "Options\\RunStartUp=0\n";
    text += QByteArray("Options\\MinimizeStartUp=") + (minimised ? "1" : "0") + "\n";
    file.write(text);
}

QList<DesktopSessionTest::Window> DesktopSessionTest::visibleWindows() const {
    QList<Window> windows;
    const QStringList ids = tool("xdotool", {"search", "--onlyvisible", "--classname", "velmora"})
                                .split('\n', Qt::SkipEmptyParts);
    static const QRegularExpression geometry("Geometry: (\\d+)x(\\d+)");
    for (const QString& id : ids) {
        const auto match = geometry.match(tool("xdotool", {"getwindowgeometry", id}));
        if (match.hasMatch())
            windows.append({id, QSize(match.captured(1).toInt(), match.captured(2).toInt())});
    }
    return windows;
}

// The program's window inside trayer's panel, if any.
QString DesktopSessionTest::trayEntry() const {
    static const QRegularExpression panelLine("^\\s*(0x[0-9a-f]+) .*\\(\"panel\" \"trayer\"\\)",
                                              QRegularExpression::MultilineOption);
    const auto panel = panelLine.match(tool("xwininfo", {"-root", "-tree"}));
    if (!panel.hasMatch())
        return {};
    static const QRegularExpression entryLine("^\\s*(0x[0-9a-f]+) .*\\(\"velmora\" \"Velmora\"\\)",
                                              QRegularExpression::MultilineOption);
    const auto entry = entryLine.match(tool("xwininfo", {"-tree", "-id", panel.captured(1)}));
    return entry.hasMatch() ? entry.captured(1) : QString();
}

// Right-clicks the tray entry; the id of the menu that opens.
QString DesktopSessionTest::openTrayMenu() {
    QString entry;
    [&] {
        QTRY_VERIFY_WITH_TIMEOUT(!(entry = trayEntry()).isEmpty(), 15000);
    }();
    if (entry.isEmpty())
        return {};
    tool("xdotool", {"mousemove", "--window", entry, "8", "8", "click", "3"});
    QString menu;
    QElapsedTimer waited;
    waited.start();
    while (menu.isEmpty() && waited.elapsed() < 5000) {
        for (const Window& w : visibleWindows()) {
            // A column of a dozen entries: taller than wide, larger than the entry.
            if (w.size.height() > w.size.width() && w.size.height() > 150)
                menu = w.id;
        }
        QTest::qWait(50);
    }
    return menu;
}

void DesktopSessionTest::trayEntryIsEmbeddedAndItsMenuOpens() {
    SandboxEnvironment sandbox;
    writeSettings(sandbox, true);
    QProcess velmora;
    velmora.setProcessEnvironment(environment(sandbox));
    velmora.setProcessChannelMode(QProcess::ForwardedChannels);
    velmora.start(Program(), {});
    QVERIFY(velmora.waitForStarted());

    const QString menu = openTrayMenu();
    QVERIFY2(!menu.isEmpty(), "no tray entry in trayer's panel, or no menu on a right click");
    // Started minimised: the tray entry and its menu are all there is to see.
    for (const Window& w : visibleWindows())
        QVERIFY2(w.size.width() < 400, qPrintable(w.id));

    // Escape closes the menu and leaves the program running.
    tool("xdotool", {"key", "Escape"});
    QTRY_VERIFY(!tool("xdotool", {"search", "--onlyvisible", "--classname", "velmora"})
                     .contains(QString::number(menu.toLongLong(nullptr, 0))));
    QCOMPARE(velmora.state(), QProcess::Running);
    velmora.terminate();
    QVERIFY(velmora.waitForFinished(10000));
}

void DesktopSessionTest::quitEndsAtOnceAndAStartRightAfterRuns() {
    SandboxEnvironment sandbox;
    writeSettings(sandbox, false);
    QProcess first;
    first.setProcessEnvironment(environment(sandbox));
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(Program(), {});
    QVERIFY(first.waitForStarted());
    QString main;
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            for (const Window& w : visibleWindows()) {
                if (w.size.width() >= 400)
                    main = w.id;
            }
            return !main.isEmpty();
        }(),
        15000);

    const QString menu = openTrayMenu();
    QVERIFY(!menu.isEmpty());
    // Q: the menu's "Quit Application".
    tool("xdotool", {"key", "q"});
    QElapsedTimer sinceQuit;
    sinceQuit.start();
    while (tool("xwininfo", {"-id", main}).contains("IsViewable") && sinceQuit.elapsed() < 10000)
        QTest::qWait(10);
    QElapsedTimer sinceGone;
    sinceGone.start();
    QVERIFY2(sinceQuit.elapsed() < 10000, "the window stays after Quit");

    // Started while the first may still be ending: it must run, not leave.
    QProcess second;
    second.setProcessEnvironment(environment(sandbox));
    second.setProcessChannelMode(QProcess::ForwardedChannels);
    second.start(Program(), {});
    QVERIFY(second.waitForStarted());

    QVERIFY(first.waitForFinished(10000));
    const qint64 lingered = sinceGone.elapsed();
    QCOMPARE(first.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.exitCode(), 0);

    QVERIFY2(!second.waitForFinished(3000), "a start right after Quit left at once");
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            for (const Window& w : visibleWindows()) {
                if (w.size.width() >= 400)
                    return true;
            }
            return false;
        }(),
        15000);
    second.terminate();
    QVERIFY(second.waitForFinished(10000));
    QVERIFY2(lingered < 1000, qPrintable(QString("ended %1 ms after its window").arg(lingered)));
}

QTEST_GUILESS_MAIN(DesktopSessionTest)
#include "DesktopSessionTest.moc"
