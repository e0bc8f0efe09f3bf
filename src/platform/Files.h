#pragma once

#include <QString>

namespace velmora {

// The few file-system questions the logic asks, and the program's folders.
class Files {
public:
    virtual ~Files() = default;

    // Whether a plain file exists there; any failure counts as absence.
    virtual bool FileExists(const QString& path) = 0;
    // Removes a file; failures, a missing file included, are ignored.
    virtual void RemoveFile(const QString& path) = 0;
    // Renames a file over another in one step; false when it could not.
    virtual bool MoveFileOver(const QString& from, const QString& to) = 0;

    // The per-user folder for the Rules files and the menu style file,
    // created when first asked for. No trailing separator.
    virtual QString ProgramFolder() = 0;
    // Read-only files shipped with the program: Sounds, help, ReadMe.
    virtual QString InstallDataFolder() = 0;
    // The per-user folder for temporary message files, created when first
    // asked for.
    virtual QString TempFolder() = 0;

    // Removes what writes cut short by a crash left beside the program's
    // files. Only while no other instance runs: its writes may be under way.
    virtual void RemoveStaleTemporaries() = 0;
};

} // namespace velmora
