#include "platform/qt/ProfileText.h"

#include "platform/qt/Utf8.h"

#include <QHashFunctions>

#include <algorithm>

namespace velmora {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

QByteArrayView Trimmed(QByteArrayView line) {
    qsizetype b = 0, e = line.size();
    while (b < e && IsBlank(line[b]))
        ++b;
    while (e > b && IsBlank(line[e - 1]))
        --e;
    return line.sliced(b, e - b);
}

// "[Name]" gives Name; anything else is no section line.
bool SectionName(QByteArrayView line, QByteArrayView* name) {
    const QByteArrayView trimmed = Trimmed(line);
    if (!trimmed.startsWith('['))
        return false;
    const qsizetype close = trimmed.indexOf(']');
    if (close < 0)
        return false;
    *name = Trimmed(trimmed.sliced(1, close - 1));
    return true;
}

QString Folded(QByteArrayView name) {
    return Utf8Text(name).toCaseFolded();
}

bool IsComment(QByteArrayView trimmed) {
    return trimmed.startsWith(';') || trimmed.startsWith('#');
}

// A control character that no text file holds.
bool IsBinary(char c) {
    const auto u = static_cast<unsigned char>(c);
    return (u < 0x20 && c != '\t' && c != '\n' && c != '\r') || u == 0x7F;
}

// The byte order mark some editors put first.
QByteArrayView WithoutMark(QByteArrayView bytes) {
    return bytes.startsWith("\xEF\xBB\xBF") ? bytes.sliced(3) : bytes;
}

} // namespace

