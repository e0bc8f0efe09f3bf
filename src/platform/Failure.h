#pragma once

#include <QString>

namespace velmora {

// A run-time failure: a number and a description. Component operations raise
// it with the component's own number; other faults use the program's numbers
// from RuntimeErrors.h.
struct Failure {
    int number = 0;
    QString description;
};

} // namespace velmora
