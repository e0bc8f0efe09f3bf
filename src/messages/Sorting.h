#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The sort state at start-up, from the options just read.
void SetUpSortState(AppContext& ctx);
// 0 takes the last used column, 1 to 5 the columns in order; anything else
// leaves the column as it was.
void SortColumnFromOption(AppContext& ctx, int option);
// Reorders the account's messages in the store by a column: "From", "To",
// "Subject", "Date" or "Size"; any other text sorts nothing.
void SortMessages(AppContext& ctx, int account, const QString& column);
// A click on the header of a column ("From" ... "Size") of the list: the
// account showing is sorted by it and shown again.
void lvwEmail_ColumnClick(AppContext& ctx, const QString& column);
// The five columns back to the widths worked out at start-up: the Size
// column narrower than the others.
void RestoreColumnWidths(AppContext& ctx);
// Swaps two messages of an account, every field.
void ExchangeMessages(AppContext& ctx, int account, int i, int j);

} // namespace velmora
