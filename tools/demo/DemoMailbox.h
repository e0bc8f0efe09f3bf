#pragma once

#include "support/ScriptedPopServer.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

namespace velmora::demo {

// What the demo shows: two mailboxes of made-up mail for the scripted POP3
// server, the settings of two accounts on it and a rule that marks the one
// piece of spam among them. Every message's date lies before `now`.
QList<ScriptedPopServer::Message> HomeMailbox(const QDateTime& now);
QList<ScriptedPopServer::Message> WorkMailbox(const QDateTime& now);

// The subject of the one message the demo rule marks as spam.
QString SpamSubject();

// Writes the settings file under `configHome` and the Rules file under
// `dataHome` for accounts "Home" and "Work" on the given loopback ports.
// False, with the reason in `error`, when a file could not be written.
bool WriteDemoSettings(const QString& configHome, const QString& dataHome, quint16 homePort,
                       quint16 workPort, QString* error);

} // namespace velmora::demo
