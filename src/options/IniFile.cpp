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
    profiles.WritePrivateProfileString(section, keyName, keyValue, configName);
}

} // namespace velmora
