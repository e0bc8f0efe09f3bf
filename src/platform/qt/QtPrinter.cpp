#include "platform/qt/QtPrinter.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>

namespace velmora {

namespace {

constexpr qreal TwipsPerInch = 1440.0;

QFont PrintFont(int pointSize) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(pointSize);
    font.setBold(false);
    font.setItalic(false);
    font.setUnderline(false);
    return font;
}

// The document laid out for the device: its pages as tall as the printable
// area, its lines as long as the paper less the two margins.
std::unique_ptr<QTextDocument> Layout(const PrintDocument& document, QPagedPaintDevice& device) {
    auto text = std::make_unique<QTextDocument>();
    text->documentLayout()->setPaintDevice(&device);
    text->setDocumentMargin(0);
    const QFont font = PrintFont(document.pointSize);
    text->setDefaultFont(font);
    QTextCursor cursor(text.get());
    for (const PrintRun& run : document.runs) {
        QTextCharFormat format;
        format.setFont(font);
        format.setFontWeight(run.bold ? QFont::Bold : QFont::Normal);
        QString plain = run.text;
        plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        plain.replace(QLatin1Char('\r'), QLatin1Char('\n'));
        cursor.insertText(plain, format);
    }
    const QPageLayout page = device.pageLayout();
    const int dpi = device.logicalDpiX();
    const qreal paper = page.fullRectPixels(dpi).width();
    const qreal margins = 2.0 * document.marginTwips / TwipsPerInch * dpi;
    const qreal printable = page.paintRectPixels(dpi).width();
    const qreal height = page.paintRectPixels(device.logicalDpiY()).height();
    text->setPageSize(QSizeF(qMin(paper - margins, printable), height));
    return text;
}

} // namespace

int PageCount(const PrintDocument& document, QPagedPaintDevice& device) {
    return Layout(document, device)->pageCount();
}

bool PaintDocument(const PrintDocument& document, QPagedPaintDevice& device) {
    const std::unique_ptr<QTextDocument> text = Layout(document, device);
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    const QSizeF page = text->pageSize();
    const int pages = text->pageCount();
    for (int n = 0; n < pages; ++n) {
        if (n > 0 && !device.newPage())
            return false;
        painter.save();
        painter.translate(0, -n * page.height());
        const QRectF clip(0, n * page.height(), page.width(), page.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = clip;
        painter.setClipRect(clip);
        text->documentLayout()->draw(&painter, context);
        painter.restore();
    }
    return painter.end();
}

QString PdfPrinter::Print(const PrintDocument& document) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("The file %1 could not be written: %2").arg(path, file.errorString());
    {
        QPdfWriter pdf(&file);
        pdf.setTitle(document.title);
        pdf.setCreator(QStringLiteral("Velmora"));
        pdf.setResolution(600);
        const QPageSize size(QLocale::system().measurementSystem() == QLocale::ImperialUSSystem
                                 ? QPageSize::Letter
                                 : QPageSize::A4);
        // Paper has an edge no printer reaches; the PDF's page is given the
        // common sixth of an inch, so that it looks as the paper would.
        const qreal edge = 72.0 / 6.0;
        pdf.setPageLayout(QPageLayout(size, QPageLayout::Portrait,
                                      QMarginsF(edge, edge, edge, edge), QPageLayout::Point));
        pages = PageCount(document, pdf);
        if (!PaintDocument(document, pdf))
            return QStringLiteral("The file %1 could not be written.").arg(path);
    }
    if (!file.commit())
        return QStringLiteral("The file %1 could not be written: %2").arg(path, file.errorString());
    return {};
}

} // namespace velmora
