#pragma once

#include <QString>

namespace velmora {

// The message list's state: which account and message it shows, its
// picture counters and its sort.
struct ListState {
    int AcntLastShown = 0;
    int SelectedMessage = 0;
    // Whether the last pointer event on the list met a row, and the row
    // under the pointer (0 for none).
    bool ItemUnderPointer = false;
    int HoverMessage = 0;
    // The row and column zone of the last pointer move that was handled,
    // so that moving within one cell leaves its tip alone; -1 for none.
    int TipRow = 0;
    int TipZone = -1;
    int ListAttachCount = 0;
    int ListDeleteAttachCount = 0;
    int ListNewAttachCount = 0;

    // The width the columns get by default, worked out at start-up from
    // the list's width; a later resize of the window leaves it.
    int DefaultColumnWidth = 0;

    QString SortColumnName;
    QString LastClickedColumn;
    int SortDescending = 0;
};

} // namespace velmora
