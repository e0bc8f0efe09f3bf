#include "messages/MessageFiles.h"

#include "context/TimeFormat.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QUrl>

namespace velmora {

namespace {

const QString CrLf = QStringLiteral("\r\n");

// Said at the end of a reply cut to fit the hand-over.
const QString CutNote =
    QStringLiteral("\r\n\r\n[The rest of the original message was left out: it is longer than "
                   "a mail program can be handed in one piece.]");

QDateTime ReadStoredDate(const QString& text, const QLocale& locale) {
    // The list's own form first, then the same in English names.
    for (const QLocale& l : {locale, QLocale::c()}) {
        for (const char* form : {"MMM dd, yyyy hh:mm:ss AP", "MMM d, yyyy h:mm:ss AP",
                                 "MMM dd, yyyy hh:mm:ss", "MMM dd, yyyy"}) {
            const QDateTime read = l.toDateTime(text.trimmed(), QLatin1String(form));
            if (read.isValid())
                return read;
        }
    }
    return {};
}

QByteArray Encoded(const QString& text) {
    return QUrl::toPercentEncoding(text);
}

} // namespace

QString RawMessageText(const MailMessage& m) {
    return m.Raw + QStringLiteral("\r\n\r\n") + m.Body;
}

QString MessageFileText(const MailMessage& m) {
    return RawMessageText(m) + CrLf;
}

bool WriteMessageFile(const QString& path, const MailMessage& m) {
    if (path.isEmpty())
        return false;
    // Written beside and renamed over: a full disk or a crash leaves the
    // old file, never half of the new one.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = MessageFileText(m).toUtf8();
    if (file.write(bytes) != bytes.size())
        return false;
    // Mail is private, wherever it is kept.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (!file.commit())
        return false;
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return true;
}

QString CleanFileName(const QString& subject) {
    QString name = subject;
    for (const QChar c : QStringLiteral("/?<>\\:*|\"[],;"))
        name.remove(c);
    return name;
}

QString SentDate(const QString& dateText, const QLocale& locale) {
    const QDateTime read = ReadStoredDate(dateText, locale);
    if (!read.isValid())
        return dateText;
    return FormatTime(read, QStringLiteral("dddd, mmmm d, yyyy at h:mm AM/PM"), locale);
}

ReplyText BuildReply(const MailMessage& m, const QLocale& locale) {
    QString quoted = CrLf + m.Body;
    quoted.replace(CrLf, QStringLiteral("\r\n>"));
    QString text = CrLf + QStringLiteral("-----Original Message-----") + CrLf;
    text += QStringLiteral("From: ") + m.From + CrLf;
    text += QStringLiteral("To: ") + m.To + CrLf;
    text += QStringLiteral("Sent: ") + SentDate(m.Date, locale) + CrLf;
    text += QStringLiteral("Subject: ") + m.Subject + QStringLiteral("\r\n\r\n");
    text += quoted;
    return {m.From, QStringLiteral("Re: ") + m.Subject, text};
}

QString MailtoAddress(const QString& recipient, const QString& subject, const QString& body) {
    // Bare line feeds travel as CR LF, as a mail address wants them.
    QString lines = body;
    lines.replace(CrLf, QStringLiteral("\n")).replace(QLatin1Char('\n'), CrLf);
    QByteArray address = "mailto:" + QUrl::toPercentEncoding(recipient, "@");
    address += "?subject=" + Encoded(subject);
    address += "&body=" + Encoded(lines);
    return QString::fromLatin1(address);
}

QString FitForHandOver(const QString& recipient, const QString& subject, const QString& body,
                       int limit) {
    const auto fits = [&](const QString& text) {
        return MailtoAddress(recipient, subject, text).size() <= limit;
    };
    if (fits(body))
        return body;
    // The longest beginning that fits with the note; the address grows
    // with every character kept.
    qsizetype low = 0;
    qsizetype high = body.size();
    while (low < high) {
        const qsizetype mid = (low + high + 1) / 2;
        if (fits(body.left(mid) + CutNote))
            low = mid;
        else
            high = mid - 1;
    }
    // Never half of a character outside the basic plane.
    if (low > 0 && body.at(low - 1).isHighSurrogate())
        --low;
    return body.left(low) + CutNote;
}

} // namespace velmora
