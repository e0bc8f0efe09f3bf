#include "platform/qt/widgets/SystemPrinter.h"

#include "platform/qt/QtPrinter.h"

#include <QPrinter>
#include <QPrinterInfo>

namespace velmora {

QString SystemPrinter::Print(const PrintDocument& document) {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        return QStringLiteral("No default printer is set up. Choose one in the system's printer "
                              "settings, then print again.");
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setDocName(document.title);
    // The painter's origin is the corner of what the printer can reach.
    printer.setFullPage(false);
    const QString name = info.description().isEmpty() ? info.printerName() : info.description();
    if (!PaintDocument(document, printer) || printer.printerState() == QPrinter::Error)
        return QStringLiteral("The printer %1 could not print the message.").arg(name);
    return {};
}

} // namespace velmora
