#pragma once

#include "platform/Files.h"

#include <QFile>
#include <QSet>

#include <QStringList>
#include <cstdio>

namespace velmora {

// Files that exist because the test says so; removals are logged.
class FakeFiles : public Files {
public:
    bool FileExists(const QString& path) override { return existing.contains(path); }
    void RemoveFile(const QString& path) override {
        removed.append(path);
        existing.remove(path);
        if (path.startsWith(programFolder + '/'))
            QFile::remove(path);
    }
    // Moves for real, so that files written by the logic end where it says.
    bool MoveFileOver(const QString& from, const QString& to) override {
        return std::rename(QFile::encodeName(from).constData(),
                           QFile::encodeName(to).constData()) == 0;
    }
    QString ProgramFolder() override { return programFolder; }
    QString InstallDataFolder() override { return "/install"; }
    QString TempFolder() override { return "/temp"; }
    void RemoveStaleTemporaries() override { ++tidied; }

    QSet<QString> existing;
    QStringList removed;
    QString programFolder = "/program";
    int tidied = 0;
};

} // namespace velmora
