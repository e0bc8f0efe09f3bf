#pragma once

#include "platform/SettingsStore.h"
#include "platform/qt/SettingsText.h"

#include <unordered_map>

namespace velmora {

// The settings tree as an INI file in the form QSettings uses: on Linux
// $XDG_CONFIG_HOME/<organisation>/<application>.conf for the application
// path "<organisation>\<application>". Sections map to groups. Every change
// is written through at once with WriteFileAtomically, so the file, which
// holds passwords in clear, is the owner's alone and is replaced whole or
// not at all; its comments and other lines stay. A file that cannot be read
// is put aside, never written over.
class QtSettingsStore : public SettingsStore {
public:
    QtSettingsStore() = default;
    // Every application path kept in this one file instead: for reading a
    // copy of a settings file.
    explicit QtSettingsStore(QString fileName) : fixedFile(std::move(fileName)) {}

    QString GetSetting(const QString& appPath, const QString& section, const QString& key,
                       const QString& defaultValue) override;
    void SaveSetting(const QString& appPath, const QString& section, const QString& key,
                     const QString& value) override;
    void DeleteSetting(const QString& appPath, const QString& section, const QString& key) override;

    // Where the file of an application path lies.
    static QString FileName(const QString& appPath);

private:
    struct File {
        QString path;
        SettingsText text;
        // What tells the file's versions apart: a change by another
        // program is read before the next use.
        qint64 size = -1, modified = 0;
        quint64 inode = 0;
        bool seen = false;
        bool untouchable = false; // unreadable, and could not be put aside
        bool failing = false;     // the last write failed, and was told
    };
    File& open(const QString& appPath);
    void load(File& file);
    void write(File& file, const SettingsText& next);
    void tell(const FileProblem& problem);

    QString fixedFile;
    std::unordered_map<QString, File> files;
};

} // namespace velmora
