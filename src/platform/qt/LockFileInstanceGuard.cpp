#include "platform/qt/LockFileInstanceGuard.h"

#include <QDir>
#include <QStandardPaths>

namespace velmora {

LockFileInstanceGuard::LockFileInstanceGuard(const QString& name) {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    path = folder + '/' + name;
}

bool LockFileInstanceGuard::claim() {
    if (lock && lock->isLocked())
        return true;
    lock = std::make_unique<QLockFile>(path);
    // Only a dead owner makes a lock stale, never its age: the program runs
    // all day.
    lock->setStaleLockTime(0);
    return lock->tryLock(0);
}

} // namespace velmora
