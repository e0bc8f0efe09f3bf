#include "platform/qt/widgets/TrayPictures.h"

#include <QGuiApplication>
#include <QImage>
#include <QtTest>

using namespace velmora;

class TrayPicturesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sameStackIsDrawnOnce();
    void everySizeIsDrawnForItself();
    void digitsKeepToTheirHalf_data();
    void digitsKeepToTheirHalf();
    void digitsAreDistinctAtTheSmallestSize();
    void inkContrastsWithTheField_data();
    void inkContrastsWithTheField();
};

namespace {

// Columns [from, to) of an image, as bytes, for comparing halves.
QByteArray Columns(const QImage& image, int from, int to) {
    QByteArray out;
    for (int y = 0; y < image.height(); ++y)
        for (int x = from; x < to; ++x)
            out.append(reinterpret_cast<const char*>(&image.constScanLine(y)[x * 4]), 4);
    return out;
}

QImage Image(const QList<int>& stack, int pixels) {
    return TrayPictures::Render(stack, pixels).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

void TrayPicturesTest::sameStackIsDrawnOnce() {
    const int before = TrayPictures::DrawnStacks();
    const QIcon first = TrayPictures::Icon({3, 33, 22});
    const QIcon again = TrayPictures::Icon({3, 33, 22});
    QCOMPARE(again.cacheKey(), first.cacheKey());
    QCOMPARE(TrayPictures::DrawnStacks(), before + 1);
    // Another colour under the same digits is another picture.
    QVERIFY(TrayPictures::Icon({4, 33, 22}).cacheKey() != first.cacheKey());
    QCOMPARE(TrayPictures::DrawnStacks(), before + 2);
}

void TrayPicturesTest::everySizeIsDrawnForItself() {
    const QIcon icon = TrayPictures::Icon({7});
    for (int pixels : {16, 22, 32, 48}) {
        QVERIFY2(icon.availableSizes().contains(QSize(pixels, pixels)),
                 qPrintable(QString::number(pixels)));
        QCOMPARE(icon.pixmap(pixels).size(), QSize(pixels, pixels));
    }
}

void TrayPicturesTest::digitsKeepToTheirHalf_data() {
    QTest::addColumn<QList<int>>("stack");
    QTest::addColumn<bool>("left"); // which half the digit lies in
    QTest::newRow("tens 9") << QList<int>{5, 38} << true;
    QTest::newRow("tens 1") << QList<int>{5, 30} << true;
    QTest::newRow("units 8") << QList<int>{5, 28} << false;
    QTest::newRow("units 0") << QList<int>{5, 20} << false;
}

void TrayPicturesTest::digitsKeepToTheirHalf() {
    QFETCH(QList<int>, stack);
    QFETCH(bool, left);
    for (int pixels : {16, 32}) {
        const QImage field = Image({5}, pixels);
        const QImage digit = Image(stack, pixels);
        const int half = pixels / 2;
        const auto untouched = left ? std::pair(half, pixels) : std::pair(0, half);
        const auto drawn = left ? std::pair(0, half) : std::pair(half, pixels);
        QCOMPARE(Columns(digit, untouched.first, untouched.second),
                 Columns(field, untouched.first, untouched.second));
        QVERIFY(Columns(digit, drawn.first, drawn.second) !=
                Columns(field, drawn.first, drawn.second));
    }
}

void TrayPicturesTest::digitsAreDistinctAtTheSmallestSize() {
    QSet<QByteArray> seen;
    for (int digit = 0; digit <= 9; ++digit) {
        const QImage image = Image({1, 40, 10 + digit}, 16);
        seen.insert(Columns(image, 0, 16));
    }
    QCOMPARE(seen.size(), 10);
    QSet<QByteArray> pairs;
    for (int tens = 1; tens <= 9; ++tens)
        pairs.insert(Columns(Image({1, 29 + tens, 20}, 16), 0, 16));
    QCOMPARE(pairs.size(), 9);
}

void TrayPicturesTest::inkContrastsWithTheField_data() {
    QTest::addColumn<int>("field");
    QTest::addColumn<bool>("darkInk");
    QTest::newRow("blue") << 1 << false;
    QTest::newRow("cyan") << 2 << true;
    QTest::newRow("green") << 3 << true;
    QTest::newRow("red") << 5 << false;
    QTest::newRow("black") << 6 << false;
}

void TrayPicturesTest::inkContrastsWithTheField() {
    QFETCH(int, field);
    QFETCH(bool, darkInk);
    // The middle of an 8 is ink at its waist.
    const QImage image = Image({field, 40, 18}, 48);
    const QColor ink = image.pixelColor(24, 24);
    QVERIFY2(darkInk ? ink.lightness() < 60 : ink.lightness() > 200, qPrintable(ink.name()));
}

QTEST_MAIN(TrayPicturesTest)
#include "TrayPicturesTest.moc"
