#include "messages/MimeParser.h"

#include "messages/HtmlText.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <optional>

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
    GMimeStream* decoded = g_mime_stream_mem_new();
    g_mime_data_wrapper_write_to_stream(content, decoded);
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(decoded));
    // Undeclared 8-bit text is more often Latin-1 than broken UTF-8.
    const QString result = TextOf(
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes->data), qsizetype(bytes->len)));
    g_object_unref(decoded);
    return result;
}

// The decoded value of a header field as the parser's tree gives it: the
// raw value unfolded, then its encoded words decoded.
QString DecodedValue(const QByteArray& raw) {
    char* unfolded = g_mime_utils_header_unfold(raw.constData());
    char* decoded = g_mime_utils_header_decode_text(nullptr, unfolded);
    QString value = QString::fromUtf8(decoded);
    g_free(decoded);
    g_free(unfolded);
    return value;
}

QDateTime DateOf(const char* text, const QDateTime& fallback) {
    GDateTime* date = g_mime_utils_header_decode_date(text);
    if (!date)
        return fallback;
    const QDateTime local = QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date)).toLocalTime();
    g_date_time_unref(date);
    return local;
}

// The fields the quick reading looks at, each the first of its name.
struct QuickFields {
    enum Name { From, To, Subject, Date, Type, Encoding, Disposition, Count };
    std::optional<QByteArray> raw[Count];
};

int FieldIndex(const char* name, qsizetype length) {
    static const char* const names[QuickFields::Count] = {"from",
                                                          "to",
                                                          "subject",
                                                          "date",
                                                          "content-type",
                                                          "content-transfer-encoding",
                                                          "content-disposition"};
    for (int i = 0; i < QuickFields::Count; ++i) {
        if (qsizetype(std::strlen(names[i])) == length && qstrnicmp(name, names[i], length) == 0)
            return i;
    }
    return -1;
}

bool FieldNameChar(char c) {
    return c > ' ' && c < 127 && c != ':';
}

// Splits a plain header block from `start` up to the CR LF CR LF at `end`
// (every line CR LF ended, every field a well-formed name right before its
// colon) into the fields above. False for anything else, and for a second
// field that shapes the content.
bool SplitFields(const char* data, qsizetype start, qsizetype end, QuickFields& fields) {
    int current = -1;
    qsizetype valueStart = 0;
    const auto close = [&](qsizetype at) {
        if (current >= 0)
            fields.raw[current] = QByteArray(data + valueStart, at - valueStart);
        current = -1;
    };
    for (qsizetype pos = start; pos < end;) {
        const void* found = std::memchr(data + pos, '\n', size_t(end + 2 - pos));
        const qsizetype eol = static_cast<const char*>(found) - data;
        if (eol == pos || data[eol - 1] != '\r')
            return false;
        if (std::memchr(data + pos, '\r', size_t(eol - 1 - pos)) ||
            std::memchr(data + pos, '\0', size_t(eol - 1 - pos)))
            return false;
        if (data[pos] == ' ' || data[pos] == '\t') {
            if (pos == start)
                return false; // a folded first line
        } else {
            close(pos - 2);
            qsizetype colon = pos;
            while (colon < eol - 1 && FieldNameChar(data[colon]))
                ++colon;
            if (colon == pos || colon == eol - 1 || data[colon] != ':')
                return false;
            const int index = FieldIndex(data + pos, colon - pos);
            if (index >= 0 && !fields.raw[index]) {
                current = index;
                valueStart = colon + 1;
            } else if (index >= QuickFields::Type) {
                return false;
            }
        }
        pos = eol + 1;
    }
    close(end);
    return true;
}

QByteArray Unfolded(const QByteArray& raw) {
    char* unfolded = g_mime_utils_header_unfold(raw.constData());
    QByteArray result(unfolded);
    g_free(unfolded);
    return result;
}

bool Is(const QByteArray& value, const char* name) {
    return g_ascii_strcasecmp(value.constData(), name) == 0;
}

