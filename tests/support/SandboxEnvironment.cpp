#include "support/SandboxEnvironment.h"

#include <QDir>
#include <QFile>
#include <QSettings>

namespace velmora {

SandboxEnvironment::SandboxEnvironment() {
    for (const char* sub : {"config", "data", "runtime", "tmp"})
        QDir(dir.path()).mkpath(sub);
    QFile::setPermissions(runtimeDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_CONFIG_HOME", configHome().toUtf8());
    qputenv("XDG_DATA_HOME", dataHome().toUtf8());
    qputenv("XDG_RUNTIME_DIR", runtimeDir().toUtf8());
    qputenv("TMPDIR", (dir.path() + "/tmp").toUtf8());
}

void SandboxEnvironment::writeOneAccount(quint16 port, const QString& login) const {
    QSettings file(configHome() + "/Kestrum/Velmora.conf", QSettings::IniFormat);
    file.setValue("Settings/FirstUse", "1");
    file.setValue("Settings/AcntNum", "1");
    file.setValue("Settings/AcntName1", "Home");
    file.setValue("Settings/AcntEnabled1", "1");
    file.setValue("Settings/AcntServer1", "127.0.0.1");
    file.setValue("Settings/AcntPort1", QString::number(port));
    file.setValue("Settings/AcntLoginID1", login);
    file.setValue("Settings/AcntPassword1", "secret");
}

} // namespace velmora
