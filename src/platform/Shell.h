#pragma once

#include <QString>

namespace velmora {

class Shell {
public:
    virtual ~Shell() = default;
    // Asks the desktop to open a file, program or address. Window state 1 is
    // normal, 3 maximised. Returns false when nothing could be started.
    virtual bool Open(const QString& target, const QString& parameters, int windowState) = 0;
};

} // namespace velmora