// What a content field says, read from its raw value. Where the value
// holds encoded words or 8-bit bytes it is read once more as decoded text,
// and only an answer both readings agree on is taken: the tree may read
// it either way.
template <typename Reading>
std::optional<Reading> ReadField(const QByteArray& raw, Reading (*read)(const char*)) {
    const Reading reading = read(Unfolded(raw).constData());
    const bool decodable =
        raw.contains("=?") || std::any_of(raw.begin(), raw.end(), [](char c) { return c & 0x80; });
    if (decodable && !(read(DecodedValue(raw).toUtf8().constData()) == reading))
        return std::nullopt;
    return reading;
}

// What a part's Content-Type says, text/plain where it says nothing.
struct TypeInfo {
    QByteArray type = "text", subtype = "plain", charset, boundary;
    bool named = false;

    bool operator==(const TypeInfo&) const = default;

    static TypeInfo Read(const char* value) {
        TypeInfo info;
        GMimeContentType* ct = g_mime_content_type_parse(nullptr, value);
        info.type = g_mime_content_type_get_media_type(ct);
        info.subtype = g_mime_content_type_get_media_subtype(ct);
        info.charset = g_mime_content_type_get_parameter(ct, "charset");
        info.named = g_mime_content_type_get_parameter(ct, "name") != nullptr;
        info.boundary = g_mime_content_type_get_parameter(ct, "boundary");
        g_object_unref(ct);
        return info;
    }
};

struct DispositionInfo {
    bool attachment = false;
    bool named = false;

    bool operator==(const DispositionInfo&) const = default;

    static DispositionInfo Read(const char* value) {
        GMimeContentDisposition* cd = g_mime_content_disposition_parse(nullptr, value);
        const DispositionInfo info{bool(g_mime_content_disposition_is_attachment(cd)),
                                   g_mime_content_disposition_get_parameter(cd, "filename") !=
                                       nullptr};
        g_object_unref(cd);
        return info;
    }
};

// The text part chosen for the body, still encoded.
struct TextChoice {
    bool found = false;
    const char* data = nullptr;
    qsizetype size = 0;
    GMimeContentEncoding encoding = GMIME_CONTENT_ENCODING_DEFAULT;
    QByteArray charset;
};

struct QuickWalk {
    qsizetype size = 0; // the whole message's
    TextChoice plain, html;
    int attachments = 0;
    QList<QByteArray> delimiters; // "--" and the boundary of each open multipart
};

// 1 for the innermost multipart's delimiter line, 2 for its closing line,
// 0 for content, -1 for a line the quick reading leaves to the tree (an
// outer boundary, or one followed by blanks or more).
int BoundaryKind(QByteArrayView line, const QList<QByteArray>& delimiters) {
    const QByteArray& inner = delimiters.last();
    if (line == inner)
        return 1;
    if (line.size() == inner.size() + 2 && line.startsWith(inner) && line.endsWith("--"))
        return 2;
    for (const QByteArray& delimiter : delimiters) {
        if (line.startsWith(delimiter))
            return -1;
    }
    return 0;
}

bool WalkEntity(const char* data, qsizetype start, qsizetype end, QuickWalk& walk,
                QuickFields& fields);

