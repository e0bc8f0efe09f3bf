#pragma once

#include "platform/SettingsStore.h"

#include <QMap>
#include <QStringList>

namespace velmora {

// The settings tree in memory. It logs every key read and written, in
// order, as "Section\Key", so tests can check what was read when.
class FakeSettingsStore : public SettingsStore {
public:
    QString GetSetting(const QString& appPath, const QString& section, const QString& key,
                       const QString& defaultValue) override;
    void SaveSetting(const QString& appPath, const QString& section, const QString& key,
                     const QString& value) override;
    void DeleteSetting(const QString& appPath, const QString& section, const QString& key) override;

    // Direct access by "Section\Key".
    void set(const QString& sectionKey, const QString& value) { values[sectionKey] = value; }
    QString get(const QString& sectionKey) const { return values.value(sectionKey); }
    bool has(const QString& sectionKey) const { return values.contains(sectionKey); }

    QMap<QString, QString> values;
    QStringList reads;
    QStringList writes;
};

} // namespace velmora
