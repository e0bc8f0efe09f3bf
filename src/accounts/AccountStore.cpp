#include "accounts/AccountStore.h"

#include "options/ClientChoice.h"
#include "options/Setting.h"
#include "platform/Files.h"
#include "platform/SettingsStore.h"

#include <limits>
#include <utility>

namespace velmora {

const QVector<AccountStore::Field>& AccountStore::fields() {
    using A = Account;
    using E = AccountEdit;
    static const QVector<Field> table = {
        {"AcntEnabled", "1", &A::AcntEnabled, nullptr, &E::EditEnabled, nullptr},
        {"AcntName", "New Account", nullptr, &A::AcntName, nullptr, &E::EditName},
        {"AcntServer", "", nullptr, &A::AcntServer, nullptr, &E::EditServer},
        {"AcntSecure", "0", &A::AcntSecure, nullptr, &E::EditSecure, nullptr},
        {"AcntPort", "110", nullptr, &A::AcntPort, nullptr, &E::EditPort},
        {"AcntLoginID", "", nullptr, &A::AcntLoginID, nullptr, &E::EditLoginID},
        {"AcntPassword", "", nullptr, &A::AcntPassword, nullptr, &E::EditPassword},
        {"AcntColour", "255", &A::AcntColour, nullptr, &E::EditColour, nullptr, true},
        {"AcntColourIndex", "5", &A::AcntColourIndex, nullptr, &E::EditColourIndex, nullptr, true},
        {"AcntClient", "", nullptr, &A::AcntClient, nullptr, &E::EditClient},
        {"AcntSound", "", nullptr, &A::AcntSound, nullptr, &E::EditSound},
        {"AcntSoundOn", "1", &A::AcntSoundOn, nullptr, &E::EditSoundOn, nullptr},
    };
    return table;
}

AccountStore::AccountStore() {
    ResizeAccounts(0);
}

void AccountStore::ResizeAccounts(int count) {
    rows.resize(count + 1);
    edits.resize(count + 1);
    for (auto& row : rows)
        row.AcntIncomplete = false;
}

void AccountStore::LoadAccount(SettingsStore& settings, int n) {
    Account& row = rows[n];
    const QString number = QString::number(n);
    for (const Field& f : fields()) {
        const QString key = f.key + number;
        if (f.acntText) {
            row.*f.acntText =
                setting::readText(settings, setting::SectionSettings, key, f.defaultText);
        } else if (f.wide) {
            row.*f.acntNumber =
                setting::readInt32(settings, setting::SectionSettings, key, f.defaultText.toInt());
        } else {
            row.*f.acntNumber =
                setting::readInt(settings, setting::SectionSettings, key, f.defaultText.toInt());
        }
    }
}

void AccountStore::SaveAccountFields(SettingsStore& settings, int n) const {
    const Account& row = rows[n];
    const QString number = QString::number(n);
    for (const Field& f : fields()) {
        const QString value = f.acntText ? row.*f.acntText : QString::number(row.*f.acntNumber);
        setting::saveText(settings, setting::SectionSettings, f.key + number, value);
    }
}

void AccountStore::BlankAccountRow() {
    Account& row = rows[0];
    row.AcntEnabled = 0;
    row.AcntName.clear();
    row.AcntServer.clear();
    row.AcntPort.clear();
    row.AcntLoginID.clear();
    row.AcntPassword.clear();
    row.AcntClient.clear();
    row.AcntSound.clear();
    row.AcntSecure = 0;
    row.AcntColour = 255;
    row.AcntColourIndex = 5;
    row.AcntSoundOn = 1;
}

void AccountStore::CopyAccountToEdit(int n) {
    const Account& row = rows[n];
    AccountEdit& edit = edits[n];
    for (const Field& f : fields()) {
        if (f.acntText)
            edit.*f.editText = row.*f.acntText;
        else
            edit.*f.editNumber = row.*f.acntNumber;
    }
}

void AccountStore::DeleteAccountFields(SettingsStore& settings, int n) const {
    const QString number = QString::number(n);
    for (const Field& f : fields())
        settings.DeleteSetting(setting::AppPath, setting::SectionSettings, f.key + number);
}

bool AccountStore::StoredAsShown(SettingsStore& settings, int n) const {
    const Account& row = rows[n];
    const QString number = QString::number(n);
    for (const Field& f : fields()) {
        const QString value = f.acntText ? row.*f.acntText : QString::number(row.*f.acntNumber);
        // A marker no field holds tells an absent key from a blank one.
        const QString absent(QChar(1));
        if (settings.GetSetting(setting::AppPath, setting::SectionSettings, f.key + number,
                                absent) != value)
            return false;
    }
    return true;
}

namespace {

// What travels with an account when it changes number.
template <typename Visit> void Travelling(Account& a, Account& b, Visit visit) {
    visit(a.AcntEnabled, b.AcntEnabled);
    visit(a.AcntName, b.AcntName);
    visit(a.AcntServer, b.AcntServer);
    visit(a.AcntSecure, b.AcntSecure);
    visit(a.AcntPort, b.AcntPort);
    visit(a.AcntLoginID, b.AcntLoginID);
    visit(a.AcntPassword, b.AcntPassword);
    visit(a.AcntColour, b.AcntColour);
    visit(a.AcntColourIndex, b.AcntColourIndex);
    visit(a.AcntClient, b.AcntClient);
    visit(a.AcntSound, b.AcntSound);
    visit(a.AcntSoundOn, b.AcntSoundOn);
    visit(a.AcntStatusText, b.AcntStatusText);
    visit(a.AcntLastCheckTime, b.AcntLastCheckTime);
    visit(a.AcntLastCheckText, b.AcntLastCheckText);
    visit(a.AcntNewCount, b.AcntNewCount);
    visit(a.AcntPrevCount, b.AcntPrevCount);
    visit(a.AcntSpamCount, b.AcntSpamCount);
    visit(a.AcntDeleteCount, b.AcntDeleteCount);
    visit(a.AcntConnected, b.AcntConnected);
    visit(a.AcntChecked, b.AcntChecked);
    visit(a.AcntHasMessages, b.AcntHasMessages);
    visit(a.AcntHasNew, b.AcntHasNew);
}

} // namespace

void AccountStore::CopyRow(int from, int to) {
    Travelling(rows[to], rows[from], [](auto& target, auto& source) { target = source; });
    rows[to].AcntMsgCount = rows[from].AcntMsgCount;
}

void AccountStore::SwapRows(int a, int b) {
    Travelling(rows[a], rows[b], [](auto& x, auto& y) { std::swap(x, y); });
}

void AccountStore::ResetRunTimeValues(int n, const QString& timeOfDay) {
    Account& row = rows[n];
    row.AcntMsgCount = row.AcntNewCount = row.AcntPrevCount = 0;
    row.AcntSpamCount = row.AcntDeleteCount = 0;
    row.AcntConnected = row.AcntChecked = row.AcntHasMessages = row.AcntHasNew = false;
    row.AcntLastCheckText = QStringLiteral("Not Checked");
    row.AcntStatusText = row.AcntName;
    row.AcntLastCheckTime = timeOfDay;
}

void AccountStore::CheckAccountFiles(Files& files, int n) {
    Account& row = rows[n];
    row.AcntClientValid = IsValidClient(files, row.AcntClient);
    row.AcntSoundValid = IsValidSound(files, row.AcntSound);
}

bool IsValidFile(Files& files, const QString& path, const QString& extension) {
    return path.right(4).toUpper() == extension.toUpper() && files.FileExists(path);
}

} // namespace velmora
