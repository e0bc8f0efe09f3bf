#include "platform/qt/LockFileInstanceGuard.h"

#include <QCoreApplication>
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
    QObject::disconnect(quitting);
    lock = std::make_unique<QLockFile>(path);
    // Only a dead owner makes a lock stale, never its age: the program runs
    // all day.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return false;
    // Let go as soon as the program is quitting, not when its teardown is
    // over: a start right after Quit must find the place free.
    if (auto* app = QCoreApplication::instance()) {
        quitting = QObject::connect(app, &QCoreApplication::aboutToQuit, app,
                                    [held = lock.get()] { held->unlock(); });
    }
    return true;
}

LockFileInstanceGuard::~LockFileInstanceGuard() {
    QObject::disconnect(quitting);
}

} // namespace velmora
