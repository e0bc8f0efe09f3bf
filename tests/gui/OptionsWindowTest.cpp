#include "platform/Controls.h"
#include "platform/qt/DesktopEntryIcons.h"
#include "platform/qt/widgets/MainWindow.h"
#include "platform/qt/widgets/OptionsPage.h"
#include "platform/qt/widgets/Pictures.h"

#include <QAccessible>
#include <QAction>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

using namespace velmora;

class OptionsWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void iconLookup_data();
    void iconLookup();
    void clientPictureReachesButtonsAndTray();
    void menuStyleReachesPopupMenus();
    void everyInputHasAName();

private:
    QTemporaryDir dir;
    QString picture;
    QString write(const QString& name, const QString& text);
};

QString OptionsWindowTest::write(const QString& name, const QString& text) {
    const QString path = dir.filePath(name);
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(text.toUtf8());
    return path;
}

void OptionsWindowTest::initTestCase() {
    QImage red(16, 16, QImage::Format_RGB32);
    red.fill(Qt::red);
    picture = dir.filePath("client.png");
    QVERIFY(red.save(picture));
    QDir(dir.path()).mkdir("applications");
    // An action's Exec= and Icon= are not the entry's.
    write("applications/mailer.desktop",
          "[Desktop Entry]\nName=Mailer\nExec=/opt/mailer/bin/mailer %u\nIcon=" + picture +
              "\n\n[Desktop Action compose]\nExec=/opt/other/compose\nIcon=other\n");
    write("applications/themed.desktop",
          "[Desktop Entry]\nName=Themed\nExec=themed-mail\nIcon=no-such-icon-anywhere\n");
    qputenv("XDG_DATA_HOME", dir.path().toUtf8());
    qputenv("XDG_DATA_DIRS", dir.filePath("nowhere").toUtf8());
}

void OptionsWindowTest::iconLookup_data() {
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("hasIcon");
    QTest::newRow("desktop entry") << "applications/mailer.desktop"
                                   << "" << true;
    QTest::newRow("program by its path") << "/opt/mailer/bin/mailer"
                                         << "mailer.desktop" << true;
    QTest::newRow("program by its bare name") << "/usr/bin/themed-mail"
                                              << "themed.desktop" << false;
    QTest::newRow("program in an action only") << "/opt/other/compose"
                                               << "" << false;
    QTest::newRow("nothing") << "/usr/bin/unknown-client"
                             << "" << false;
}

void OptionsWindowTest::iconLookup() {
    QFETCH(QString, client);
    QFETCH(QString, entry);
    QFETCH(bool, hasIcon);
    const QString path = client.startsWith('/') ? client : dir.filePath(client);
    if (!path.endsWith(".desktop")) {
        const QString found =
            DesktopEntryIcons::EntryForProgram(path, DesktopEntryIcons::ApplicationFolders());
        QCOMPARE(QFileInfo(found).fileName(), entry);
    }
    QCOMPARE(!DesktopEntryIcons::ClientIcon(path).isNull(), hasIcon);
}

void OptionsWindowTest::clientPictureReachesButtonsAndTray() {
    MainWindow w;
    const QString start = Element(ctl::tbrButtons, ctl::StartEmailClient);
    // As the logic does: the picture is made, then shown by its key.
    w.setText(ctl::picClientIcon, "MailClient2|" + dir.filePath("applications/mailer.desktop"));
    w.setImage(start, "MailClient2");
    w.setCaption(ctl::mnuTrayRunClient, "S&tart Email Client|#MailClient2");
    w.setText(ctl::picClientIcon, "show");
    const auto redAt = [](QObject* o) {
        const QIcon icon = qobject_cast<QAction*>(o)->icon();
        return icon.pixmap(16, 16).toImage().pixelColor(8, 8) == QColor(Qt::red);
    };
    QVERIFY(redAt(w.WidgetControls::find(start)));
    QVERIFY(redAt(w.WidgetControls::find(ctl::mnuTrayRunClient)));
    // A client without a picture gets "FolderX"; a forgotten key no longer
    // reaches the button.
    w.setText(ctl::picClientIcon, "MailClient2|/usr/bin/unknown-client");
    w.setImage(start, "MailClient2");
    w.setText(ctl::picClientIcon, "show");
    QCOMPARE(qobject_cast<QAction*>(w.WidgetControls::find(start))->icon().cacheKey(),
             Pictures::Keyed("FolderX").cacheKey());
    w.setText(ctl::picClientIcon, "MailClient2|");
    w.setImage(start, "MailClient2");
    w.setText(ctl::picClientIcon, "show");
    QVERIFY(!redAt(w.WidgetControls::find(start)));
}

void OptionsWindowTest::menuStyleReachesPopupMenus() {
    const QString file =
        write("frmMain.ini", "[Menu]\r\nMenuStyle=4\r\n[New3D]\r\nNew3DColor1=16766894\r\n"
                             "New3DColor2=16777215\r\nNew3DColor3=16744448\r\n");
    const QString sheet = OptionsPage::MenuStyleSheet(file);
    // 0x00BBGGRR: Blue's top 0xFFD7AE is red AE, green D7, blue FF.
    QVERIFY(sheet.contains("#aed7ff"));
    QVERIFY(sheet.contains("#ffffff"));
    QVERIFY(sheet.contains("#0080ff"));
    QVERIFY(OptionsPage::MenuStyleSheet(dir.filePath("missing.ini")).isEmpty());

    MainWindow w;
    w.setText(ctl::txtMenuStyleFile, file);
    for (const auto& name : {ctl::mnuTrayPopMenu, ctl::mnuEmailPopMenu})
        QCOMPARE(qobject_cast<QMenu*>(w.WidgetControls::find(name))->styleSheet(), sheet);
    // The same file written again is taken up again.
    write("frmMain.ini", "[New3D]\r\nNew3DColor1=255\r\nNew3DColor2=0\r\nNew3DColor3=0\r\n");
    w.setText(ctl::txtMenuStyleFile, file);
    QVERIFY(qobject_cast<QMenu*>(w.WidgetControls::find(ctl::mnuEmailPopMenu))
                ->styleSheet()
                .contains("#ff0000"));
}

// Screen readers name an input by its label; the hidden request boxes are
// no input of the user's.
void OptionsWindowTest::everyInputHasAName() {
    MainWindow w;
    const auto* page = qobject_cast<QWidget*>(w.WidgetControls::find(Element(ctl::fraMain, 3)));
    const QStringList hidden = {ctl::picClientIcon, ctl::txtMenuStyleFile, ctl::txtButtonStyle};
    int inputs = 0;
    for (QWidget* input : page->findChildren<QWidget*>()) {
        const bool named = qobject_cast<QLineEdit*>(input) || qobject_cast<QSpinBox*>(input) ||
                           qobject_cast<QListWidget*>(input) ||
                           input->objectName().startsWith("lbl3D");
        if (!named || hidden.contains(input->objectName()) ||
            hidden.contains(input->parentWidget()->objectName()) ||
            qobject_cast<QSpinBox*>(input->parentWidget()))
            continue;
        ++inputs;
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(input);
        QVERIFY2(a && !a->text(QAccessible::Name).trimmed().isEmpty(),
                 qPrintable(input->objectName()));
    }
    QVERIFY(inputs >= 15);
}

QTEST_MAIN(OptionsWindowTest)
#include "OptionsWindowTest.moc"
