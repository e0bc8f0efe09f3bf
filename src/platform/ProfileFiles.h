#pragma once

#include <QString>

namespace velmora {

// The three profile operations over "[Section]" and "Key=Value" text files.
// Sections and keys match without regard to case. Reads fill a buffer of
// `size` characters as a fixed-size buffer would be filled, and return how
// many characters were copied.
class ProfileFiles {
public:
    virtual ~ProfileFiles() = default;

    // Every line of the section, each ended by a NUL, and one more NUL after
    // the last; 0 when the section or the file is missing.
    virtual int GetPrivateProfileSection(const QString& section, QString& buffer, int size,
                                         const QString& file) = 0;
    // The key's value without blanks at either end, or the default.
    virtual int GetPrivateProfileString(const QString& section, const QString& key,
                                        const QString& defaultValue, QString& buffer, int size,
                                        const QString& file) = 0;
    // Creates file, section and key as needed and replaces the value; every
    // other line stays as it was. False when the file could not be written,
    // which then stays as it was; `reason` says why.
    virtual bool WritePrivateProfileString(const QString& section, const QString& key,
                                           const QString& value, const QString& file,
                                           QString* reason = nullptr) = 0;

    // Replaces the whole file with `text` in one write, or leaves it as it
    // was: false then, with the reason. An old file with lines made by hand,
    // which the new text no longer holds, is first kept as "<file>.bak".
    virtual bool WriteProfileFile(const QString& file, const QString& text, QString* reason) = 0;
    // A file that is there but is no profile file, or has sections but not
    // `required`, is renamed aside so that no write replaces it: true then,
    // with the reason and where it now lies (blank if it could not be
    // moved). False for a readable or a missing file.
    virtual bool PutAsideIfUnreadable(const QString& file, const QString& required, QString* reason,
                                      QString* keptAs) = 0;
};

} // namespace velmora
