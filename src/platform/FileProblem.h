#pragma once

#include <QString>

namespace velmora {

// A file of the user's that the platform could not write, or could not
// read. The program says so in a box; the file itself is never lost.
struct FileProblem {
    enum Kind { None, NotWritten, Unreadable };
    Kind kind = None;
    QString file;   // full path
    QString reason; // the system's words
    // For an unreadable file: where it was put aside; blank when it could
    // not be moved, and then nothing writes over it.
    QString keptAs;

    explicit operator bool() const { return kind != None; }

    static FileProblem notWritten(const QString& file, const QString& reason) {
        return {NotWritten, file, reason, {}};
    }
    static FileProblem unreadable(const QString& file, const QString& reason,
                                  const QString& keptAs) {
        return {Unreadable, file, reason, keptAs};
    }
};

} // namespace velmora
