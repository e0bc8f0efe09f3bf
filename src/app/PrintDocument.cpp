#include "app/PrintDocument.h"

#include "messages/MessageFiles.h"

namespace velmora {

PrintDocument BuildPrintDocument(const MailMessage& m, int previewTab, const QString& title) {
    const QString crLf = QStringLiteral("\r\n");
    PrintDocument d;
    d.title = title;
    d.runs = {
        {QStringLiteral("From:  "), true},
        {m.From + crLf, false},
        {QStringLiteral("To:  "), true},
        {m.To + crLf, false},
        {QStringLiteral("Date:  "), true},
        {m.Date + crLf, false},
        {QStringLiteral("Subject:  "), true},
        {m.Subject + crLf, false},
        {QString(97, QLatin1Char('_')) + QStringLiteral("\r\n\r\n"), false},
        {previewTab == 2 ? RawMessageText(m) : m.Body, false},
    };
    return d;
}

} // namespace velmora
