#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

// Velmora's own pictograms for its picture keys, drawn with QPainter at
// whatever size is asked for, so they stay sharp on dense screens.
namespace velmora::DrawnIcons {

// Whether a key has a pictogram of its own; any other key is drawn as a
// plain page.
bool Knows(const QString& key);
// An icon that draws the key's pictogram at every size and scale.
QIcon Icon(const QString& key);
// The key's pictogram at `pixels` device pixels square.
QImage Render(const QString& key, int pixels, QIcon::Mode mode = QIcon::Normal);

} // namespace velmora::DrawnIcons
