#pragma once

#include "platform/InstanceGuard.h"

#include <QLockFile>
#include <QString>
#include <memory>

namespace velmora {

// One instance per user: a lock file in the user's runtime folder, held for
// the whole run. A lock left by a crashed run is taken over.
class LockFileInstanceGuard : public InstanceGuard {
public:
    explicit LockFileInstanceGuard(const QString& name = QStringLiteral("velmora.lock"));
    bool claim() override;

private:
    QString path;
    std::unique_ptr<QLockFile> lock;
};

} // namespace velmora
