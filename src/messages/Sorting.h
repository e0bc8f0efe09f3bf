#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The sort state at start-up, from the options just read.
void SetUpSortState(AppContext& ctx);
// 0 takes the last used column, 1 to 5 the columns in order; anything else
// leaves the column as it was.
void SortColumnFromOption(AppContext& ctx, int option);

} // namespace velmora
