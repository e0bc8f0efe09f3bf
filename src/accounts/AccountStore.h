#pragma once

#include "accounts/Account.h"

#include <QVector>

namespace velmora {

class Files;
class SettingsStore;

// The numbered account list, 1 to AcntNum, with row 0 as the placeholder
// shown when no account exists. The position is the identity.
class AccountStore {
public:
    // A persisted field: its key stem, its default, where it lives in a row
    // and in the working copy.
    struct Field {
        QString key;
        QString defaultText;
        int Account::*acntNumber = nullptr;
        QString Account::*acntText = nullptr;
        int AccountEdit::*editNumber = nullptr;
        QString AccountEdit::*editText = nullptr;
        bool wide = false; // a 32-bit number rather than a 16-bit one
    };
    static const QVector<Field>& fields();

    AccountStore();

    int AcntNum = 0;
    int AcntCurrent = 0;

    // The Accounts page: its controls differ from the record; a tab
    // change, add or delete is under way (the strip's clicks are the
    // program's own); the controls are being filled.
    bool AcntDirty = false;
    bool AcntBusy = false;
    bool AcntPageLoading = false;

    Account& operator[](int n) { return rows[n]; }
    const Account& operator[](int n) const { return rows[n]; }
    AccountEdit& edit(int n) { return edits[n]; }

    // Sizes rows and working copy to 0..count, keeping what fits.
    // AcntIncomplete starts afresh for every row.
    void ResizeAccounts(int count);
    void LoadAccount(SettingsStore& settings, int n);
    void SaveAccountFields(SettingsStore& settings, int n) const;
    void BlankAccountRow();
    void CopyAccountToEdit(int n);
    // Removes the twelve keys of number n.
    void DeleteAccountFields(SettingsStore& settings, int n) const;
    // Whether the tree holds the twelve fields of n as the row has them:
    // a write the store could not make leaves the old values.
    bool StoredAsShown(SettingsStore& settings, int n) const;

    // Row `from` over row `to`, and two rows exchanged: the persisted
    // fields and the run-time values that travel with an account. Whether
    // client and sound are valid stays with the number.
    void CopyRow(int from, int to);
    void SwapRows(int a, int b);

    // Counters, flags and texts of a freshly loaded account.
    void ResetRunTimeValues(int n, const QString& timeOfDay);
    // Whether the client and sound paths name existing files of their kind.
    void CheckAccountFiles(Files& files, int n);

private:
    QVector<Account> rows;
    QVector<AccountEdit> edits;
};

// A path names an existing file whose last four characters are the given
// extension, case ignored (".wav").
bool IsValidFile(Files& files, const QString& path, const QString& extension);

} // namespace velmora
