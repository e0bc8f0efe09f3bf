#pragma once

#include "platform/Files.h"

#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace velmora {

// The program's folders on this machine:
// - program folder: $XDG_DATA_HOME/Kestrum/Velmora (Rules files, frmMain.ini)
// - install data: share/velmora beside the executable's bin folder, so a
//   build tree runs as an installed copy does
// - temporary files: one folder per user under the system's temporary folder,
//   removed at the end when nothing is left in it
// Folders made here are the user's alone (0700).
class LocalFiles : public Files {
public:
    explicit LocalFiles(QString installDataFolder);
    ~LocalFiles() override;
    LocalFiles(const LocalFiles&) = delete;
    LocalFiles& operator=(const LocalFiles&) = delete;

    bool FileExists(const QString& path) override;
    void RemoveFile(const QString& path) override;
    bool MoveFileOver(const QString& from, const QString& to) override;
    QString ProgramFolder() override;
    QString InstallDataFolder() override { return installData; }
    QString TempFolder() override;
    // Leftovers of every file in the program folder and of the files named
    // with TidyBeside.
    void RemoveStaleTemporaries() override;

    // A file of ours outside the program folder: the settings, the logon
    // entry.
    void TidyBeside(const QString& file) { tidied << file; }

    // share/velmora relative to the folder of the running executable.
    static QString DataFolderBeside(const QString& executableFolder);

private:
    QString installData;
    QString temp;
    QStringList tidied;
    std::unique_ptr<QTemporaryDir> fallbackTemp;
};

} // namespace velmora
