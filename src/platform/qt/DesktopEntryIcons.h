#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

namespace velmora {

// The picture of an email client: a desktop entry's own icon, or for a
// program the icon of the desktop entry that starts it.
namespace DesktopEntryIcons {

// The Icon= of a desktop entry file; blank when it has none.
QString IconName(const QString& desktopFile);
// The first desktop entry in `folders` whose Exec= starts `program`, by its
// path or by its bare name; blank for none.
QString EntryForProgram(const QString& program, const QStringList& folders);
// The desktop's application folders, most personal first.
QStringList ApplicationFolders();
// The icon for a client path; a null icon when none can be found.
QIcon ClientIcon(const QString& path);

} // namespace DesktopEntryIcons
} // namespace velmora
