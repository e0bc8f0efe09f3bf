#pragma once

#include "platform/FileProblem.h"

#include <QString>
#include <functional>

namespace velmora {

// The per-user settings tree: an application path ("Kestrum\Velmora"), a
// section ("Settings", "Settings\Options") and keys holding text.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    // The stored text, or the default when the key or section is absent.
    virtual QString GetSetting(const QString& appPath, const QString& section, const QString& key,
                               const QString& defaultValue) = 0;
    // Creates path, section and key as needed and replaces the value.
    virtual void SaveSetting(const QString& appPath, const QString& section, const QString& key,
                             const QString& value) = 0;
    virtual void DeleteSetting(const QString& appPath, const QString& section,
                               const QString& key) = 0;

    // Told when the store's file cannot be written (it then stays as it
    // was; told once, not again until a write succeeds), or cannot be read
    // (it was put aside). Nobody is told while it is empty.
    std::function<void(const FileProblem&)> onProblem;
};

} // namespace velmora
