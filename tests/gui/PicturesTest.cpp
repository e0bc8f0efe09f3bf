#include "platform/qt/widgets/Pictures.h"
#include "platform/Controls.h"
#include "platform/qt/widgets/DrawnIcons.h"

#include <QDir>
#include <QImage>
#include <QSet>
#include <QtTest>

using namespace velmora;

class PicturesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void everyKeyHasAPicture_data();
    void everyKeyHasAPicture();
    void familiesLookApart();
    void namesOfOneActionShareAPicture_data();
    void namesOfOneActionShareAPicture();
    void denseScreensGetDevicePixels();
    void disabledIsGreyAndFaint();
    void themeYieldsToTheSwitch();
};

namespace {

constexpr const char* kDrawnOnly = "VELMORA_DRAWN_ICONS";

// Keys the logic sets outside the control tables: the menus' captions,
// the tabs, the list's rows and the status panel.
const QStringList kOtherKeys =
    QStringLiteral("Show CheckAll Gears About Help NewMessage Updates MenuColours Quit Preview "
                   "Delete Reply Open AutoCheckOn AutoCheckOff SoundOn SoundOff Folder FolderX "
                   "MailClient0 MailClient3 MailNo MailYes MailError MailSpin4 MailNoDisabled "
                   "MailYesDisabled MailErrorDisabled Normal New Attach AttachNew Spam SpamNew "
                   "DeleteAttach Ascending Descending")
        .split(QLatin1Char(' '));

QStringList AllKeys() {
    QStringList keys;
    for (const MainButton& b : MainButtonTable())
        keys << b.key;
    for (const PageButton& b : PageButtonTable())
        keys << b.image;
    for (const ToolbarButton& b : ToolbarButtonTable())
        keys << b.key;
    keys << kOtherKeys;
    keys.removeDuplicates();
    return keys;
}

struct DrawnOnly {
    explicit DrawnOnly(bool on) {
        if (on)
            qputenv(kDrawnOnly, "1");
        else
            qunsetenv(kDrawnOnly);
    }
    ~DrawnOnly() { qunsetenv(kDrawnOnly); }
};

QImage Image(const QIcon& icon, int pixels, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(pixels, pixels), 1.0, mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

QImage Drawn(const QString& key, int pixels) {
    DrawnOnly on(true);
    return Image(Pictures::Keyed(key), pixels);
}

int OpaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 200;
    return count;
}

} // namespace

void PicturesTest::initTestCase() {
    // A theme the machine has, so the themed path is walked too; without a
    // desktop the offscreen platform names no search paths of its own.
    const QString icons = QStringLiteral("/usr/share/icons");
    if (QDir(icons + QStringLiteral("/Adwaita")).exists()) {
        QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() << icons);
        QIcon::setThemeName(QStringLiteral("Adwaita"));
    }
}

void PicturesTest::everyKeyHasAPicture_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("drawnOnly");
    for (const QString& key : AllKeys()) {
        QTest::newRow(qPrintable(key + "/theme")) << key << false;
        QTest::newRow(qPrintable(key + "/drawn")) << key << true;
    }
}

void PicturesTest::everyKeyHasAPicture() {
    QFETCH(QString, key);
    QFETCH(bool, drawnOnly);
    // A key missing from the drawings would fall back to a plain page.
    QVERIFY(DrawnIcons::Knows(key));
    DrawnOnly env(drawnOnly);
    const QIcon icon = Pictures::Keyed(key);
    QVERIFY(!icon.isNull());
    for (int pixels : {16, 32}) {
        const QImage image = Image(icon, pixels);
        // A theme may hand back its next smaller size; Velmora's own
        // pictures come at the size asked.
        if (drawnOnly)
            QCOMPARE(image.size(), QSize(pixels, pixels));
        QVERIFY(image.width() >= pixels * 2 / 3 && image.width() <= pixels);
        // Enough ink to be seen, not a stray pixel.
        QVERIFY2(
            OpaquePixels(image) >= image.width() * image.height() / 20,
            qPrintable(QStringLiteral("%1 px: %2 opaque").arg(pixels).arg(OpaquePixels(image))));
    }
}

