#include "DemoMailbox.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSettings>

namespace velmora::demo {

namespace {

enum class Kind { Plain, Html, Attachment, Spam };

struct Letter {
    const char* from; // display name and address
    const char* subject;
    Kind kind;
    const char* text; // the body's first paragraph
};

// Newest first, as a mailbox fills: message n arrived n * 47 minutes ago.
const Letter kHome[] = {
    {"Ada Brennan <ada.brennan@example.org>", "Dinner on Saturday?", Kind::Plain,
     "Are you two free on Saturday? We thought of the new place by the river."},
    {"Riverside Library <news@library.example>", "Your reservations are ready", Kind::Html,
     "Three of the books you reserved are waiting for you at the front desk."},
    {"Tom Okafor <tom.okafor@example.net>", "Holiday photos", Kind::Attachment,
     "Here is the list of the photos I promised; the album link is in it."},
    {"Prize Department <winner@lucky-draw.example>", "Congratulations, you have won a free cruise",
     Kind::Spam, "You have been selected! Reply today with your bank details to claim your prize."},
    {"Mum <margaret.hale@example.com>", "Recipe for the apple cake", Kind::Plain,
     "You asked for it at Easter, so here it is at last, with my notes."},
    {"City Energy <billing@energy.example>", "Your November bill", Kind::Attachment,
     "Your bill for November is attached. The amount will be collected on the 3rd."},
    {"Jonas Weber <jonas.weber@example.de>", "=?UTF-8?Q?Gr=C3=BC=C3=9Fe_aus_M=C3=BCnchen?=",
     Kind::Plain, "Wir sind gut angekommen, das Wetter ist herrlich."},
    {"Hill Walkers <club@hillwalkers.example>", "Sunday walk: meeting point changed", Kind::Html,
     "We meet at the old station instead of the car park this Sunday."},
    {"Sara Lindqvist <sara.l@example.org>", "Re: Book club", Kind::Plain,
     "I am halfway through and cannot put it down. See you on Thursday."},
    {"Garden Centre <offers@garden.example>", "Bulbs for the spring", Kind::Html,
     "Now is the time to plant tulips and daffodils for a bright spring."},
    {"Dr. Patel's Surgery <appointments@surgery.example>", "Appointment reminder", Kind::Plain,
     "This is a reminder of your appointment on Tuesday at 10:20."},
    {"Ada Brennan <ada.brennan@example.org>", "Re: Dinner on Saturday?", Kind::Plain,
     "Seven o'clock then. I have booked a table for four."},
    {"Ferry Line <tickets@ferry.example>", "Your tickets", Kind::Attachment,
     "Thank you for booking with us. Your tickets are attached."},
    {"Neighbourhood Watch <info@watch.example>", "Street party planning", Kind::Plain,
     "We would like to hold a street party in June. Who can help?"},
    {"Tom Okafor <tom.okafor@example.net>", "Re: Holiday photos", Kind::Plain,
     "The one with the goat is my favourite."},
    {"Online Shop <orders@shop.example>", "Your order has been dispatched", Kind::Html,
     "Your order 40-2291 is on its way and should arrive on Friday."},
    {"Choir <secretary@choir.example>", "Rehearsal schedule", Kind::Attachment,
     "The rehearsal schedule for the winter concert is attached."},
    {"Sara Lindqvist <sara.l@example.org>", "Lunch next week", Kind::Plain,
     "Could we move lunch to Wednesday? Thursday has filled up."},
    {"Bank <service@bank.example>", "Your statement is available", Kind::Html,
     "Your monthly statement is now available in online banking."},
    {"Jonas Weber <jonas.weber@example.de>", "Zugverbindung", Kind::Plain,
     "Der Zug kommt um 14:05 an, Gleis 7."},
    {"Mum <margaret.hale@example.com>", "Birthday list", Kind::Attachment,
     "Here is the birthday list for next year, so nobody is forgotten."},
    {"Hill Walkers <club@hillwalkers.example>", "Photos from the ridge walk", Kind::Html,
     "Thank you to everyone who came along. The photos are on the club page."},
};

const Letter kWork[] = {
    {"Priya Raman <priya.raman@example.com>", "Agenda for Monday", Kind::Plain,
     "Please add your points to the agenda by Friday noon."},
    {"Build Server <ci@build.example>", "Nightly build passed", Kind::Html,
     "All 1,204 tests passed on the nightly build."},
    {"Marco Rossi <marco.rossi@example.it>", "Budget draft", Kind::Attachment,
     "The budget draft for next quarter is attached. Comments welcome."},
    {"Priya Raman <priya.raman@example.com>", "Re: Agenda for Monday", Kind::Plain,
     "Thanks, I have added the office move as the first point."},
    {"HR Team <hr@example.com>", "Holiday requests for December", Kind::Html,
     "Please send your holiday requests for December by the 1st."},
    {"Lena Fischer <lena.fischer@example.com>", "Minutes of the review", Kind::Attachment,
     "The minutes of yesterday's review are attached."},
    {"Marco Rossi <marco.rossi@example.it>", "Coffee?", Kind::Plain,
     "Coffee at three in the kitchen?"},
    {"Facilities <facilities@example.com>", "Fire drill on Wednesday", Kind::Plain,
     "There will be a fire drill on Wednesday at 11:00."},
};

const char* const kFiller =
    "This message was made up for Velmora's demonstration. Nothing in it is "
    "real, and the server it came from runs on this computer only while the "
    "demonstration does.";

QByteArray Crlf(QByteArray text) {
    text.replace("\r\n", "\n");
    return text.replace("\n", "\r\n");
}

QByteArray DateHeader(const QDateTime& when) {
    return QLocale::c().toString(when.toUTC(), "ddd, dd MMM yyyy hh:mm:ss").toLatin1() + " +0000";
}

// A text file to attach, base64 in lines of 76.
QByteArray AttachmentPart(const QByteArray& boundary, int n) {
    QByteArray content;
    for (int row = 1; row <= 40; ++row)
        content += QByteArray("item ") + QByteArray::number(row) + ";" +
                   QByteArray::number(row * 17 + n) + ";demonstration\n";
    const QByteArray encoded = content.toBase64();
    QByteArray part = "--" + boundary + "\n" + "Content-Type: text/csv; name=\"list-" +
                      QByteArray::number(n) +
                      ".csv\"\nContent-Transfer-Encoding: base64\n"
                      "Content-Disposition: attachment; filename=\"list-" +
                      QByteArray::number(n) + ".csv\"\n\n";
    for (qsizetype at = 0; at < encoded.size(); at += 76)
        part += encoded.mid(at, 76) + "\n";
    return part;
}

QByteArray Compose(const Letter& letter, const char* to, const QByteArray& id,
                   const QDateTime& when, int n) {
    QByteArray head = QByteArray("From: ") + letter.from + "\nTo: " + to +
                      "\nSubject: " + letter.subject + "\nDate: " + DateHeader(when) +
                      "\nMessage-ID: <" + id + "@demo.velmora.example>\nMIME-Version: 1.0\n";
    const QByteArray text = QByteArray(letter.text) + "\n\n" + kFiller + "\n";
    const QByteArray boundary = "=_velmora_demo_" + id;
    switch (letter.kind) {
    case Kind::Plain:
    case Kind::Spam:
        return Crlf(head + "Content-Type: text/plain; charset=utf-8\n\n" + text);
    case Kind::Html:
        return Crlf(head + "Content-Type: multipart/alternative; boundary=\"" + boundary +
                    "\"\n\n--" + boundary + "\nContent-Type: text/plain; charset=utf-8\n\n" + text +
                    "\n--" + boundary +
                    "\nContent-Type: text/html; charset=utf-8\n\n<html><body><h2>" +
                    letter.subject + "</h2><p>" + letter.text + "</p><p><i>" + kFiller +
                    "</i></p></body></html>\n\n--" + boundary + "--\n");
    case Kind::Attachment:
        return Crlf(head + "Content-Type: multipart/mixed; boundary=\"" + boundary + "\"\n\n--" +
                    boundary + "\nContent-Type: text/plain; charset=utf-8\n\n" + text + "\n" +
                    AttachmentPart(boundary, n) + "--" + boundary + "--\n");
    }
    return {};
}

template <size_t N>
QList<ScriptedPopServer::Message> Mailbox(const Letter (&letters)[N], const char* name,
                                          const char* to, const QDateTime& now) {
    QList<ScriptedPopServer::Message> box;
    // Oldest first on the server, as mail arrives.
    for (int n = int(N); n >= 1; --n) {
        const QByteArray id = QByteArray(name) + "-" + QByteArray::number(n);
        box.append({Compose(letters[n - 1], to, id, now.addSecs(-47 * 60 * n), n), id});
    }
    return box;
}

} // namespace

QList<ScriptedPopServer::Message> HomeMailbox(const QDateTime& now) {
    return Mailbox(kHome, "home", "You <you@home.example>", now);
}

QList<ScriptedPopServer::Message> WorkMailbox(const QDateTime& now) {
    return Mailbox(kWork, "work", "You <you@work.example>", now);
}

QString SpamSubject() {
    return QStringLiteral("Congratulations, you have won a free cruise");
}

QByteArray DemoRules() {
    return "[Rules]\r\nRuleCount=2\r\nShow=1\r\nShowNew=0\r\nTime=30\r\n"
           "[Rule1]\r\nName=Prize mail\r\nEnabled=1\r\nAccount=All Accounts\r\n"
           "Action=2\r\nDescCount=1\r\nDescription1=Subject Contains you have won \r\n"
           "[Rule2]\r\nName=Garden offers\r\nEnabled=1\r\nAccount=Home\r\n"
           "Action=1\r\nDescCount=1\r\nDescription1=From Contains offers@garden.example \r\n";
}

QString DeleteSubject() {
    return QStringLiteral("Bulbs for the spring");
}

bool WriteDemoSettings(const QString& configHome, const QString& dataHome, quint16 homePort,
                       quint16 workPort, QString* error) {
    const QString conf = configHome + QStringLiteral("/Kestrum/Velmora.conf");
    const QString rulesFolder = dataHome + QStringLiteral("/Kestrum/Velmora");
    if (!QDir().mkpath(configHome + QStringLiteral("/Kestrum")) || !QDir().mkpath(rulesFolder)) {
        *error = QStringLiteral("cannot make the folders under %1").arg(configHome);
        return false;
    }
    {
        QSettings file(conf, QSettings::IniFormat);
        file.clear();
        // Seen the welcome already; no logon entry; a check three seconds
        // after the start, then every five minutes.
        file.setValue("Settings/FirstUse", "1");
        file.setValue("Settings/AcntNum", "2");
        const struct {
            const char* name;
            quint16 port;
            const char* colour;
        } accounts[] = {{"Home", homePort, "255"}, {"Work", workPort, "16711680"}};
        for (int n = 1; n <= 2; ++n) {
            const auto key = [n](const char* field) {
                return QStringLiteral("Settings/") + field + QString::number(n);
            };
            file.setValue(key("AcntName"), accounts[n - 1].name);
            file.setValue(key("AcntEnabled"), "1");
            file.setValue(key("AcntServer"), "127.0.0.1");
            file.setValue(key("AcntPort"), QString::number(accounts[n - 1].port));
            file.setValue(key("AcntLoginID"), "user");
            file.setValue(key("AcntPassword"), "secret");
            file.setValue(key("AcntColour"), accounts[n - 1].colour);
        }
        const std::pair<const char*, const char*> options[] = {
            {"RunStartUp", "0"},      {"EmailCheckStartUp", "1"},
            {"StartUpDelay", "3"},    {"UseInterval", "1"},
            {"Hours", "0"},           {"Minutes", "5"},
            {"ShowEmailMsgBox", "1"}, {"MsgBoxTime", "8"},
            {"PlaySound", "1"},       {"ConnectTimeOut", "5"}};
        for (const auto& [key, value] : options)
            file.setValue(QStringLiteral("Settings/Options/") + key, value);
        file.sync();
        if (file.status() != QSettings::NoError) {
            *error = QStringLiteral("cannot write %1").arg(conf);
            return false;
        }
    }
    QFile rules(rulesFolder + QStringLiteral("/Rules.ini"));
    const QByteArray text = DemoRules();
    if (!rules.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        rules.write(text) != text.size() || !rules.flush()) {
        *error = QStringLiteral("cannot write %1: %2").arg(rules.fileName(), rules.errorString());
        return false;
    }
    return true;
}

} // namespace velmora::demo
