#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace velmora {

// The text of one profile file, "[Section]" and "Key=Value" lines in UTF-8,
// kept as the bytes it was read as: a large Rules file costs its own size
// and a few bytes a section, not a string for every line. Sections and keys
// match without regard to case; of two sections of one name the first
// counts, and of two keys in one section the first.
class ProfileText {
public:
    ProfileText() = default;
    explicit ProfileText(QByteArray bytes);

    const QByteArray& bytes() const { return data; }

    // The value of a key, without blanks at either end; none when the key
    // or its section is missing.
    std::optional<QString> value(QStringView section, QStringView key) const;
    // The section's non-blank lines as they stand, until they hold more
    // than `limit` characters; none when the section is missing.
    std::optional<QStringList> sectionLines(QStringView section, qsizetype limit) const;
    // The whole text, every line ended by CR LF, with the key set: its line
    // replaced, or added after the section's last line, or added with its
    // section at the end. Every other line stays as it was.
    QByteArray withValue(const QString& section, const QString& key, const QString& value) const;

    // Why the bytes are not a profile file, blank when they are one. With
    // `required`, a file with sections but none of that name is none either.
    static QString Problem(const QByteArray& bytes, const QString& required = {});
    // Whether the text has lines that a file written from its sections and
    // keys alone would lose: comments and other lines made by hand.
    static bool HasHandMadeLines(const QByteArray& bytes);

private:
    struct Line {
        qsizetype begin = 0, end = 0; // without the line end
        qsizetype next = 0;           // where the next line begins
    };
    Line lineAt(qsizetype at) const;
    QByteArrayView textOf(const Line& line) const;
    // The body of the first section of that name: [begin, end) in bytes.
    bool findSection(QStringView name, qsizetype* begin, qsizetype* end) const;
    // The line of a key within a body; none when missing.
    std::optional<Line> findKey(qsizetype begin, qsizetype end, QStringView key) const;

    QByteArray data;
    // Each section line's folded-name hash and offset, in that order.
    std::vector<std::pair<size_t, qsizetype>> sections;
};

} // namespace velmora
