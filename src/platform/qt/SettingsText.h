#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace velmora {

// A settings file in the INI form that QSettings reads and writes: "[Group]"
// lines, "key=value" lines whose key goes on below the group with "\", and
// values escaped and quoted as QSettings does, so files of either read the
// same in the other. It is kept as its lines: setting a key changes one line,
// and comments and everything else a person wrote stay as they were.
// Keys are whole paths, "Settings/Options/Minutes"; case counts.
class SettingsText {
public:
    SettingsText() = default;
    explicit SettingsText(const QByteArray& bytes);

    // Why the bytes are no settings file, blank when they are one.
    static QString Problem(const QByteArray& bytes);

    // The value of a key; none when it is missing. Of two lines of one key
    // the last counts.
    std::optional<QString> value(const QString& key) const;
    void setValue(const QString& key, const QString& value);
    void remove(const QString& key);
    QByteArray bytes() const;

    // The text forms of a value and of a key, as QSettings writes and reads
    // them; public for the tests that hold them against QSettings.
    static QByteArray EscapedValue(const QString& value);
    static QString UnescapedValue(QByteArrayView text);

private:
    void reindex();

    QList<QByteArray> lines; // without their line ends
    QByteArray lineEnd = "\n";
    bool byteOrderMark = false;
    QHash<QString, qsizetype> keys;       // key path: its last line
    QHash<QString, qsizetype> groupsLast; // group: the last line of its last block
};

} // namespace velmora
