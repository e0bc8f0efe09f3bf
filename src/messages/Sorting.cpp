#include "messages/Sorting.h"

#include "app/AppContext.h"
#include "app/Pages.h"
#include "platform/MainView.h"

#include <QStringList>
#include <utility>

namespace velmora {

namespace {

const QStringList& Columns() {
    static const QStringList names = {"From", "To", "Subject", "Date", "Size"};
    return names;
}

// The text a column sorts by: upper case, and sizes zero-padded to six
// digits so that 9 comes before 10.
QString Key(const MailMessage& m, int column) {
    switch (column) {
    case 0:
        return m.From.toUpper();
    case 1:
        return m.To.toUpper();
    case 2:
        return m.Subject.toUpper();
    case 3:
        return m.Date.toUpper();
    default: {
        bool ok = false;
        const qlonglong size = m.Size.toLongLong(&ok);
        return ok && size >= 0 ? QStringLiteral("%1").arg(size, 6, 10, QChar('0')) : m.Size;
    }
    }
}

void SetHeaderPictures(AppContext& ctx, const QString& column) {
    for (const QString& name : Columns())
        ctx.view->setImage(Button("lvwEmail", name), "Blank");
    if (Columns().contains(column))
        ctx.view->setImage(Button("lvwEmail", column),
                           ctx.SortDescending != 0 ? "Descending" : "Ascending");
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

void ExchangeMessages(AppContext& ctx, int account, int i, int j) {
    std::swap(ctx.messages.at(account, i), ctx.messages.at(account, j));
}

// An exchange sort: each position in turn takes the smallest (or largest)
// of the rest, by swapping as it goes. Equal keys never swap, so the order
// of equal messages is the one this particular walk leaves, not a stable
// one; the keys are worked out once, but the walk is the same.
void SortMessages(AppContext& ctx, int account, const QString& column) {
    if (column.isEmpty())
        return;
    SetHeaderPictures(ctx, column);
    const int index = int(Columns().indexOf(column));
    if (index < 0)
        return;
    const int count = ctx.accounts[account].AcntMsgCount;
    QStringList keys;
    keys.reserve(count + 1);
    keys.append(QString());
    for (int n = 1; n <= count; ++n)
        keys.append(Key(ctx.messages.at(account, n), index));
    const bool descending = ctx.SortDescending != 0;
    for (int i = 1; i < count; ++i) {
        for (int j = i + 1; j <= count; ++j) {
            const int order = keys[j].compare(keys[i]);
            if (descending ? order > 0 : order < 0) {
                ExchangeMessages(ctx, account, i, j);
                keys.swapItemsAt(i, j);
            }
        }
    }
}

} // namespace velmora
