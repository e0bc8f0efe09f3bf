#pragma once

namespace velmora {

// Tells whether another instance of the program runs for this user.
class InstanceGuard {
public:
    virtual ~InstanceGuard() = default;
    // True when this process is now the only instance; false when another
    // one holds the claim. Touches nothing of the other instance.
    virtual bool claim() = 0;
};

} // namespace velmora
