#include "messages/MimeParser.h"

#include "messages/HtmlText.h"
#include "platform/GMimeLibrary.h"

#include <QStringDecoder>
#include <QtGlobal>

namespace velmora {

namespace {

// Header bytes may be UTF-8 or, from older senders, 8-bit Latin-1.
QString TextOf(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);
    return text;
}

QString HeaderValue(const GMimeLibrary& G, GMimeObject* object, const char* name) {
    return QString::fromUtf8(G.g_mime_object_get_header(object, name));
}

bool IsType(const GMimeLibrary& G, GMimeObject* object, const char* type, const char* subtype) {
    GMimeContentType* ct = G.g_mime_object_get_content_type(object);
    return ct && G.g_mime_content_type_is_type(ct, type, subtype);
}

// A leaf part a mail client would list as an attachment.
bool IsAttachment(const GMimeLibrary& G, GMimePart* part) {
    if (G.g_mime_part_is_attachment(part))
        return true;
    GMimeContentDisposition* disposition =
        G.g_mime_object_get_content_disposition(GMIME_OBJECT(part));
    const bool inlined = disposition && !G.g_mime_content_disposition_is_attachment(disposition);
    return !inlined && G.g_mime_part_get_filename(part) != nullptr &&
           !IsType(G, GMIME_OBJECT(part), "text", "plain") &&
           !IsType(G, GMIME_OBJECT(part), "text", "html");
}

struct Walk {
    GMimePart* plain = nullptr;
    GMimePart* html = nullptr;
    int attachments = 0;
};

void Visit(const GMimeLibrary& G, GMimeObject* object, Walk& walk) {
    if (G.is(object, G.g_mime_multipart_get_type())) {
        GMimeMultipart* multipart = GMIME_MULTIPART(object);
        const int count = G.g_mime_multipart_get_count(multipart);
        for (int i = 0; i < count; ++i)
            Visit(G, G.g_mime_multipart_get_part(multipart, i), walk);
    } else if (G.is(object, G.g_mime_message_part_get_type())) {
        ++walk.attachments; // a forwarded message
    } else if (G.is(object, G.g_mime_part_get_type())) {
        GMimePart* part = GMIME_PART(object);
        if (IsAttachment(G, part))
            ++walk.attachments;
        else if (!walk.plain && G.is(object, G.g_mime_text_part_get_type()) &&
                 IsType(G, object, "text", "plain"))
            walk.plain = part;
        else if (!walk.html && G.is(object, G.g_mime_text_part_get_type()) &&
                 IsType(G, object, "text", "html"))
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
QString TextOfPart(const GMimeLibrary& G, GMimePart* part) {
    GMimeTextPart* text = GMIME_TEXT_PART(part);
    if (!Utf8Compatible(G.g_mime_text_part_get_charset(text))) {
        char* converted = G.g_mime_text_part_get_text(text);
        const QString result = QString::fromUtf8(converted);
        g_free(converted);
        return result;
    }
    GMimeDataWrapper* content = G.g_mime_part_get_content(part);
    if (!content)
        return QString();
    // Content the parser left in our memory is decoded there in one step,
    // without a chain of filter streams and copies.
    GMimeStream* source = G.g_mime_data_wrapper_get_stream(content);
    const GMimeContentEncoding encoding = G.g_mime_data_wrapper_get_encoding(content);
    if (source && G.is(source, G.g_mime_stream_mem_get_type()) && source->bound_start >= 0) {
        const GByteArray* all = G.g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(source));
        const gint64 end = source->bound_end < 0 ? gint64(all->len) : source->bound_end;
        if (all && source->bound_start <= end && end <= gint64(all->len)) {
            const char* in = reinterpret_cast<const char*>(all->data) + source->bound_start;
            const size_t length = size_t(end - source->bound_start);
            switch (encoding) {
            case GMIME_CONTENT_ENCODING_BASE64:
            case GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE:
            case GMIME_CONTENT_ENCODING_UUENCODE: {
                GMimeEncoding state;
                G.g_mime_encoding_init_decode(&state, encoding);
                QByteArray out(qsizetype(G.g_mime_encoding_outlen(&state, length)) + 16,
                               Qt::Uninitialized);
                size_t n = G.g_mime_encoding_step(&state, in, length, out.data());
                n += G.g_mime_encoding_flush(&state, "", 0, out.data() + n);
                out.truncate(qsizetype(n));
                return TextOf(out);
            }
            default:
                return TextOf(QByteArray::fromRawData(in, qsizetype(length)));
            }
        }
    }
    GMimeStream* decoded = G.g_mime_stream_mem_new();
    G.g_mime_data_wrapper_write_to_stream(content, decoded);
    const GByteArray* bytes = G.g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(decoded));
    // Undeclared 8-bit text is more often Latin-1 than broken UTF-8.
    const QString result = TextOf(
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes->data), qsizetype(bytes->len)));
    G.g_object_unref(decoded);
    return result;
}

