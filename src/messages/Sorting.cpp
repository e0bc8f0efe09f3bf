#include "messages/Sorting.h"

#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

#include <QStringList>
#include <algorithm>
#include <utility>
#include <vector>

namespace velmora {

namespace {

const QStringList& Columns() {
    return ListColumns();
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
        ctx.view->setImage(Button(ctl::lvwEmail, name), "Blank");
    if (Columns().contains(column))
        ctx.view->setImage(Button(ctl::lvwEmail, column),
                           ctx.list.SortDescending != 0 ? "Descending" : "Ascending");
}

} // namespace

void SortColumnFromOption(AppContext& ctx, int option) {
    if (option == 0)
        ctx.list.SortColumnName = ctx.options.SortColumnLastUsed;
    else if (option >= 1 && option <= 5)
        ctx.list.SortColumnName = Columns()[option - 1];
}

void SetUpSortState(AppContext& ctx) {
    ctx.list.SortDescending = ctx.options.SortOrder;
    SortColumnFromOption(ctx, ctx.options.SortColumn);
    ctx.list.LastClickedColumn = ctx.list.SortColumnName;
    // A last-used column that names no column gets no picture.
    if (ctx.options.MessageSort == 1 && Columns().contains(ctx.list.SortColumnName))
        ctx.view->setImage(Button(ctl::lvwEmail, ctx.list.SortColumnName),
                           ctx.list.SortDescending != 0 ? "Descending" : "Ascending");
}

void ExchangeMessages(AppContext& ctx, int account, int i, int j) {
    std::swap(ctx.messages.at(account, i), ctx.messages.at(account, j));
}

// An exchange sort: each position in turn takes the smallest (or largest)
// of the rest, by swapping as it goes. Equal keys never swap, so the order
// of equal messages is the one this particular walk leaves, not a stable
// one.
void SortMessages(AppContext& ctx, int account, const QString& column) {
    if (column.isEmpty())
        return;
    SetHeaderPictures(ctx, column);
    const int index = int(Columns().indexOf(column));
    if (index < 0)
        return;
    const int count = ctx.accounts[account].AcntMsgCount;
    // The walk compares ranks of the keys, which order as the keys do, and
    // moves positions; the messages move once, at the end.
    std::vector<int> order(size_t(count) + 1);
    std::vector<std::pair<QString, int>> keys;
    keys.reserve(size_t(count));
    for (int n = 1; n <= count; ++n) {
        keys.emplace_back(Key(ctx.messages.at(account, n), index), n);
        order[size_t(n)] = n;
    }
    std::sort(keys.begin(), keys.end());
    std::vector<int> rank(size_t(count) + 1);
    for (size_t k = 0; k < keys.size(); ++k)
        rank[size_t(keys[k].second)] =
            k > 0 && keys[k].first == keys[k - 1].first ? rank[size_t(keys[k - 1].second)] : int(k);
    const bool descending = ctx.list.SortDescending != 0;
    // With no two keys equal the walk can only end in sorted order; only
    // ties make its path matter.
    const bool ties =
        std::adjacent_find(keys.begin(), keys.end(), [](const auto& a, const auto& b) {
            return a.first == b.first;
        }) != keys.end();
    for (int n = 1; !ties && n <= count; ++n)
        order[size_t(n)] = keys[size_t(descending ? count - n : n - 1)].second;
    for (int i = 1; ties && i < count; ++i) {
        for (int j = i + 1; j <= count; ++j) {
            const int a = rank[size_t(j)];
            const int b = rank[size_t(i)];
            if (descending ? a > b : a < b) {
                std::swap(rank[size_t(i)], rank[size_t(j)]);
                std::swap(order[size_t(i)], order[size_t(j)]);
            }
        }
    }
    // Position n takes the message that stood at order[n], one exchange
    // per message put in its place.
    std::vector<int> at(size_t(count) + 1);    // the message now at a position
    std::vector<int> where(size_t(count) + 1); // the position a message is at
    for (int n = 1; n <= count; ++n)
        at[size_t(n)] = where[size_t(n)] = n;
    for (int n = 1; n <= count; ++n) {
        const int wanted = order[size_t(n)];
        const int from = where[size_t(wanted)];
        if (from == n)
            continue;
        ExchangeMessages(ctx, account, n, from);
        const int displaced = at[size_t(n)];
        at[size_t(from)] = displaced;
        where[size_t(displaced)] = from;
        at[size_t(n)] = wanted;
        where[size_t(wanted)] = n;
    }
}

void lvwEmail_ColumnClick(AppContext& ctx, const QString& column) {
    const int account = ctx.accounts.AcntCurrent;
    if (account < 1 || account > ctx.accounts.AcntNum || ctx.accounts[account].AcntMsgCount == 0 ||
        ctx.options.MessageSort == 0)
        return;
    ctx.options.SortColumnLastUsed = column;
    ctx.list.SortColumnName = column;
    // Only a second click on the same column turns the order round; a new
    // column keeps the order in force.
    if (ctx.list.LastClickedColumn == ctx.list.SortColumnName)
        ctx.list.SortDescending = ctx.list.SortDescending == 0 ? 1 : 0;
    ctx.list.LastClickedColumn = ctx.list.SortColumnName;
    SortMessages(ctx, account, ctx.list.SortColumnName);
    ShowAccountMessages(ctx, account);
}

void RestoreColumnWidths(AppContext& ctx) {
    const int w = ctx.list.DefaultColumnWidth;
    MessageListView& list = ctx.view->list();
    for (int column = 1; column <= 4; ++column)
        list.setColumnWidth(column, w);
    list.setColumnWidth(5, qRound(w / 2.15));
}

} // namespace velmora
