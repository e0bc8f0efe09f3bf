#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace velmora {

class SettingsStore;

// The options record: every key of section "Settings\Options" with its
// default. Check box values are 1 and 0. The Options page edits a second
// Options value as its working copy.
struct Options {
    int RunStartUp = 1;
    int EmailCheckStartUp = 0;
    int StartUpDelay = 0;
    int MinimizeStartUp = 0;
    int UseInterval = 0;
    int NoCheck = 0;
    QString NoCheckTimeBegin = QStringLiteral("00:00");
    QString NoCheckTimeEnd = QStringLiteral("00:00");
    int ShowEmailMsgBox = 0;
    int MsgBoxTime = 0;
    int ShowEmail = 0;
    int Hours = 0;
    int Minutes = 30;
    QString DefaultClient;
    QString DefaultSound;
    int RunSize = 3;
    int PlaySound = 1;
    int DTheme = 5;
    qint32 TopColour = 10072511;
    qint32 MiddleColour = 15724527;
    qint32 BottomColour = 5733521;
    int ShowNewOnly = 0;
    int RestoreColWidth = 1;
    int ButtonStyle = 0;
    int ApplyStyle = 0;
    int FromToolTips = 1;
    int ToToolTips = 1;
    int SubjectToolTips = 1;
    int MessageSort = 1;
    int SortColumn = 4;
    int SortOrder = 1;
    int CloseButton = 1;
    int QuickCheck = 1;
    int DeleteConfirmation = 1;
    int SuppressConnectErrors = 0;
    int SuppressRetrieveErrors = 0;
    int ConnectTimeOut = 10;
    // The largest message a check takes in, in MB of a million bytes.
    int MaxMessageSize = 100;

    // Keys of the same section that the Options page does not own.
    QString SortColumnLastUsed = QStringLiteral("4");
    QString RulesIniFileName = QStringLiteral("Rules.ini");

    // Hours * 60 + Minutes, worked out at load and at each save.
    int IntervalMinutes = 30;

    // A key of the record: its name, where the value lives, and whether it
    // is a 32-bit colour.
    struct Key {
        QString name;
        int Options::*number = nullptr;
        QString Options::*text = nullptr;
        bool wide = false;
    };
    static const Key& key(const QString& name);
    // The keys in the order the start-up reads them, and in the order a save
    // writes them. They differ on purpose.
    static const QStringList& loadOrder();
    static const QStringList& saveOrder();

    void readKey(SettingsStore& settings, const QString& name);
    void writeKey(SettingsStore& settings, const QString& name) const;
    QString valueText(const QString& name) const;
    void setValueText(const QString& name, const QString& value);

    // The start-up read of the record, in its order.
    void LoadOptions(SettingsStore& settings);
    // Writes every key of the page's table in the save order.
    void WriteOptions(SettingsStore& settings) const;
    // The menu colour keys, read by the menu style load.
    void LoadMenuColours(SettingsStore& settings);

    void ComputeInterval() { IntervalMinutes = Hours * 60 + Minutes; }
};

} // namespace velmora
