#pragma once

#include "context/Version.h"

#include <QString>

namespace velmora {

// Settings of the build: where users get help and updates.
namespace Product {

inline QString SupportAddress() {
    return QStringLiteral(VELMORA_SUPPORT_ADDRESS);
}
inline QString HomePage() {
    return QStringLiteral(VELMORA_HOME_PAGE);
}
inline QString Version() {
    return QStringLiteral(VELMORA_VERSION);
}
inline QString BuildYear() {
    return QStringLiteral(VELMORA_BUILD_YEAR);
}

} // namespace Product
} // namespace velmora
