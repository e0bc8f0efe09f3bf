#pragma once

#include <QStringList>

class QTextStream;

namespace velmora {

struct AppContext;
class RecordedBoxes;
class RecordedSounds;

// The commands of velmora-cli: the same logic as the desktop program, on
// the same settings, with message boxes and sounds recorded and printed.
// Returns the exit status: 0 when the command ran, whatever its outcome; 2
// for a usage error.
int RunCommandLine(AppContext& ctx, RecordedBoxes& boxes, RecordedSounds& sounds,
                   const QStringList& arguments, QTextStream& out, QTextStream& err);

} // namespace velmora
