#pragma once

#include <QStringList>

class QTextStream;

namespace velmora {

struct AppContext;
struct Headless;
class StateView;

// The commands of velmora-cli: the same logic as the desktop program, on
// the same settings, with message boxes and sounds recorded and printed.
// The context runs on `view` and on the recorders of `headless`. Returns the
// exit status: 0 when the command ran, whatever its outcome; 2 for a usage
// error or a script line that cannot run.
int RunCommandLine(AppContext& ctx, StateView& view, Headless& headless,
                   const QStringList& arguments, QTextStream& out, QTextStream& err);

} // namespace velmora
