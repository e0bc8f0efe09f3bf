#pragma once

#include <QString>
#include <limits>

namespace velmora {

class SettingsStore;

// Where the program keeps its settings, and typed access to them. Numbers are
// stored as decimal text.
namespace setting {

inline const QString AppPath = QStringLiteral("Kestrum\\Velmora");
inline const QString SectionSettings = QStringLiteral("Settings");
inline const QString SectionOptions = QStringLiteral("Settings\\Options");

constexpr int Int16Min = std::numeric_limits<qint16>::min();
constexpr int Int16Max = std::numeric_limits<qint16>::max();

QString readText(SettingsStore& store, const QString& section, const QString& key,
                 const QString& defaultValue);
// A stored text that is no number, or lies outside the range, reads as the
// default: hand-edited settings must not stop the program.
int readInt(SettingsStore& store, const QString& section, const QString& key, int defaultValue,
            int minimum = Int16Min, int maximum = Int16Max);
qint32 readInt32(SettingsStore& store, const QString& section, const QString& key,
                 qint32 defaultValue);
void saveText(SettingsStore& store, const QString& section, const QString& key,
              const QString& value);
void saveInt(SettingsStore& store, const QString& section, const QString& key, qint64 value);

} // namespace setting
} // namespace velmora
