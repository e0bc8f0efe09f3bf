#include "support/FakeSettingsStore.h"

namespace velmora {

namespace {

QString Path(const QString& section, const QString& key) {
    return section + '\\' + key;
}

} // namespace

QString FakeSettingsStore::GetSetting(const QString&, const QString& section, const QString& key,
                                      const QString& defaultValue) {
    reads.append(Path(section, key));
    return values.value(Path(section, key), defaultValue);
}

void FakeSettingsStore::SaveSetting(const QString&, const QString& section, const QString& key,
                                    const QString& value) {
    writes.append(Path(section, key));
    values[Path(section, key)] = value;
}

void FakeSettingsStore::DeleteSetting(const QString&, const QString& section, const QString& key) {
    values.remove(Path(section, key));
}

} // namespace velmora
