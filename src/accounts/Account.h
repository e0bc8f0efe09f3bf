#pragma once

#include <QString>

namespace velmora {

// One row of the account list: the twelve persisted fields, in the order in
// which they are read and written, and the values kept only while running.
// A row made by resizing is empty; the defaults apply when it is read.
struct Account {
    int AcntEnabled = 0;
    QString AcntName;
    QString AcntServer;
    int AcntSecure = 0;
    QString AcntPort;
    QString AcntLoginID;
    QString AcntPassword;
    qint32 AcntColour = 0;
    qint32 AcntColourIndex = 0;
    QString AcntClient;
    QString AcntSound;
    int AcntSoundOn = 0;

    bool AcntConnected = false;
    bool AcntChecked = false;
    bool AcntHasMessages = false;
    bool AcntHasNew = false;
    bool AcntIncomplete = false;
    bool AcntSoundValid = false;
    bool AcntClientValid = false;
    QString AcntStatusText;
    QString AcntLastCheckTime;
    QString AcntLastCheckText;
    int AcntMsgCount = 0;
    int AcntNewCount = 0;
    int AcntPrevCount = 0;
    int AcntSpamCount = 0;
    int AcntDeleteCount = 0;
};

// The working copy of the persisted fields that the Accounts page edits.
struct AccountEdit {
    int EditEnabled = 0;
    QString EditName;
    QString EditServer;
    int EditSecure = 0;
    QString EditPort;
    QString EditLoginID;
    QString EditPassword;
    qint32 EditColour = 0;
    qint32 EditColourIndex = 0;
    QString EditClient;
    QString EditSound;
    int EditSoundOn = 0;
};

} // namespace velmora
