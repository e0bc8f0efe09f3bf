#pragma once

#include "platform/FileProblem.h"

namespace velmora {

struct AppContext;

// The box for a file of the user's that could not be written (it was left
// as it was) or could not be read (it was put aside).
void ShowFileProblem(AppContext& ctx, const FileProblem& problem);

// Every problem the settings store meets becomes a box; the hook is taken
// off again when the context ends.
void ReportSettingsProblems(AppContext& ctx);
void StopReportingSettingsProblems(AppContext& ctx);

} // namespace velmora
