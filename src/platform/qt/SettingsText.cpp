#include "platform/qt/SettingsText.h"

#include "platform/qt/Utf8.h"

#include <algorithm>

namespace velmora {

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

QByteArrayView Trimmed(QByteArrayView text) {
    qsizetype b = 0, e = text.size();
    while (b < e && IsSpace(text[b]))
        ++b;
    while (e > b && IsSpace(text[e - 1]))
        --e;
    return text.sliced(b, e - b);
}

bool IsComment(QByteArrayView trimmed) {
    return trimmed.startsWith(';') || trimmed.startsWith('#');
}

bool IsHexDigit(char16_t c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// A key as QSettings writes it: "/" as "\", letters, digits, "_-." as they
// are, anything else as %XX or %UXXXX.
QByteArray EscapedKey(QStringView key) {
    QByteArray out;
    for (const QChar qc : key) {
        const char16_t c = qc.unicode();
        if (c == '/') {
            out += '\\';
        } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                   c == '_' || c == '-' || c == '.') {
            out += char(c);
        } else if (c <= 0xFF) {
            out += '%' + QByteArray::number(c, 16).toUpper().rightJustified(2, '0');
        } else {
            out += "%U" + QByteArray::number(c, 16).toUpper().rightJustified(4, '0');
        }
    }
    return out;
}

QString UnescapedKey(QByteArrayView key) {
    QString out;
    for (qsizetype i = 0; i < key.size();) {
        const char c = key[i];
        if (c == '\\') {
            out += QLatin1Char('/');
            ++i;
            continue;
        }
        if (c == '%' && i + 1 < key.size()) {
            const qsizetype digits = key[i + 1] == 'U' ? 4 : 2;
            const qsizetype first = i + 1 + (digits == 4 ? 1 : 0);
            bool ok = false;
            const uint code =
                first + digits <= key.size() ? key.sliced(first, digits).toUInt(&ok, 16) : 0;
            if (ok) {
                out += QChar(char16_t(code));
                i = first + digits;
                continue;
            }
        }
        qsizetype j = i + 1;
        while (j < key.size() && key[j] != '%' && key[j] != '\\')
            ++j;
        out += Utf8Text(key.sliced(i, j - i));
        i = j;
    }
    return out;
}

// The group a "[...]" line names: "General" is the top, "%General" the
// group of that name.
QString GroupOfHeader(QByteArrayView name) {
    if (name.compare("general", Qt::CaseInsensitive) == 0)
        return {};
    if (name.compare("%general", Qt::CaseInsensitive) == 0)
        return Utf8Text(name.sliced(1));
    return UnescapedKey(name);
}

QByteArray HeaderOfGroup(const QString& group) {
    if (group.isEmpty())
        return "[General]";
    if (group.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0)
        return "[%" + group.toUtf8() + ']';
    return '[' + EscapedKey(group) + ']';
}

// A line's parts; a blank group name means the line is no header.
struct Parsed {
    enum Kind { Other, Header, Entry } kind = Other;
    QString name;         // the group of a header, the key of an entry
    QByteArrayView value; // an entry's value text, up to a comment
};

Parsed Parse(QByteArrayView line) {
    const QByteArrayView trimmed = Trimmed(line);
    if (trimmed.isEmpty() || IsComment(trimmed))
        return {};
    if (trimmed.startsWith('[')) {
        const qsizetype close = trimmed.indexOf(']');
        if (close < 0)
            return {};
        return {Parsed::Header, GroupOfHeader(Trimmed(trimmed.sliced(1, close - 1))), {}};
    }
    const qsizetype equals = trimmed.indexOf('=');
    if (equals <= 0)
        return {};
    // The value runs to the end, or to a ";" outside quotes.
    QByteArrayView value = trimmed.sliced(equals + 1);
    bool quoted = false;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == '\\')
            ++i;
        else if (value[i] == '"')
            quoted = !quoted;
        else if (value[i] == ';' && !quoted) {
            value = value.first(i);
            break;
        }
    }
    return {Parsed::Entry, UnescapedKey(Trimmed(trimmed.first(equals))), value};
}

QString FullKey(const QString& group, const QString& key) {
    return group.isEmpty() ? key : group + QLatin1Char('/') + key;
}

