// The profile-file reader: a Rules or menu style file read as IniFile reads
// it, a key written into it, and a file written anew from keys.
#include "FuzzInput.h"
#include "options/IniFile.h"
#include "platform/ProfileFiles.h"
#include "platform/qt/ProfileText.h"

#include <QStringList>

#include <algorithm>

using namespace velmora;

namespace {

// Profile files in memory, read and written as IniProfileFiles does.
class MemoryProfiles : public ProfileFiles {
public:
    ProfileText text;

    int GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                 const QString&) override {
        const auto lines = text.sectionLines(section, size);
        QString joined;
        for (const QString& line : lines.value_or(QStringList()))
            joined += line + QChar(0);
        buffer = joined.left(size);
        return int(buffer.size());
    }
    int GetPrivateProfileString(const QString& section, const QString& key,
                                const QString& defaultValue, QString& buffer, int size,
                                const QString&) override {
        buffer = text.value(section, key).value_or(defaultValue.trimmed()).left(size - 1);
        return int(buffer.size());
    }
    bool WritePrivateProfileString(const QString& section, const QString& key, const QString& value,
                                   const QString&, QString*) override {
        text = ProfileText(text.withValue(section, key, value));
        return true;
    }
    bool WriteProfileFile(const QString&, const QString& whole, QString*) override {
        text = ProfileText(whole.toUtf8());
        return true;
    }
    bool PutAsideIfUnreadable(const QString&, const QString&, QString*, QString*) override {
        return false;
    }
};

// "NA" tells IniFile to keep what it holds: no text of that meaning.
QString NotNA(const QString& text) {
    return text == QLatin1String("NA") ? text + QLatin1Char('_') : text;
}

// A name that reads back as itself: no line breaks, no "=", "[", "]", ";"
// or "#" to make it another kind of line, no blanks at its ends.
QString Name(QString text) {
    for (const char c : {'\r', '\n', '=', '[', ']', ';', '#'})
        text.remove(QLatin1Char(c));
    text = text.left(200);
    // The cut must not split a character in two halves.
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    text = text.trimmed();
    return text.isEmpty() ? QStringLiteral("k") : NotNA(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput in(data, size);
    const QString section = Name(in.text('\n'));
    const QString key = Name(in.text('\n'));
    QString value = in.text('\n');
    value = NotNA(value.remove(QLatin1Char('\r')));
    const QByteArray file = in.rest();

    ProfileText::Problem(file, QStringLiteral("Rules"));
    ProfileText::HasHandMadeLines(file);

    MemoryProfiles profiles;
    profiles.text = ProfileText(file);
    IniFile ini(profiles, QStringLiteral("/fuzz"));
    ini.SectionGet(section);
    ini.KeyGet(section, key, QStringLiteral("default"));
    ini.KeyGet(QStringLiteral("NA"), QStringLiteral("NA"), QStringLiteral("x"));
    for (int n = 1; n <= 3; ++n)
        ini.KeyGet(QStringLiteral("Rule%1").arg(n), QStringLiteral("Description1"), QString());

    // A key written into the file reads back, trimmed, from the new text.
    ini.KeySave(value, section, key);
    FUZZ_CHECK(profiles.text.value(section, key) == value.trimmed());
    FUZZ_CHECK(ini.KeyGet(section, key, QString()) == value.trimmed().left(2047));

    // A file written anew from keys holds them.
    ini.StartNew();
    ini.KeySave(value, section, key);
    ini.KeySave(QStringLiteral("1"), QStringLiteral("Rules"), QStringLiteral("RuleCount"));
    FUZZ_CHECK(ini.CommitNew());
    FUZZ_CHECK(profiles.text.value(section, key).has_value());
    // And is a readable profile file, unless a name or value held a
    // control character.
    const QString written = section + key + value;
    const bool control = std::any_of(written.begin(), written.end(), [](QChar c) {
        return c.unicode() < 0x20 || c.unicode() == 0x7F;
    });
    FUZZ_CHECK(control ||
               ProfileText::Problem(profiles.text.bytes(), QStringLiteral("Rules")).isEmpty());
    return 0;
}
