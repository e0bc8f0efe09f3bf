#include "messages/MessageFiles.h"
#include "platform/qt/DesktopShell.h"
#include "support/SandboxEnvironment.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <memory>

using namespace velmora;

// A reply handed to the mail program: through xdg-email where it is on
// PATH, else as a "mailto:" address for the desktop's handler. Both ends
// are the sandbox's own, so nothing is sent anywhere.
class ComposeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void xdgEmailGetsEachPartWhole();
    void mailtoHandlerWithoutXdgEmail();

private:
    QString path(const QString& name) const { return sandbox->root() + "/" + name; }
    std::unique_ptr<SandboxEnvironment> sandbox;
};

namespace {

void Write(const QString& file, const QByteArray& text, bool program = false) {
    QFile f(file);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(text);
    f.close();
    if (program)
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner));
}

QByteArray Read(const QString& file) {
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

const QString Subject = QString::fromUtf8("Re: Grüße & \"plans\"");
const QString Body = QString::fromUtf8("\r\n-----Original Message-----\r\n>Grüße,\r\n>bis dann");

} // namespace

void ComposeTest::initTestCase() {
    // Before GIO's first look at the environment, which it keeps.
    sandbox = std::make_unique<SandboxEnvironment>();
    for (const char* sub : {"data-dirs", "config-dirs", "data/applications", "bin", "empty"})
        QDir(sandbox->root()).mkpath(sub);
    qputenv("XDG_DATA_DIRS", path("data-dirs").toUtf8());
    qputenv("XDG_CONFIG_DIRS", path("config-dirs").toUtf8());
    qputenv("GIO_USE_VFS", "local");
    // Each argument ends with a NUL, so that line breaks inside stay.
    Write(path("bin/xdg-email"),
          "#!/bin/sh\nprintf '%s\\0' \"$@\" > \"" + path("xdg-email.args").toUtf8() + "\"\n", true);
    Write(path("mail-handler"),
          "#!/bin/sh\nprintf '%s' \"$1\" > \"" + path("handled").toUtf8() + "\"\n", true);
    Write(sandbox->dataHome() + "/applications/velmora-test-mail.desktop",
          "[Desktop Entry]\nType=Application\nName=Test mail\nExec=\"" +
              path("mail-handler").toUtf8() + "\" %u\nMimeType=x-scheme-handler/mailto;\n");
    Write(sandbox->configHome() + "/mimeapps.list",
          "[Default Applications]\nx-scheme-handler/mailto=velmora-test-mail.desktop\n");
}

void ComposeTest::xdgEmailGetsEachPartWhole() {
    qputenv("PATH", path("bin").toUtf8());
    DesktopShell shell;
    QVERIFY(shell.Compose("Ann Lee <ann@example.com>", Subject, Body));
    QTRY_VERIFY(!Read(path("xdg-email.args")).isEmpty());
    QList<QByteArray> args = Read(path("xdg-email.args")).split('\0');
    QCOMPARE(args.takeLast(), QByteArray());
    QCOMPARE(args, QList<QByteArray>({"--utf8", "--subject", Subject.toUtf8(), "--body",
                                      Body.toUtf8(), "Ann Lee <ann@example.com>"}));
}

void ComposeTest::mailtoHandlerWithoutXdgEmail() {
    qputenv("PATH", path("empty").toUtf8());
    DesktopShell shell;
    QVERIFY(shell.Compose("ann@example.com", Subject, Body));
    QTRY_VERIFY(!Read(path("handled")).isEmpty());
    QCOMPARE(QString::fromUtf8(Read(path("handled"))),
             MailtoAddress("ann@example.com", Subject, Body));
}

QTEST_GUILESS_MAIN(ComposeTest)
#include "ComposeTest.moc"
