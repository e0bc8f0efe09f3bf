#pragma once

#include "platform/Printer.h"

class QPagedPaintDevice;

namespace velmora {

// Lays a document out with QTextDocument and paints it page by page on a
// device whose painter origin is the printable area's corner. The lines
// are as long as the paper less a margin each side, yet begin at that
// corner: the margins narrow the text without moving it, as pages printed
// by the program always have. False when the device could not be painted.
bool PaintDocument(const PrintDocument& document, QPagedPaintDevice& device);

// The number of pages a document takes on a device.
int PageCount(const PrintDocument& document, QPagedPaintDevice& device);

// Prints into a PDF file instead of on paper: for the command line and the
// tests. The file appears whole or not at all.
class PdfPrinter : public Printer {
public:
    explicit PdfPrinter(QString path) : path(std::move(path)) {}
    QString Print(const PrintDocument& document) override;

    // Pages of the last document printed.
    int pages = 0;

private:
    QString path;
};

} // namespace velmora
