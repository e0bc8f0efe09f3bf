#pragma once

#include <QIcon>
#include <QList>
#include <QString>

namespace velmora {

// The program's pictures, drawn rather than shipped: keyed pictures for
// buttons, tabs and list rows, and the numbered tray pictures.
namespace Pictures {

QIcon Keyed(const QString& key);
// A stack of tray picture numbers, drawn one over the other.
QIcon Tray(const QList<int>& layers);

} // namespace Pictures
} // namespace velmora