ProfileText::ProfileText(QByteArray bytes) : data(std::move(bytes)) {
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    QByteArrayView name;
    for (qsizetype at = 0; at < data.size();) {
        const Line line = lineAt(at);
        if (SectionName(textOf(line), &name))
            sections.emplace_back(qHash(Folded(name)), line.begin);
        at = line.next;
    }
    std::stable_sort(sections.begin(), sections.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    sections.shrink_to_fit();
}

QByteArrayView ProfileText::textOf(const Line& line) const {
    return QByteArrayView(data).sliced(line.begin, line.end - line.begin);
}

ProfileText::Line ProfileText::lineAt(qsizetype at) const {
    const qsizetype newline = data.indexOf('\n', at);
    Line line;
    line.begin = at;
    line.end = newline < 0 ? data.size() : newline;
    line.next = newline < 0 ? data.size() : newline + 1;
    if (line.end > line.begin && data[line.end - 1] == '\r')
        --line.end;
    return line;
}

bool ProfileText::findSection(QStringView name, qsizetype* begin, qsizetype* end) const {
    const QString folded = name.toString().toCaseFolded();
    const size_t hash = qHash(folded);
    auto it = std::lower_bound(sections.begin(), sections.end(), hash,
                               [](const auto& entry, size_t h) { return entry.first < h; });
    QByteArrayView found;
    for (; it != sections.end() && it->first == hash; ++it) {
        const Line header = lineAt(it->second);
        if (!SectionName(textOf(header), &found) || Folded(found) != folded)
            continue;
        *begin = header.next;
        qsizetype at = header.next;
        while (at < data.size()) {
            const Line line = lineAt(at);
            if (SectionName(textOf(line), &found))
                break;
            at = line.next;
        }
        *end = at;
        return true;
    }
    return false;
}

std::optional<ProfileText::Line> ProfileText::findKey(qsizetype begin, qsizetype end,
                                                      QStringView key) const {
    for (qsizetype at = begin; at < end;) {
        const Line line = lineAt(at);
        const QByteArrayView text = textOf(line);
        const qsizetype equals = text.indexOf('=');
        if (equals >= 0 &&
            Utf8Text(Trimmed(text.first(equals))).compare(key, Qt::CaseInsensitive) == 0)
            return line;
        at = line.next;
    }
    return std::nullopt;
}

std::optional<QString> ProfileText::value(QStringView section, QStringView key) const {
    qsizetype begin = 0, end = 0;
    if (!findSection(section, &begin, &end))
        return std::nullopt;
    const auto line = findKey(begin, end, key);
    if (!line)
        return std::nullopt;
    const QByteArrayView text = textOf(*line);
    return Utf8Text(text.sliced(text.indexOf('=') + 1)).trimmed();
}

std::optional<QStringList> ProfileText::sectionLines(QStringView section, qsizetype limit) const {
    qsizetype begin = 0, end = 0;
    if (!findSection(section, &begin, &end))
        return std::nullopt;
    QStringList lines;
    qsizetype held = 0;
    for (qsizetype at = begin; at < end && held <= limit;) {
        const Line line = lineAt(at);
        const QString text = Utf8Text(textOf(line));
        if (!text.trimmed().isEmpty()) {
            lines << text;
            held += text.size() + 1;
        }
        at = line.next;
    }
    return lines;
}

QByteArray ProfileText::withValue(const QString& section, const QString& key,
                                  const QString& value) const {
    const QByteArray entry = (key + QLatin1Char('=') + value).toUtf8();
    qsizetype begin = 0, end = 0;
    const bool hasSection = findSection(section, &begin, &end);
    qsizetype replace = -1; // the line to replace
    qsizetype after = -1;   // or the line to add the entry after
    if (hasSection) {
        if (const auto line = findKey(begin, end, key)) {
            replace = line->begin;
        } else {
            // After the section's last entry, before the blank lines that
            // end it; right after its header when it has none.
            after = begin;
            for (qsizetype at = begin; at < end;) {
                const Line line = lineAt(at);
                if (!Trimmed(textOf(line)).isEmpty())
                    after = line.next;
                at = line.next;
            }
        }
    }
    QByteArray out;
    out.reserve(data.size() + entry.size() + section.size() + 16);
    for (qsizetype at = 0; at < data.size();) {
        const Line line = lineAt(at);
        if (at == after)
            out += entry + "\r\n";
        if (at == replace)
            out += entry;
        else
            out += textOf(line);
        out += "\r\n";
        at = line.next;
    }
    if (hasSection && after == data.size())
        out += entry + "\r\n";
    if (!hasSection)
        out += '[' + section.toUtf8() + "]\r\n" + entry + "\r\n";
    return out;
}

QString ProfileText::Problem(const QByteArray& whole, const QString& required) {
    const QByteArrayView bytes = WithoutMark(whole);
    if (std::any_of(bytes.begin(), bytes.end(), IsBinary))
        return QStringLiteral("it holds binary data, not text");
    bool anySection = false, requiredFound = required.isEmpty(), content = false;
    const QString folded = required.toCaseFolded();
    int number = 0;
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype newline = bytes.indexOf('\n', at);
        const qsizetype end = newline < 0 ? bytes.size() : newline;
        const QByteArrayView line = Trimmed(bytes.sliced(at, end - at));
        at = end + 1;
        ++number;
        if (line.isEmpty() || IsComment(line))
            continue;
        QByteArrayView name;
        if (SectionName(line, &name)) {
            anySection = true;
            requiredFound = requiredFound || Folded(name) == folded;
        } else if (line.startsWith('[')) {
            return QStringLiteral("line %1 opens a section without closing it").arg(number);
        } else {
            content = true;
        }
    }
    if (content && !anySection)
        return QStringLiteral("it has no [Section] lines");
    if (anySection && !requiredFound)
        return QStringLiteral("it has no [%1] section").arg(required);
    return {};
}

bool ProfileText::HasHandMadeLines(const QByteArray& whole) {
    const QByteArrayView bytes = WithoutMark(whole);
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype newline = bytes.indexOf('\n', at);
        const qsizetype end = newline < 0 ? bytes.size() : newline;
        const QByteArrayView line = Trimmed(bytes.sliced(at, end - at));
        at = end + 1;
        QByteArrayView name;
        if (!line.isEmpty() &&
            (IsComment(line) || (!SectionName(line, &name) && !line.contains('='))))
            return true;
    }
    return false;
}

} // namespace velmora
