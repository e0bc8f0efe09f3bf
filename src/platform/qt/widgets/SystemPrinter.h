#pragma once

#include "platform/Printer.h"

namespace velmora {

// The desktop's default printer (CUPS), used without a print dialog.
class SystemPrinter : public Printer {
public:
    QString Print(const PrintDocument& document) override;
};

} // namespace velmora