// What QSettings makes of a value's text beginning with "@".
std::optional<QString> FromVariantText(const QString& text) {
    if (!text.startsWith(QLatin1Char('@')))
        return text;
    if (text.startsWith(QLatin1String("@@")))
        return text.mid(1);
    if (text == QLatin1String("@Invalid()"))
        return std::nullopt;
    for (const char* wrapper : {"@String(", "@ByteArray("}) {
        const QLatin1String start(wrapper);
        if (text.startsWith(start) && text.endsWith(QLatin1Char(')')))
            return text.mid(start.size(), text.size() - start.size() - 1);
    }
    return text;
}

} // namespace

SettingsText::SettingsText(const QByteArray& bytes) {
    if (bytes.contains("\r\n"))
        lineEnd = "\r\n";
    // Without the byte order mark some editors put first; it is written back,
    // or a first key that begins with U+FEFF would be read as the mark.
    byteOrderMark = bytes.startsWith("\xEF\xBB\xBF");
    lines = (byteOrderMark ? bytes.sliced(3) : bytes).split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    reindex();
}

QString SettingsText::Problem(const QByteArray& bytes) {
    const auto binary = [](char c) {
        const auto u = static_cast<unsigned char>(c);
        return u < 0x20 && c != '\t' && c != '\n' && c != '\r';
    };
    if (std::any_of(bytes.begin(), bytes.end(), binary))
        return QStringLiteral("it holds binary data, not text");
    int number = 0;
    const QByteArray text = bytes.startsWith("\xEF\xBB\xBF") ? bytes.sliced(3) : bytes;
    for (const QByteArray& raw : text.split('\n')) {
        ++number;
        const QByteArrayView line = Trimmed(raw);
        if (line.isEmpty() || IsComment(line))
            continue;
        if (line.startsWith('[')) {
            if (!line.contains(']'))
                return QStringLiteral("line %1 opens a group without closing it").arg(number);
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            return QStringLiteral("line %1 is neither a [Group] nor a key=value line").arg(number);
        if (Trimmed(line.first(equals)).isEmpty())
            return QStringLiteral("line %1 has a value without a key").arg(number);
    }
    return {};
}

void SettingsText::reindex() {
    keys.clear();
    groupsLast.clear();
    QString group;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const Parsed p = Parse(lines[i]);
        if (p.kind == Parsed::Header) {
            group = p.name;
            groupsLast[group] = i;
        } else if (p.kind == Parsed::Entry) {
            keys[FullKey(group, p.name)] = i;
            groupsLast[group] = i;
        }
    }
}

std::optional<QString> SettingsText::value(const QString& key) const {
    const auto found = keys.constFind(key);
    if (found == keys.constEnd())
        return std::nullopt;
    return FromVariantText(UnescapedValue(Parse(lines[*found]).value));
}

void SettingsText::setValue(const QString& key, const QString& value) {
    const qsizetype cut = key.indexOf(QLatin1Char('/'));
    const QString group = cut < 0 ? QString() : key.left(cut);
    const QByteArray line =
        EscapedKey(cut < 0 ? key : key.mid(cut + 1)) + '=' + EscapedValue(value);
    if (const auto found = keys.constFind(key); found != keys.constEnd()) {
        lines[*found] = line;
        return;
    }
    if (const auto last = groupsLast.constFind(group); last != groupsLast.constEnd()) {
        lines.insert(*last + 1, line);
    } else {
        if (!lines.isEmpty() && !Trimmed(lines.last()).isEmpty())
            lines.append(QByteArray());
        lines.append(HeaderOfGroup(group));
        lines.append(line);
    }
    reindex();
}

void SettingsText::remove(const QString& key) {
    QString group;
    bool removed = false;
    for (qsizetype i = 0; i < lines.size();) {
        const Parsed p = Parse(lines[i]);
        if (p.kind == Parsed::Header)
            group = p.name;
        if (p.kind == Parsed::Entry && FullKey(group, p.name) == key) {
            lines.removeAt(i);
            removed = true;
        } else {
            ++i;
        }
    }
    if (removed)
        reindex();
}

QByteArray SettingsText::bytes() const {
    QByteArray out = byteOrderMark ? QByteArray("\xEF\xBB\xBF") : QByteArray();
    for (const QByteArray& line : lines)
        out += line + lineEnd;
    return out;
}