void PicturesTest::familiesLookApart() {
    // One key of each family; at the smallest size no two may be alike.
    const QStringList families = {
        "Normal",      "New",         "CheckAll",   "NewMessage", "Attach",      "Spam",
        "MailError",   "Preview",     "Reply",      "Open",       "Delete",      "DeleteAttach",
        "Folder",      "FolderX",     "Stop",       "Pause",      "Help",        "Save",
        "Cancel",      "Close",       "Gears",      "About",      "Updates",     "Quit",
        "Size",        "Accounts",    "AcntAdd",    "AcntTest",   "Rules",       "RulesAdd",
        "RulesImport", "RulesRename", "SoundOn",    "SoundOff",   "AutoCheckOn", "AutoCheckOff",
        "MenuColours", "Ascending",   "Descending",
    };
    for (int pixels : {16, 32}) {
        QHash<QByteArray, QString> seen;
        for (const QString& key : families) {
            const QImage image = Drawn(key, pixels);
            const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()),
                                   image.sizeInBytes());
            QVERIFY2(
                !seen.contains(bytes),
                qPrintable(
                    QStringLiteral("%1 and %2 at %3 px").arg(key, seen.value(bytes)).arg(pixels)));
            seen.insert(bytes, key);
        }
    }
}

void PicturesTest::namesOfOneActionShareAPicture_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("same");
    const QStringList pairs = QStringLiteral("EmailCheck=CheckAll EmailNew=NewMessage "
                                             "EmailDelete=Delete AcntDelete=Delete "
                                             "RulesDelete=Delete EmailReply=Reply EmailOpen=Open "
                                             "EmailPreview=Preview Options=Gears "
                                             "MailClient7=Folder Show=Email")
                                  .split(QLatin1Char(' '));
    for (const QString& pair : pairs)
        QTest::newRow(qPrintable(pair)) << pair.section('=', 0, 0) << pair.section('=', 1);
}

void PicturesTest::namesOfOneActionShareAPicture() {
    QFETCH(QString, key);
    QFETCH(QString, same);
    QCOMPARE(Drawn(key, 16), Drawn(same, 16));
}

void PicturesTest::denseScreensGetDevicePixels() {
    DrawnOnly on(true);
    const QPixmap pixmap = Pictures::Keyed(QStringLiteral("Help")).pixmap(QSize(16, 16), 2.0);
    QCOMPARE(pixmap.size(), QSize(32, 32));
    QCOMPARE(pixmap.devicePixelRatio(), 2.0);
    // Drawn at 32, not 16 blown up.
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    image.setDevicePixelRatio(1.0);
    QCOMPARE(image,
             DrawnIcons::Render(QStringLiteral("Help"), 32).convertToFormat(QImage::Format_ARGB32));
}

void PicturesTest::disabledIsGreyAndFaint() {
    DrawnOnly on(true);
    const QIcon icon = Pictures::Keyed(QStringLiteral("Stop"));
    const QImage normal = Image(icon, 32);
    const QImage disabled = Image(icon, 32, QIcon::Disabled);
    QVERIFY(OpaquePixels(normal) > 0);
    QCOMPARE(OpaquePixels(disabled), 0);
    int shown = 0;
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) {
            const QColor c = disabled.pixelColor(x, y);
            shown += c.alpha() > 0;
            QVERIFY2(c.alpha() < 40 || c.hsvSaturation() < 20, qPrintable(c.name()));
        }
    QVERIFY(shown > 100);
}

void PicturesTest::themeYieldsToTheSwitch() {
    if (!QIcon::hasThemeIcon(QStringLiteral("document-save")))
        QSKIP("no icon theme with document-save on this machine");
    const QImage drawn =
        DrawnIcons::Render(QStringLiteral("Save"), 32).convertToFormat(QImage::Format_ARGB32);
    {
        DrawnOnly off(false);
        QVERIFY(Image(Pictures::Keyed(QStringLiteral("Save")), 32) != drawn);
        // A state picture stays drawn whatever the theme.
        QCOMPARE(Image(Pictures::Keyed(QStringLiteral("MailYes")), 32),
                 DrawnIcons::Render(QStringLiteral("MailYes"), 32)
                     .convertToFormat(QImage::Format_ARGB32));
    }
    DrawnOnly on(true);
    QCOMPARE(Image(Pictures::Keyed(QStringLiteral("Save")), 32), drawn);
}

QTEST_MAIN(PicturesTest)
#include "PicturesTest.moc"
