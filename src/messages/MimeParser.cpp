#include "messages/MimeParser.h"

#include "messages/HtmlText.h"

#include <QStringDecoder>

#include <gmime/gmime.h>

namespace velmora {

namespace {

void InitOnce() {
    static const bool done = [] {
        g_mime_init();
        return true;
    }();
    Q_UNUSED(done);
}

// Header bytes may be UTF-8 or, from older senders, 8-bit Latin-1.
QString TextOf(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);
    return text;
}

QString HeaderValue(GMimeObject* object, const char* name) {
    return QString::fromUtf8(g_mime_object_get_header(object, name));
}

bool IsType(GMimeObject* object, const char* type, const char* subtype) {
    GMimeContentType* ct = g_mime_object_get_content_type(object);
    return ct && g_mime_content_type_is_type(ct, type, subtype);
}

// A leaf part a mail client would list as an attachment.
bool IsAttachment(GMimePart* part) {
    if (g_mime_part_is_attachment(part))
        return true;
    GMimeContentDisposition* disposition =
        g_mime_object_get_content_disposition(GMIME_OBJECT(part));
    const bool inlined = disposition && !g_mime_content_disposition_is_attachment(disposition);
    return !inlined && g_mime_part_get_filename(part) != nullptr &&
           !IsType(GMIME_OBJECT(part), "text", "plain") &&
           !IsType(GMIME_OBJECT(part), "text", "html");
}

struct Walk {
    GMimePart* plain = nullptr;
    GMimePart* html = nullptr;
    int attachments = 0;
};

void Visit(GMimeObject* object, Walk& walk) {
    if (GMIME_IS_MULTIPART(object)) {
        GMimeMultipart* multipart = GMIME_MULTIPART(object);
        const int count = g_mime_multipart_get_count(multipart);
        for (int i = 0; i < count; ++i)
            Visit(g_mime_multipart_get_part(multipart, i), walk);
    } else if (GMIME_IS_MESSAGE_PART(object)) {
        ++walk.attachments; // a forwarded message
    } else if (GMIME_IS_PART(object)) {
        GMimePart* part = GMIME_PART(object);
        if (IsAttachment(part))
            ++walk.attachments;
        else if (!walk.plain && GMIME_IS_TEXT_PART(object) && IsType(object, "text", "plain"))
            walk.plain = part;
        else if (!walk.html && GMIME_IS_TEXT_PART(object) && IsType(object, "text", "html"))
            walk.html = part;
    }
}

QString TextOfPart(GMimePart* part) {
    char* text = g_mime_text_part_get_text(GMIME_TEXT_PART(part));
    const QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

} // namespace

QByteArray HeaderBlock(const QByteArray& message) {
    if (message.startsWith("\r\n"))
        return QByteArray();
    const qsizetype blank = message.indexOf("\r\n\r\n");
    return blank < 0 ? message : message.left(blank + 2);
}

ParsedMessage ParseMessage(const QByteArray& message, const QDateTime& retrievedAt) {
    InitOnce();
    ParsedMessage parsed;
    parsed.header = TextOf(HeaderBlock(message));
    parsed.date = retrievedAt;

    GMimeStream* stream =
        g_mime_stream_mem_new_with_buffer(message.constData(), size_t(message.size()));
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    GMimeMessage* mime = g_mime_parser_construct_message(parser, nullptr);
    if (mime) {
        GMimeObject* top = GMIME_OBJECT(mime);
        parsed.from = HeaderValue(top, "From");
        parsed.to = HeaderValue(top, "To");
        parsed.subject = QString::fromUtf8(g_mime_message_get_subject(mime));
        if (GDateTime* date = g_mime_message_get_date(mime))
            parsed.date = QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date)).toLocalTime();
        if (GMimeObject* body = g_mime_message_get_mime_part(mime)) {
            Walk walk;
            Visit(body, walk);
            parsed.attachments = walk.attachments;
            if (walk.plain)
                parsed.body = TextOfPart(walk.plain);
            else if (walk.html)
                parsed.body = HtmlToText(TextOfPart(walk.html));
        }
        g_object_unref(mime);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    return parsed;
}

} // namespace velmora
