#include "options/Setting.h"

#include "platform/SettingsStore.h"

#include <cmath>
#include <optional>

namespace velmora::setting {

namespace {

std::optional<qint64> toNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    bool ok = false;
    const qint64 whole = trimmed.toLongLong(&ok);
    if (ok)
        return whole;
    const double real = trimmed.toDouble(&ok);
    if (ok && std::isfinite(real) && std::fabs(real) < 1e15)
        return qint64(std::nearbyint(real)); // half to even, the default rounding mode
    return std::nullopt;
}

} // namespace

QString readText(SettingsStore& store, const QString& section, const QString& key,
                 const QString& defaultValue) {
    return store.GetSetting(AppPath, section, key, defaultValue);
}

int readInt(SettingsStore& store, const QString& section, const QString& key, int defaultValue,
            int minimum, int maximum) {
    const auto number = toNumber(readText(store, section, key, QString::number(defaultValue)));
    if (!number || *number < minimum || *number > maximum)
        return defaultValue;
    return int(*number);
}

qint32 readInt32(SettingsStore& store, const QString& section, const QString& key,
                 qint32 defaultValue) {
    return readInt(store, section, key, defaultValue, std::numeric_limits<qint32>::min(),
                   std::numeric_limits<qint32>::max());
}

void saveText(SettingsStore& store, const QString& section, const QString& key,
              const QString& value) {
    store.SaveSetting(AppPath, section, key, value);
}

void saveInt(SettingsStore& store, const QString& section, const QString& key, qint64 value) {
    saveText(store, section, key, QString::number(value));
}

} // namespace velmora::setting
