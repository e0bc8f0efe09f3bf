#pragma once

#include <QString>

namespace velmora {

enum class BoxIcon { Critical, Information, None };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

// Modal message boxes. Texts use CR LF line breaks and keep their padding
// blanks; a box runs the event loop while it waits, as any modal dialog.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;

    // defaultButton counts from 1, the first button.
    virtual BoxAnswer show(const QString& title, const QString& text, BoxIcon icon,
                           BoxButtons buttons, int defaultButton = 1) = 0;
};

} // namespace velmora
