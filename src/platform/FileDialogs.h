#pragma once

#include <QString>

namespace velmora {

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    // Modal; the chosen path, or blank when cancelled. filter is in the
    // "Description (*.ext)" form.
    virtual QString OpenFile(const QString& title, const QString& filter,
                             const QString& initialPath) = 0;
    virtual QString SaveFile(const QString& title, const QString& filter,
                             const QString& initialPath) = 0;
};

} // namespace velmora
