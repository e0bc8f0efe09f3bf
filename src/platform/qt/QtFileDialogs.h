#pragma once

#include "platform/FileDialogs.h"

namespace velmora {

// The toolkit's own file dialogs, modal over the whole program.
class QtFileDialogs : public FileDialogs {
public:
    QString OpenFile(const QString& title, const QString& filter,
                     const QString& initialPath) override;
    QString SaveFile(const QString& title, const QString& filter,
                     const QString& initialPath) override;
};

} // namespace velmora