// One parser a thread, set to each message in turn: making a new one for
// every message costs a tenth of the parse. Between messages it reads an
// empty stream.
struct ReusedParser {
    const GMimeLibrary& G = *GMime();
    GMimeParser* parser = G.g_mime_parser_new();
    GMimeStream* idle = G.g_mime_stream_null_new();
    ReusedParser() { G.g_mime_parser_init_with_stream(parser, idle); }
    ~ReusedParser() {
        G.g_object_unref(parser);
        G.g_object_unref(idle);
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
    ParsedMessage parsed;
    parsed.header = TextOf(HeaderBlock(message));
    const GMimeLibrary* library = GMime();
    if (!library) {
        static const bool told = [] {
            qWarning("velmora: GMime 3 (libgmime-3.0.so.0) cannot be loaded; messages are read "
                     "without their MIME structure");
            return true;
        }();
        Q_UNUSED(told);
        parsed.date = retrievedAt.toLocalTime();
        return parsed;
    }
    const GMimeLibrary& G = *library;

    // GMime reads the message where it lies: the stream borrows our bytes
    // rather than copying them, and never writes to them.
    GByteArray* borrowed = g_byte_array_new_take(
        reinterpret_cast<guint8*>(const_cast<char*>(message.constData())), gsize(message.size()));
    GMimeStream* stream = G.g_mime_stream_mem_new_with_byte_array(borrowed);
    G.g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream), FALSE);
    thread_local ReusedParser reused;
    GMimeParser* parser = reused.parser;
    G.g_mime_parser_init_with_stream(parser, stream);
    // Read as a MIME part with the message's headers: the same headers and
    // structure, without the address lists a message object would build
    // and this program never uses.
    if (GMimeObject* top = G.g_mime_parser_construct_part(parser, nullptr)) {
        parsed.from = HeaderValue(G, top, "From");
        parsed.to = HeaderValue(G, top, "To");
        parsed.subject = HeaderValue(G, top, "Subject");
        if (const char* text = G.g_mime_object_get_header(top, "Date")) {
            if (GDateTime* date = G.g_mime_utils_header_decode_date(text)) {
                parsed.date =
                    QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date)).toLocalTime();
                g_date_time_unref(date);
            }
        }
        Walk walk;
        Visit(G, top, walk);
        parsed.attachments = walk.attachments;
        if (walk.plain)
            parsed.body = TextOfPart(G, walk.plain);
        else if (walk.html)
            parsed.body = HtmlToText(TextOfPart(G, walk.html));
        G.g_object_unref(top);
    }
    // Without a readable Date the message bears the time it came in.
    if (!parsed.date.isValid())
        parsed.date = retrievedAt.toLocalTime();
    G.g_mime_parser_init_with_stream(parser, reused.idle); // lets go of our bytes
    G.g_object_unref(stream);
    g_byte_array_free(borrowed, FALSE); // the bytes stay ours
    return parsed;
}

} // namespace velmora
