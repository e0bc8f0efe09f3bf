#pragma once

namespace velmora {

// Numbers of failures that do not come from the POP client, such as a count
// past 16 bits. They reach the unexpected-error dialog.
namespace RuntimeError {

constexpr int Overflow = 6;
constexpr int SubscriptOutOfRange = 9;
constexpr int TypeMismatch = 13;

} // namespace RuntimeError
} // namespace velmora
