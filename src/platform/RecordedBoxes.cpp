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
    const BoxAnswer answer =
        answers.isEmpty() ? defaultAnswer(buttons, defaultButton) : answers.takeFirst();
    boxes.append({title, text, icon, buttons, answer});
    return answer;
}

} // namespace velmora
