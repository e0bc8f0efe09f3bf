#pragma once

#include <QStringList>

class QTextStream;

namespace velmora {

struct AppContext;
class RecordedBoxes;

// The commands of velmora-cli: the same logic as the desktop program, on
// the same settings, with message boxes recorded and printed. Returns the
// exit status: 0 when the command ran, whatever its outcome; 2 for a usage
// error.
int RunCommandLine(AppContext& ctx, RecordedBoxes& boxes, const QStringList& arguments,
                   QTextStream& out, QTextStream& err);

} // namespace velmora
