#pragma once

#include <QIcon>
#include <QList>
#include <QString>

namespace velmora {

// The program's pictures: keyed pictures for buttons, menus, tabs and list
// rows, and the numbered tray pictures. Buttons and menus follow the
// desktop's icon theme, with Velmora's own drawings where it has none;
// VELMORA_DRAWN_ICONS=1 uses the drawings alone.
namespace Pictures {

QIcon Keyed(const QString& key);
// A stack of tray picture numbers, drawn one over the other.
QIcon Tray(const QList<int>& layers);

} // namespace Pictures
} // namespace velmora
