#pragma once

#include <QIcon>
#include <QList>
#include <QPixmap>

namespace velmora::TrayPictures {

// The numbered tray pictures: 1 to 6 the account colours' fields, 7 the
// plain picture, 8 no connection, 9 Auto Check off, 10 to 19 one digit,
// 20 to 29 units and 30 to 38 tens of two digits, 39 the mark for 100 or
// more, 40 an empty field. A stack is drawn bottom first.

// The stack drawn at `pixels` device pixels square.
QPixmap Render(const QList<int>& stack, int pixels);
// An icon with the stack drawn at every tray size; the same stack hands
// back the same icon, so an unchanged picture costs no drawing.
QIcon Icon(const QList<int>& stack);
// How many stacks have been drawn so far.
int DrawnStacks();

} // namespace velmora::TrayPictures
