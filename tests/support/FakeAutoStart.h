#pragma once

#include "platform/AutoStart.h"

namespace velmora {

class FakeAutoStart : public AutoStart {
public:
    void SetRunAtStartUp() override { ++sets; }
    void ClearRunAtStartUp() override { ++clears; }

    int sets = 0;
    int clears = 0;
};

} // namespace velmora