bool WalkMultipart(const char* data, qsizetype start, qsizetype end, const QByteArray& boundary,
                   QuickWalk& walk) {
    const QByteArray delimiter = "--" + boundary;
    for (const QByteArray& open : walk.delimiters) {
        if (open.startsWith(delimiter) || delimiter.startsWith(open))
            return false;
    }
    walk.delimiters.append(delimiter);
    qsizetype partStart = -1;
    for (qsizetype pos = start; pos < end;) {
        const void* found = std::memchr(data + pos, '\n', size_t(end - pos));
        const qsizetype eol = found ? static_cast<const char*>(found) - data : end;
        const qsizetype next = found ? eol + 1 : end;
        // Around a bare line feed the tree keeps or drops the carriage
        // returns by rules of its own.
        if (found && (eol == pos || data[eol - 1] != '\r'))
            return false;
        if (data[pos] == '-' && eol - pos >= 2 && data[pos + 1] == '-') {
            const qsizetype lineEnd = found ? eol - 1 : eol;
            const int kind =
                BoundaryKind(QByteArrayView(data + pos, lineEnd - pos), walk.delimiters);
            // A boundary that ends the message without a line break
            // leaves its part's last carriage return to the tree's rules.
            if (kind < 0 || (kind > 0 && !found && end == walk.size))
                return false;
            if (kind > 0) {
                if (partStart >= 0) {
                    QuickFields fields;
                    if (pos - 2 < partStart || data[pos - 2] != '\r' ||
                        !WalkEntity(data, partStart, pos - 2, walk, fields))
                        return false;
                }
                if (kind == 2) {
                    walk.delimiters.removeLast();
                    return true;
                }
                partStart = next;
            }
        }
        pos = next;
    }
    return false; // never closed
}

// One entity from `start` to `end`: its header block, then its content.
bool WalkEntity(const char* data, qsizetype start, qsizetype end, QuickWalk& walk,
                QuickFields& fields) {
    const qsizetype blank = QByteArrayView(data + start, end - start).indexOf("\r\n\r\n");
    if (blank <= 0 || !SplitFields(data, start, start + blank, fields))
        return false;
    const qsizetype content = start + blank + 4;
    TypeInfo type;
    if (const auto& raw = fields.raw[QuickFields::Type]) {
        const std::optional<TypeInfo> read = ReadField(*raw, &TypeInfo::Read);
        if (!read)
            return false;
        type = *read;
    }
    if (Is(type.type, "multipart")) {
        if (Is(type.subtype, "digest") || type.boundary.isEmpty())
            return false;
        return WalkMultipart(data, content, end, type.boundary, walk);
    }
    if (Is(type.type, "message")) {
        if (!Is(type.subtype, "rfc822"))
            return false;
        ++walk.attachments; // a forwarded message
        return true;
    }
    bool attachment = false;
    bool inlined = false;
    bool named = type.named;
    if (const auto& raw = fields.raw[QuickFields::Disposition]) {
        const std::optional<DispositionInfo> read = ReadField(*raw, &DispositionInfo::Read);
        if (!read)
            return false;
        attachment = read->attachment;
        inlined = !attachment;
        named = named || read->named;
    }
    const bool text = Is(type.type, "text");
    const bool plain = text && Is(type.subtype, "plain");
    const bool html = text && Is(type.subtype, "html");
    if (attachment || (!inlined && named && !plain && !html)) {
        ++walk.attachments;
        return true;
    }
    TextChoice* choice = plain ? &walk.plain : html ? &walk.html : nullptr;
    if (choice && !choice->found) {
        choice->found = true;
        choice->data = data + content;
        choice->size = end - content;
        choice->charset = type.charset;
        if (const auto& cte = fields.raw[QuickFields::Encoding]) {
            const std::optional<GMimeContentEncoding> read =
                ReadField(*cte, &g_mime_content_encoding_from_string);
            if (!read)
                return false;
            choice->encoding = *read;
        }
    }
    return true;
}

// The chosen part's text, its transfer encoding undone; false for a charset
// or an encoding read only the long way.
bool TextOfChoice(const TextChoice& choice, QString& text) {
    if (!Utf8Compatible(choice.charset.isNull() ? nullptr : choice.charset.constData()))
        return false;
    switch (choice.encoding) {
    case GMIME_CONTENT_ENCODING_DEFAULT:
    case GMIME_CONTENT_ENCODING_7BIT:
    case GMIME_CONTENT_ENCODING_8BIT:
    case GMIME_CONTENT_ENCODING_BINARY:
        text = TextOf(QByteArray::fromRawData(choice.data, choice.size));
        return true;
    case GMIME_CONTENT_ENCODING_BASE64:
    case GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE: {
        GMimeEncoding state;
        g_mime_encoding_init_decode(&state, choice.encoding);
        QByteArray out(qsizetype(g_mime_encoding_outlen(&state, size_t(choice.size))) + 16,
                       Qt::Uninitialized);
        size_t n = g_mime_encoding_step(&state, choice.data, size_t(choice.size), out.data());
        n += g_mime_encoding_flush(&state, "", 0, out.data() + n);
        out.truncate(qsizetype(n));
        text = TextOf(out);
        return true;
    }
    default:
        return false;
    }
}

} // namespace

