#include "messages/MessageStore.h"

namespace velmora {

void MessageStore::GrowMessageStore(int capacity) {
    ResizeAccountStore(int(cells.size()) - 1, capacity);
    spare = QVector<MailMessage>(capacity + 1);
}

void MessageStore::ResizeAccountStore(int accounts, int messages) {
    cells.resize(accounts + 1);
    for (auto& row : cells)
        row.resize(messages + 1);
}

} // namespace velmora
