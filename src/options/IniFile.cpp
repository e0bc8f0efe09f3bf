#include "options/IniFile.h"

#include "platform/ProfileFiles.h"

namespace velmora {

namespace {

const QString NA = QStringLiteral("NA");

// The size the reads are told: a value may be 2047 characters long, though
// the buffer laid out for it has only 255.
constexpr int kReadSize = 2048;

} // namespace

QStringList IniFile::SectionGet(const QString& sectionName) {
    if (!sectionName.isEmpty())
        section = sectionName;
    if (section.isEmpty())
        return {};
    QString buffer(kReadSize, QLatin1Char(' '));
    const int copied = profiles.GetPrivateProfileSection(section, buffer, kReadSize, configName);
    if (copied < 1)
        return {};
    return buffer.left(copied).split(QChar(0));
}

QString IniFile::KeyGet(const QString& sectionName, const QString& key, const QString& fallback) {
    if (sectionName != NA)
        section = sectionName;
    if (key != NA)
        keyName = key;
    defaultValue = fallback;
    keyValue = QString(255, QLatin1Char(' '));
    QString buffer = keyValue;
    const int copied = profiles.GetPrivateProfileString(section, keyName, defaultValue, buffer,
                                                        kReadSize, configName);
    keyValue = copied >= 1 ? buffer.left(copied) : QString();
    return keyValue;
}

void IniFile::KeySave(const QString& value, const QString& sectionName, const QString& key) {
    if (value != NA)
        keyValue = value;
    if (sectionName != NA)
        section = sectionName;
    if (key != NA)
        keyName = key;
    if (pending) {
        pending->set(section, keyName, keyValue);
        return;
    }
    writeFailure.clear();
    profiles.WritePrivateProfileString(section, keyName, keyValue, configName, &writeFailure);
}

void IniFile::StartNew() {
    pending = std::make_unique<NewFile>();
}

bool IniFile::CommitNew() {
    if (!pending)
        return true;
    const QString text = pending->text();
    pending.reset();
    writeFailure.clear();
    return profiles.WriteProfileFile(configName, text, &writeFailure);
}

void IniFile::NewFile::set(const QString& sectionName, const QString& key, const QString& value) {
    const QString folded = sectionName.toCaseFolded();
    int index = bySection.value(folded, -1);
    if (index < 0) {
        index = int(sections.size());
        bySection.insert(folded, index);
        sections.append({sectionName, {}, {}});
    }
    Section& s = sections[index];
    const QString foldedKey = key.toCaseFolded();
    if (const auto at = s.byKey.constFind(foldedKey); at != s.byKey.constEnd()) {
        s.entries[*at].second = value;
        return;
    }
    s.byKey.insert(foldedKey, int(s.entries.size()));
    s.entries.append({key, value});
}

QString IniFile::NewFile::text() const {
    QString out;
    for (const Section& s : sections) {
        out += QLatin1Char('[') + s.name + QLatin1String("]\r\n");
        for (const auto& [key, value] : s.entries)
            out += key + QLatin1Char('=') + value + QLatin1String("\r\n");
    }
    return out;
}

} // namespace velmora
