#pragma once

#include "platform/Shell.h"

namespace velmora {

// Opens programs, files and addresses on a freedesktop desktop. A program is
// started directly, without a shell; anything else goes to the handler the
// desktop has chosen for its type or scheme, through GIO, which, unlike
// QDesktopServices, says when there is none.
class DesktopShell : public Shell {
public:
    // The window state is not honoured: on X11 and Wayland a program
    // places and sizes its own windows.
    bool Open(const QString& target, const QString& parameters, int windowState) override;
    // Through xdg-email where it is installed, which knows the desktop's
    // mail program; else a "mailto:" address for the desktop's handler.
    bool Compose(const QString& recipient, const QString& subject, const QString& body) override;
};

} // namespace velmora