QByteArray SettingsText::EscapedValue(const QString& value) {
    QString text = value;
    if (text.contains(QChar(0)))
        text = QStringLiteral("@String(") + text + QLatin1Char(')');
    else if (text.startsWith(QLatin1Char('@')))
        text.prepend(QLatin1Char('@'));
    QByteArray out;
    bool quotes = false;
    bool escapeNextIfDigit = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == ';' || c == ',' || c == '=')
            quotes = true;
        // "\x1" followed by "a" would read as one escape "\x1a".
        if (escapeNextIfDigit && IsHexDigit(c)) {
            out += "\\x" + QByteArray::number(c, 16);
            continue;
        }
        escapeNextIfDigit = false;
        switch (c) {
        case 0:
            out += "\\0";
            escapeNextIfDigit = true;
            break;
        case '\a':
            out += "\\a";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\v':
            out += "\\v";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        default:
            if (c <= 0x1F || c == 0x7F) {
                out += "\\x" + QByteArray::number(c, 16);
                escapeNextIfDigit = true;
            } else if (QChar::isHighSurrogate(c) && i + 1 < text.size() &&
                       text[i + 1].isLowSurrogate()) {
                out += QStringView(text).sliced(i, 2).toUtf8();
                ++i;
            } else {
                out += QStringView(text).sliced(i, 1).toUtf8();
            }
        }
    }
    if (quotes || out.startsWith(' ') || out.endsWith(' ')) {
        out.prepend('"');
        out.append('"');
    }
    return out;
}

// QSettings' reading: quotes, backslash escapes, and commas outside quotes,
// which make a list; a list comes back joined by commas.
QString SettingsText::UnescapedValue(QByteArrayView text) {
    static const char escapes[][2] = {{'a', '\a'}, {'b', '\b'},  {'f', '\f'}, {'n', '\n'},
                                      {'r', '\r'}, {'t', '\t'},  {'v', '\v'}, {'"', '"'},
                                      {'?', '?'},  {'\'', '\''}, {'\\', '\\'}};
    QStringList items;
    QString current;
    bool list = false, quoted = false, currentQuoted = false;
    qsizetype chopLimit = 0;
    const auto chopTrailingSpaces = [&] {
        qsizetype end = current.size();
        while (end > chopLimit && (current[end - 1] == ' ' || current[end - 1] == '\t'))
            --end;
        current.truncate(end);
    };
    const auto skipSpaces = [&](qsizetype& i) {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
            ++i;
        chopLimit = current.size();
    };
    qsizetype i = 0;
    skipSpaces(i);
    while (i < text.size()) {
        const char c = text[i];
        if (c == '\\') {
            if (++i >= text.size())
                break;
            const char e = text[i++];
            const auto simple = std::find_if(std::begin(escapes), std::end(escapes),
                                             [e](const char* pair) { return pair[0] == e; });
            if (simple != std::end(escapes)) {
                current += QLatin1Char(simple[0][1]);
            } else if (e == 'x' || (e >= '0' && e <= '7')) {
                const int base = e == 'x' ? 16 : 8;
                char16_t code = e == 'x' ? 0 : char16_t(e - '0');
                bool any = e != 'x';
                while (i < text.size()) {
                    const char d = text[i];
                    const int digit = (d >= '0' && d <= '9')   ? d - '0'
                                      : (d >= 'a' && d <= 'f') ? d - 'a' + 10
                                      : (d >= 'A' && d <= 'F') ? d - 'A' + 10
                                                               : 99;
                    if (digit >= base)
                        break;
                    code = char16_t(code * base + digit);
                    any = true;
                    ++i;
                }
                if (any)
                    current += QChar(code);
            }
            // Any other escaped character is dropped, as QSettings does.
            chopLimit = current.size();
        } else if (c == '"') {
            ++i;
            currentQuoted = true;
            quoted = !quoted;
            if (!quoted)
                skipSpaces(i);
        } else if (c == ',' && !quoted) {
            if (!currentQuoted)
                chopTrailingSpaces();
            list = true;
            items << current;
            current.clear();
            currentQuoted = false;
            ++i;
            skipSpaces(i);
        } else {
            qsizetype j = i + 1;
            while (j < text.size() && text[j] != '\\' && text[j] != '"' && text[j] != ',')
                ++j;
            current += Utf8Text(text.sliced(i, j - i));
            i = j;
        }
    }
    if (!currentQuoted)
        chopTrailingSpaces();
    if (!list)
        return current;
    items << current;
    for (QString& item : items) {
        if (item.startsWith(QLatin1String("@@")))
            item.remove(0, 1);
    }
    return items.join(QLatin1Char(','));
}

} // namespace velmora
