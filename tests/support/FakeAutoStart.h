#pragma once

#include "platform/AutoStart.h"

namespace velmora {

class FakeAutoStart : public AutoStart {
public:
    void SetRunAtStartUp() override {
        ++sets;
        present = true;
    }
    void ClearRunAtStartUp() override {
        ++clears;
        present = false;
    }

    int sets = 0;
    int clears = 0;
    bool present = false;
};

} // namespace velmora