// Most mail is text in UTF-8 or ASCII, alone or in plainly nested parts.
// Such a message is read here from its bytes, without the parser's tree of
// objects, which costs several times the reading itself; the result is the
// tree's to the letter.
bool ParseQuickly(const QByteArray& message, const QDateTime& retrievedAt, ParsedMessage& parsed) {
    InitOnce();
    QuickWalk walk;
    walk.size = message.size();
    QuickFields fields;
    if (!WalkEntity(message.constData(), 0, message.size(), walk, fields))
        return false;
    QString body;
    if (walk.plain.found) {
        if (!TextOfChoice(walk.plain, body))
            return false;
    } else if (walk.html.found) {
        if (!TextOfChoice(walk.html, body))
            return false;
        body = HtmlToText(body);
    }
    parsed.header = TextOf(HeaderBlock(message));
    const auto value = [&](QuickFields::Name name) {
        return fields.raw[name] ? DecodedValue(*fields.raw[name]) : QString();
    };
    parsed.from = value(QuickFields::From);
    parsed.to = value(QuickFields::To);
    parsed.subject = value(QuickFields::Subject);
    parsed.date = retrievedAt;
    if (fields.raw[QuickFields::Date])
        parsed.date = DateOf(value(QuickFields::Date).toUtf8().constData(), retrievedAt);
    parsed.attachments = walk.attachments;
    parsed.body = body;
    return true;
}

QByteArray HeaderBlock(const QByteArray& message) {
    if (message.startsWith("\r\n"))
        return QByteArray();
    const qsizetype blank = message.indexOf("\r\n\r\n");
    return blank < 0 ? message : message.left(blank + 2);
}

ParsedMessage ParseMessageTree(const QByteArray& message, const QDateTime& retrievedAt) {
    InitOnce();
    ParsedMessage parsed;
    parsed.header = TextOf(HeaderBlock(message));
    parsed.date = retrievedAt;

    // GMime reads the message where it lies: the stream borrows our bytes
    // rather than copying them, and never writes to them.
    GByteArray* borrowed = g_byte_array_new_take(
        reinterpret_cast<guint8*>(const_cast<char*>(message.constData())), gsize(message.size()));
    GMimeStream* stream = g_mime_stream_mem_new_with_byte_array(borrowed);
    g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream), FALSE);
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    // Read as a MIME part with the message's headers: the same headers and
    // structure, without the address lists a message object would build
    // and this program never uses.
    if (GMimeObject* top = g_mime_parser_construct_part(parser, nullptr)) {
        parsed.from = HeaderValue(top, "From");
        parsed.to = HeaderValue(top, "To");
        parsed.subject = HeaderValue(top, "Subject");
        if (const char* text = g_mime_object_get_header(top, "Date"))
            parsed.date = DateOf(text, retrievedAt);
        Walk walk;
        Visit(top, walk);
        parsed.attachments = walk.attachments;
        if (walk.plain)
            parsed.body = TextOfPart(walk.plain);
        else if (walk.html)
            parsed.body = HtmlToText(TextOfPart(walk.html));
        g_object_unref(top);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    g_byte_array_free(borrowed, FALSE); // the bytes stay ours
    return parsed;
}

ParsedMessage ParseMessage(const QByteArray& message, const QDateTime& retrievedAt) {
    InitOnce();
    ParsedMessage parsed;
    if (ParseQuickly(message, retrievedAt, parsed))
        return parsed;
    return ParseMessageTree(message, retrievedAt);
}

} // namespace velmora
