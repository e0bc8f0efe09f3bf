#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

namespace velmora {

class ProfileFiles;

// Reads and writes one profile file. It keeps its file, section, key and
// last value, so a caller names the file and section once and then only
// what changes. The text "NA" for a section, key or value means "the one I
// named before"; so a real "NA" cannot be passed that way. An unreadable
// file reads as empty, and a file that cannot be written stays as it was;
// WriteFailure says why.
class IniFile {
public:
    // Starts on the profile path that callers last named.
    IniFile(ProfileFiles& profiles, const QString& sharedPath)
        : profiles(profiles), configName(sharedPath) {}

    QString ConfigName() const { return configName; }
    void setConfigName(const QString& path) { configName = path; }
    QString Section() const { return section; }
    void setSection(const QString& name) { section = name; }
    QString KeyName() const { return keyName; }
    void setKeyName(const QString& name) { keyName = name; }
    QString KeyValue() const { return keyValue; }
    void setKeyValue(const QString& value) { keyValue = value; }

    // The lines of a section as "key=value", plus one blank element after
    // the last; an empty list for a missing section. A blank argument keeps
    // the stored section.
    QStringList SectionGet(const QString& sectionName);
    QString KeyGet(const QString& sectionName, const QString& key, const QString& defaultValue);
    void KeySave(const QString& value, const QString& sectionName, const QString& key);

    // A run that writes the file anew: from StartNew on, KeySave builds the
    // new file in memory, and CommitNew writes it in one go, so the old file
    // is replaced whole or kept as it was. False when it was kept.
    void StartNew();
    bool CommitNew();
    // Why the last write failed; blank when it did not.
    QString WriteFailure() const { return writeFailure; }

private:
    // The file being written anew: sections and keys in the order of their
    // first saving, found again by their case-folded names.
    struct NewFile {
        struct Section {
            QString name;
            QVector<QPair<QString, QString>> entries;
            QHash<QString, int> byKey;
        };
        QVector<Section> sections;
        QHash<QString, int> bySection;
        void set(const QString& section, const QString& key, const QString& value);
        QString text() const;
    };

    ProfileFiles& profiles;
    QString configName;
    QString section;
    QString keyName;
    QString keyValue;
    QString defaultValue;
    QString writeFailure;
    std::unique_ptr<NewFile> pending;
};

} // namespace velmora
