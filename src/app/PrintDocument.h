#pragma once

#include "messages/MailMessage.h"
#include "platform/Printer.h"

namespace velmora {

// The page printed for a message: bold labels over the four fields, a
// rule, then the body, or with the raw tab showing the raw text as well.
PrintDocument BuildPrintDocument(const MailMessage& m, int previewTab, const QString& title);

} // namespace velmora
