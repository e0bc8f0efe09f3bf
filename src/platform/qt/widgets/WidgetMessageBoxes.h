#pragma once

#include "platform/MessageBoxes.h"

namespace velmora {

class WidgetMessageBoxes : public MessageBoxes {
public:
    BoxAnswer show(const QString& title, const QString& text, BoxIcon icon, BoxButtons buttons,
                   int defaultButton = 1) override;
};

} // namespace velmora
