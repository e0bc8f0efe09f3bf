#pragma once

#include <QString>

namespace velmora {

class Printer {
public:
    virtual ~Printer() = default;
    // Prints a plain-text document under a title; false when cancelled or
    // when no printer could be used.
    virtual bool PrintText(const QString& title, const QString& text) = 0;
};

} // namespace velmora
