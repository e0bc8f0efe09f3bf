#pragma once

#include "messages/MailMessage.h"

#include <QVector>

namespace velmora {

// The messages held in memory: by account number, then message number from 1
// to the account's AcntMsgCount. Message number 0 exists and stays unused.
// Cells above an account's count keep old texts; readers keep to the count.
class MessageStore {
public:
    MessageStore() { ResizeAccountStore(0, 0); }

    // Highest message number the store has room for; grows, never shrinks.
    int MessageCapacity = 0;

    MailMessage& at(int account, int message) { return cells[account][message]; }
    const MailMessage& at(int account, int message) const { return cells[account][message]; }

    // Room for `capacity` messages in every account, keeping what is held.
    void GrowMessageStore(int capacity);
    // Room for accounts 0..accounts and messages 0..messages, keeping what
    // is held; new cells are blank.
    void ResizeAccountStore(int accounts, int messages);
    int accountRows() const { return int(cells.size()); }

    // The spare row the sort and the deletion work through.
    QVector<MailMessage> spare;

private:
    QVector<QVector<MailMessage>> cells;
};

} // namespace velmora
