#pragma once

#include "platform/Files.h"

#include <QSet>
#include <QStringList>

namespace velmora {

// Files that exist because the test says so; removals are logged.
class FakeFiles : public Files {
public:
    bool FileExists(const QString& path) override { return existing.contains(path); }
    void RemoveFile(const QString& path) override {
        removed.append(path);
        existing.remove(path);
    }
    QString ProgramFolder() override { return "/program"; }
    QString InstallDataFolder() override { return "/install"; }
    QString TempFolder() override { return "/temp"; }

    QSet<QString> existing;
    QStringList removed;
};

} // namespace velmora
