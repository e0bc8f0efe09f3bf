#include "messages/Sorting.h"

#include "app/AppContext.h"
#include "app/Pages.h"
#include "platform/MainView.h"

#include <QStringList>

namespace velmora {

namespace {

const QStringList& Columns() {
    static const QStringList names = {"From", "To", "Subject", "Date", "Size"};
    return names;
}

} // namespace

void SortColumnFromOption(AppContext& ctx, int option) {
    if (option == 0)
        ctx.SortColumnName = ctx.options.SortColumnLastUsed;
    else if (option >= 1 && option <= 5)
        ctx.SortColumnName = Columns()[option - 1];
}

void SetUpSortState(AppContext& ctx) {
    ctx.SortDescending = ctx.options.SortOrder;
    SortColumnFromOption(ctx, ctx.options.SortColumn);
    ctx.LastClickedColumn = ctx.SortColumnName;
    // A last-used column that names no column gets no picture.
    if (ctx.options.MessageSort == 1 && Columns().contains(ctx.SortColumnName))
        ctx.view->setImage(Button("lvwEmail", ctx.SortColumnName),
                           ctx.SortDescending != 0 ? "Descending" : "Ascending");
}

} // namespace velmora
