#include "messages/HtmlText.h"

#include <QHash>
#include <QRegularExpression>

namespace velmora {

namespace {

// The named references of Latin-1, in the order of their code points from
// 160 on, and the few others mail uses.
QHash<QString, QString> NamedEntities() {
    QHash<QString, QString> named = {
        {"amp", "&"},         {"lt", "<"},         {"gt", ">"},         {"quot", "\""},
        {"apos", "'"},        {"euro", "\u20ac"},  {"mdash", "\u2014"}, {"ndash", "\u2013"},
        {"hellip", "\u2026"}, {"rsquo", "\u2019"}, {"lsquo", "\u2018"}, {"rdquo", "\u201d"},
        {"ldquo", "\u201c"},  {"bull", "\u2022"},  {"trade", "\u2122"},
    };
    const QStringList latin1 =
        QStringLiteral(
            "nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr "
            "deg plusmn sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 "
            "frac34 iquest Agrave Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc "
            "Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde Ouml times Oslash "
            "Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc atilde auml aring "
            "aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml eth ntilde ograve "
            "oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml yacute thorn yuml")
            .split(' ');
    for (int i = 0; i < latin1.size(); ++i)
        named.insert(latin1[i], QString(QChar(160 + i)));
    named["nbsp"] = QStringLiteral(" ");
    return named;
}

QString DecodeEntity(const QString& name) {
    static const QHash<QString, QString> named = NamedEntities();
    if (name.startsWith('#')) {
        bool ok = false;
        const uint code = name.size() > 1 && (name[1] == 'x' || name[1] == 'X')
                              ? name.mid(2).toUInt(&ok, 16)
                              : name.mid(1).toUInt(&ok, 10);
        if (ok && code > 0 && code <= 0x10FFFF) {
            const char32_t c = char32_t(code);
            return QString::fromUcs4(&c, 1);
        }
        return QString();
    }
    return named.value(name, named.value(name.toLower()));
}

} // namespace

QString HtmlToText(const QString& html) {
    static const QRegularExpression hidden(
        QStringLiteral("<(script|style|head|title)\\b[^>]*>.*?</\\1\\s*>|<!--.*?-->"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression breaks(
        QStringLiteral("<(br|/p|/div|/tr|/li|/h[1-6]|/table|/blockquote)\\b[^>]*>"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    static const QRegularExpression spaces(QStringLiteral("[ \\t\\r\\n]+"));
    static const QRegularExpression entity(
        QStringLiteral("&(#[0-9]+|#[xX][0-9a-fA-F]+|[a-zA-Z]+);"));

    QString text = html;
    text.remove(hidden);
    // Source line breaks are only white space in HTML.
    text.replace(spaces, QStringLiteral(" "));
    text.replace(breaks, QStringLiteral("\n"));
    text.remove(tags);

    QString decoded;
    decoded.reserve(text.size());
    qsizetype last = 0;
    for (auto it = entity.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const QString replacement = DecodeEntity(m.captured(1));
        decoded += text.mid(last, m.capturedStart() - last);
        decoded += replacement.isNull() ? m.captured(0) : replacement;
        last = m.capturedEnd();
    }
    decoded += text.mid(last);

    QStringList lines = decoded.split('\n');
    for (QString& line : lines)
        line = line.trimmed();
    QString result = lines.join(QStringLiteral("\r\n"));
    // No more than one empty line in a row.
    static const QRegularExpression blankRuns(QStringLiteral("(\\r\\n){3,}"));
    result.replace(blankRuns, QStringLiteral("\r\n\r\n"));
    return result.trimmed();
}

} // namespace velmora
