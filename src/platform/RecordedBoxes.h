#pragma once

#include "platform/MessageBoxes.h"

#include <QList>

namespace velmora {

// Message boxes that nobody sees: each box is recorded and answered from a
// script, or with its default button when the script is empty. The command
// line prints what it recorded; tests assert on it.
class RecordedBoxes : public MessageBoxes {
public:
    struct Box {
        QString title;
        QString text;
        BoxIcon icon;
        BoxButtons buttons;
        BoxAnswer answer;
    };

    BoxAnswer show(const QString& title, const QString& text, BoxIcon icon, BoxButtons buttons,
                   int defaultButton = 1) override;

    QList<Box> boxes;
    QList<BoxAnswer> answers;
};

} // namespace velmora
