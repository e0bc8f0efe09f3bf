#pragma once

namespace velmora {

// The per-user list of programs started at logon. Both operations fail in
// silence.
class AutoStart {
public:
    virtual ~AutoStart() = default;
    virtual void SetRunAtStartUp() = 0;
    virtual void ClearRunAtStartUp() = 0;
};

} // namespace velmora
