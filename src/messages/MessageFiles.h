#pragma once

#include "messages/MailMessage.h"

#include <QLocale>
#include <QString>

namespace velmora {

// The raw tab of the preview: the header text, a blank line, the body.
QString RawMessageText(const MailMessage& m);

// What a message file holds: the raw text and a closing line end. The
// same whatever the file's type.
QString MessageFileText(const MailMessage& m);

// Writes a message file, creating or replacing it whole, readable by its
// owner alone, in UTF-8. False when it could not be written; the file is
// then as it was.
bool WriteMessageFile(const QString& path, const MailMessage& m);

// The subject as a proposed file name: the characters a file name on any
// desktop may not hold are removed, nothing standing in for them.
QString CleanFileName(const QString& subject);

// A reply handed to the mail program.
struct ReplyText {
    QString recipient;
    QString subject;
    QString body;
};

// The answer to a message: "Re: " before the subject, whatever it holds,
// and a header block over the body quoted with ">" on every line.
ReplyText BuildReply(const MailMessage& m, const QLocale& locale);

// The Sent line's date: the stored date text read back and written out in
// full; a text that reads as no date is given as it stands.
QString SentDate(const QString& dateText, const QLocale& locale);

// The "mailto:" address carrying a recipient, subject and body; line ends
// as CR LF, everything else percent-encoded as UTF-8.
QString MailtoAddress(const QString& recipient, const QString& subject, const QString& body);

// The body cut, where need be, so that its address stays within `limit`
// bytes; a cut body ends with a note that says so.
QString FitForHandOver(const QString& recipient, const QString& subject, const QString& body,
                       int limit);

} // namespace velmora
