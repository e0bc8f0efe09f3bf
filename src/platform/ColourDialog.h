#pragma once

#include <QtGlobal>

namespace velmora {

// The modal colour dialog. Colours are 0x00BBGGRR values.
class ColourDialog {
public:
    virtual ~ColourDialog() = default;
    // Starts on `colour`; false when cancelled, leaving it as it was.
    virtual bool PickColour(quint32& colour) = 0;
};

} // namespace velmora
