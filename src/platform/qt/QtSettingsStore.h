#pragma once

#include "platform/SettingsStore.h"

#include <QSettings>
#include <memory>
#include <unordered_map>

namespace velmora {

// The settings tree as a native QSettings file: on Linux an INI file at
// $XDG_CONFIG_HOME/<organisation>/<application>.conf for the application
// path "<organisation>\<application>". Sections map to groups. The file holds
// passwords in clear, so it is kept readable by its owner alone.
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
    QSettings& open(const QString& appPath);
    void commit(QSettings& settings);

    QString fixedFile;
    std::unordered_map<QString, std::unique_ptr<QSettings>> files;
};

} // namespace velmora
