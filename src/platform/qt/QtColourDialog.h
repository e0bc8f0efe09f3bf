#pragma once

#include "platform/ColourDialog.h"

#include <optional>

namespace velmora {

// The desktop's colour dialog. It starts on the colour last picked in this
// run, whichever box it was for, and on the box's own colour before any.
class QtColourDialog : public ColourDialog {
public:
    bool PickColour(quint32& colour) override;

private:
    std::optional<quint32> lastPicked;
};

} // namespace velmora
