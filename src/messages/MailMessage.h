#pragma once

#include <QString>

namespace velmora {

// One cell of the message store. Date and Size are display texts; Size is
// whole kilobytes of 1000 bytes.
struct MailMessage {
    QString From;
    QString To;
    QString Subject;
    QString Date;
    QString Size;
    QString Body;
    QString MsgID;
    QString PrevMsgID;
    QString Raw;
    bool New = false;
    bool Delete = false;
    bool Spam = false;
    bool Attach = false;
};

} // namespace velmora
