#include "platform/RecordedBoxes.h"

namespace velmora {

namespace {

BoxAnswer defaultAnswer(BoxButtons buttons, int defaultButton) {
    switch (buttons) {
    case BoxButtons::Ok:
        return BoxAnswer::Ok;
    case BoxButtons::YesNo:
        return defaultButton == 2 ? BoxAnswer::No : BoxAnswer::Yes;
    case BoxButtons::YesNoCancel:
        return defaultButton == 3   ? BoxAnswer::Cancel
               : defaultButton == 2 ? BoxAnswer::No
                                    : BoxAnswer::Yes;
    }
    return BoxAnswer::Ok;
}

} // namespace

BoxAnswer RecordedBoxes::show(const QString& title, const QString& text, BoxIcon icon,
                              BoxButtons buttons, int defaultButton) {
    boxes.append({title, text, icon, buttons});
    if (!answers.isEmpty())
        return answers.takeFirst();
    return defaultAnswer(buttons, defaultButton);
}

} // namespace velmora
