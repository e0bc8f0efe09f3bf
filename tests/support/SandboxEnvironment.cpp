#include "support/SandboxEnvironment.h"

#include <QDir>
#include <QFile>

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

} // namespace velmora
