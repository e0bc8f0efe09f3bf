#pragma once

#include <QString>

namespace velmora {

class Shell {
public:
    virtual ~Shell() = default;
    // Asks the desktop to open a file, program or address. Window state 1 is
    // normal, 3 maximised. Returns false when nothing could be started.
    virtual bool Open(const QString& target, const QString& parameters, int windowState) = 0;
    // Opens the user's mail program on a new message with its recipient,
    // subject and text filled in, for the user to send or not: it is never
    // sent from here. False when no mail program could be started.
    virtual bool Compose(const QString& recipient, const QString& subject, const QString& body) = 0;
};

// The longest "mailto:" address, in bytes once encoded, that a compose
// hand-over carries: a command line takes no single argument much longer.
constexpr int ComposeLimit = 120000;

} // namespace velmora
