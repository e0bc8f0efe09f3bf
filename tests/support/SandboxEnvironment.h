#pragma once

#include <QString>
#include <QTemporaryDir>

namespace velmora {

// Points the per-user folders (XDG config, data, runtime, temp) into a fresh
// temporary folder, so a test never touches the user's own settings. Make it
// before the first use of QSettings or QStandardPaths in the process.
class SandboxEnvironment {
public:
    SandboxEnvironment();

    QString root() const { return dir.path(); }
    QString configHome() const { return dir.path() + "/config"; }
    QString dataHome() const { return dir.path() + "/data"; }
    QString runtimeDir() const { return dir.path() + "/runtime"; }
    // The settings file of a user who has seen the welcome and has one
    // account, "Home", on a server of this machine.
    void writeOneAccount(quint16 port, const QString& login) const;

private:
    QTemporaryDir dir;
};

} // namespace velmora
