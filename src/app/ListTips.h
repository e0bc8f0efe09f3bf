#pragma once

namespace velmora {

struct AppContext;

// The pointer moved over lvwEmail: `row` is the row under it (0 for none),
// `x` its distance in pixels from the left of the first column. Sets the
// list's tip to the whole text of a From, To or Subject cell that is cut
// off, blank otherwise.
void lvwEmail_MouseMove(AppContext& ctx, int row, int x);

} // namespace velmora
