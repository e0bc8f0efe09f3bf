#pragma once

#include "platform/InstanceGuard.h"

#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

namespace velmora {

// One instance per user: a lock file in the user's runtime folder, held for
// the run and let go when the program starts quitting. A lock left by a
// crashed run is taken over.
class LockFileInstanceGuard : public InstanceGuard {
public:
    explicit LockFileInstanceGuard(const QString& name = QStringLiteral("velmora.lock"));
    ~LockFileInstanceGuard() override;
    LockFileInstanceGuard(const LockFileInstanceGuard&) = delete;
    LockFileInstanceGuard& operator=(const LockFileInstanceGuard&) = delete;
    bool claim() override;

private:
    QString path;
    std::unique_ptr<QLockFile> lock;
    QMetaObject::Connection quitting;
};

} // namespace velmora
