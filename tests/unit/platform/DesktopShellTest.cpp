#include "platform/qt/DesktopShell.h"

#include "support/SandboxEnvironment.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

using namespace velmora;

// The desktop here is the sandbox's alone: its folders of programs and
// associations are empty but for one handler of our own, so what is found
// does not depend on the machine.
class DesktopShellTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void opens_data();
    void opens();
    void parametersReachTheProgram();
    void handlerGetsTheAddress();

private:
    QString path(const QString& name) const { return sandbox->root() + "/" + name; }
    std::unique_ptr<SandboxEnvironment> sandbox;
};

namespace {

void Write(const QString& file, const QByteArray& text) {
    QFile f(file);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(text);
}

QByteArray Read(const QString& file) {
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll().trimmed() : QByteArray();
}

} // namespace

void DesktopShellTest::initTestCase() {
    // Before GIO's first look at the environment, which it keeps.
    sandbox = std::make_unique<SandboxEnvironment>();
    for (const char* sub : {"data-dirs", "config-dirs", "data/applications"})
        QDir(sandbox->root()).mkpath(sub);
    qputenv("XDG_DATA_DIRS", path("data-dirs").toUtf8());
    qputenv("XDG_CONFIG_DIRS", path("config-dirs").toUtf8());
    qputenv("GIO_USE_VFS", "local");

    // The one handler: velmora-test: addresses, written down as received.
    Write(path("handler"),
          "#!/bin/sh\nprintf '%s\\n' \"$1\" > \"" + path("handled").toUtf8() + "\"\n");
    QVERIFY(QFile::setPermissions(path("handler"), QFile::ReadOwner | QFile::ExeOwner));
    Write(sandbox->dataHome() + "/applications/velmora-test-handler.desktop",
          "[Desktop Entry]\nType=Application\nName=Test handler\n"
          "Exec=\"" +
              path("handler").toUtf8() +
              "\" %u\n"
              "MimeType=x-scheme-handler/velmora-test;\n");
    Write(sandbox->configHome() + "/mimeapps.list",
          "[Default Applications]\nx-scheme-handler/velmora-test=velmora-test-handler.desktop\n");
    Write(path("notes.txt"), "a document no program here opens\n");
    Write(path("velmora-test:notes"), "a file whose name could be an address\n");
    QVERIFY(QDir::setCurrent(sandbox->root()));
}

void DesktopShellTest::opens_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("opened");
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("missing program by path") << path("no-such-program") << false;
    QTest::newRow("missing program by name") << "velmora-no-such-program" << false;
    QTest::newRow("program by path") << "/bin/true" << true;
    QTest::newRow("program on PATH") << "true" << true;
    QTest::newRow("web address, no browser") << "https://example.invalid/" << false;
    QTest::newRow("missing local file") << path("missing.txt") << false;
    // The case QDesktopServices would call a success.
    QTest::newRow("file with no handler") << path("notes.txt") << false;
    QTest::newRow("scheme with a handler") << "velmora-test:row" << true;
    // Beside us, a file is taken for what it is, even with a colon in it.
    QTest::newRow("file before address") << "velmora-test:notes" << false;
}

void DesktopShellTest::opens() {
    QFETCH(QString, target);
    QFETCH(bool, opened);
    DesktopShell shell;
    QCOMPARE(shell.Open(target, QString(), 1), opened);
}

void DesktopShellTest::parametersReachTheProgram() {
    const QString touch = QStandardPaths::findExecutable("touch");
    QVERIFY(!touch.isEmpty());
    DesktopShell shell;
    QVERIFY(shell.Open(touch, "\"" + path("with space") + "\" " + path("second"), 3));
    QTRY_VERIFY(QFile::exists(path("with space")));
    QTRY_VERIFY(QFile::exists(path("second")));
}

void DesktopShellTest::handlerGetsTheAddress() {
    QFile::remove(path("handled"));
    DesktopShell shell;
    QVERIFY(shell.Open("velmora-test:mail?id=7", QString(), 1));
    QTRY_COMPARE(Read(path("handled")), QByteArray("velmora-test:mail?id=7"));
}

QTEST_GUILESS_MAIN(DesktopShellTest)
#include "DesktopShellTest.moc"
