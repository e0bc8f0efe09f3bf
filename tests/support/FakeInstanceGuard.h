#pragma once

#include "platform/InstanceGuard.h"

namespace velmora {

class FakeInstanceGuard : public InstanceGuard {
public:
    bool claim() override { return !otherInstanceRuns; }
    bool otherInstanceRuns = false;
};

} // namespace velmora
