#pragma once

#include "platform/AutoStart.h"

#include <QString>

namespace velmora {

// The logon entry as an XDG autostart file,
// $XDG_CONFIG_HOME/autostart/velmora.desktop, starting the given executable.
class XdgAutoStart : public AutoStart {
public:
    explicit XdgAutoStart(QString executable) : executable(std::move(executable)) {}

    FileProblem SetRunAtStartUp() override;
    void ClearRunAtStartUp() override;

    static QString EntryPath();

private:
    QString executable;
};

} // namespace velmora
