#pragma once

#include "platform/FileProblem.h"

namespace velmora {

// The per-user list of programs started at logon. Removing an entry fails
// in silence; writing one that fails says why, and an entry that was there
// stays as it was.
class AutoStart {
public:
    virtual ~AutoStart() = default;
    virtual FileProblem SetRunAtStartUp() = 0;
    virtual void ClearRunAtStartUp() = 0;
};

} // namespace velmora
