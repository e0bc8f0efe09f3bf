#pragma once

#include "support/ScriptedPopServer.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

namespace velmora::demo {

// What the demo shows: two mailboxes of made-up mail for the scripted POP3
// server, the settings of two accounts on it and the rules that mark the one
// piece of spam and the one message to delete among them. Every message's date lies before `now`.
QList<ScriptedPopServer::Message> HomeMailbox(const QDateTime& now);
QList<ScriptedPopServer::Message> WorkMailbox(const QDateTime& now);

// The subjects of the one message marked as spam and the one marked for
// deletion.
QString SpamSubject();
QString DeleteSubject();

// The Rules file: "Prize mail" marks the spam, "Garden offers" marks the
// garden centre's mail for deletion; the Rule Report opens after a check
// that marked something.
QByteArray DemoRules();

// Writes the settings file under `configHome` and the Rules file under
// `dataHome` for accounts "Home" and "Work" on the given loopback ports.
// False, with the reason in `error`, when a file could not be written.
bool WriteDemoSettings(const QString& configHome, const QString& dataHome, quint16 homePort,
                       quint16 workPort, QString* error);

} // namespace velmora::demo
