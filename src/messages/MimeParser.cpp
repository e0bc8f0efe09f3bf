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

bool Utf8Compatible(const char* charset) {
    return !charset || g_ascii_strcasecmp(charset, "us-ascii") == 0 ||
           g_ascii_strcasecmp(charset, "utf-8") == 0 || g_ascii_strcasecmp(charset, "utf8") == 0 ||
           g_ascii_strcasecmp(charset, "ascii") == 0;
}

// The part's text, transfer encoding and charset decoded. ASCII and UTF-8,
// most mail, go straight to Unicode; text in another charset goes through
// GMime's conversion.
QString TextOfPart(GMimePart* part) {
    GMimeTextPart* text = GMIME_TEXT_PART(part);
    if (!Utf8Compatible(g_mime_text_part_get_charset(text))) {
        char* converted = g_mime_text_part_get_text(text);
        const QString result = QString::fromUtf8(converted);
        g_free(converted);
        return result;
    }
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (!content)
        return QString();
    // Content the parser left in our memory is decoded there in one step,
    // without a chain of filter streams and copies.
    GMimeStream* source = g_mime_data_wrapper_get_stream(content);
    const GMimeContentEncoding encoding = g_mime_data_wrapper_get_encoding(content);
    if (source && GMIME_IS_STREAM_MEM(source) && source->bound_start >= 0) {
        const GByteArray* all = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(source));
        const gint64 end = !all ? -1 : source->bound_end < 0 ? gint64(all->len) : source->bound_end;
        if (all && source->bound_start <= end && end <= gint64(all->len)) {
            const char* in = reinterpret_cast<const char*>(all->data) + source->bound_start;
            const size_t length = size_t(end - source->bound_start);
            switch (encoding) {
            case GMIME_CONTENT_ENCODING_BASE64:
            case GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE:
            case GMIME_CONTENT_ENCODING_UUENCODE: {
                GMimeEncoding state;
                g_mime_encoding_init_decode(&state, encoding);
                QByteArray out(qsizetype(g_mime_encoding_outlen(&state, length)) + 16,
                               Qt::Uninitialized);
                size_t n = g_mime_encoding_step(&state, in, length, out.data());
                n += g_mime_encoding_flush(&state, "", 0, out.data() + n);
                out.truncate(qsizetype(n));
                return TextOf(out);
            }
            default:
                return TextOf(QByteArray::fromRawData(in, qsizetype(length)));
            }
        }
    }
    GMimeStream* decoded = g_mime_stream_mem_new();
    g_mime_data_wrapper_write_to_stream(content, decoded);
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(decoded));
    // Undeclared 8-bit text is more often Latin-1 than broken UTF-8.
    const QString result = TextOf(
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes->data), qsizetype(bytes->len)));
    g_object_unref(decoded);
    return result;
}

// One parser a thread, set to each message in turn: making a new one for
// every message costs a tenth of the parse. Between messages it reads an
// empty stream.
struct ReusedParser {
    GMimeParser* parser = g_mime_parser_new();
    GMimeStream* idle = g_mime_stream_null_new();
    ReusedParser() { g_mime_parser_init_with_stream(parser, idle); }
    ~ReusedParser() {
        g_object_unref(parser);
        g_object_unref(idle);
    }
    ReusedParser(const ReusedParser&) = delete;
    ReusedParser& operator=(const ReusedParser&) = delete;
};

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

    // GMime reads the message where it lies: the stream borrows our bytes
    // rather than copying them, and never writes to them.
    GByteArray* borrowed = g_byte_array_new_take(
        reinterpret_cast<guint8*>(const_cast<char*>(message.constData())), gsize(message.size()));
    GMimeStream* stream = g_mime_stream_mem_new_with_byte_array(borrowed);
    g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream), FALSE);
    thread_local ReusedParser reused;
    GMimeParser* parser = reused.parser;
    g_mime_parser_init_with_stream(parser, stream);
    // Read as a MIME part with the message's headers: the same headers and
    // structure, without the address lists a message object would build
    // and this program never uses.
    if (GMimeObject* top = g_mime_parser_construct_part(parser, nullptr)) {
        parsed.from = HeaderValue(top, "From");
        parsed.to = HeaderValue(top, "To");
        parsed.subject = HeaderValue(top, "Subject");
        if (const char* text = g_mime_object_get_header(top, "Date")) {
            if (GDateTime* date = g_mime_utils_header_decode_date(text)) {
                parsed.date =
                    QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date)).toLocalTime();
                g_date_time_unref(date);
            }
        }
        Walk walk;
        Visit(top, walk);
        parsed.attachments = walk.attachments;
        if (walk.plain)
            parsed.body = TextOfPart(walk.plain);
        else if (walk.html)
            parsed.body = HtmlToText(TextOfPart(walk.html));
        g_object_unref(top);
    }
    // Without a readable Date the message bears the time it came in.
    if (!parsed.date.isValid())
        parsed.date = retrievedAt.toLocalTime();
    g_mime_parser_init_with_stream(parser, reused.idle); // lets go of our bytes
    g_object_unref(stream);
    g_byte_array_free(borrowed, FALSE); // the bytes stay ours
    return parsed;
}

} // namespace velmora
