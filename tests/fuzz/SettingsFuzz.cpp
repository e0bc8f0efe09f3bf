// The settings file as the store reads it back: the file's text, every
// option and account key read through the logic's typed reads, and a value
// written into it, which must read back exactly.
#include "FuzzInput.h"
#include "accounts/AccountStore.h"
#include "checking/PopSession.h"
#include "options/Options.h"
#include "options/Setting.h"
#include "platform/Failure.h"
#include "platform/SettingsStore.h"
#include "platform/qt/SettingsText.h"

using namespace velmora;

namespace {

// The settings store over one file's text in memory.
class MemorySettings : public SettingsStore {
public:
    explicit MemorySettings(const QByteArray& bytes) : text(bytes) {}
    SettingsText text;

    static QString Path(const QString& section, const QString& key) {
        return QString(section).replace(QLatin1Char('\\'), QLatin1Char('/')) + QLatin1Char('/') +
               key;
    }
    QString GetSetting(const QString&, const QString& section, const QString& key,
                       const QString& defaultValue) override {
        return text.value(Path(section, key)).value_or(defaultValue);
    }
    void SaveSetting(const QString&, const QString& section, const QString& key,
                     const QString& value) override {
        text.setValue(Path(section, key), value);
    }
    void DeleteSetting(const QString&, const QString& section, const QString& key) override {
        text.remove(Path(section, key));
    }
};

// A key path of at least a group and a key, without line breaks.
QString KeyPath(QString text) {
    text.remove(QLatin1Char('\r')).remove(QLatin1Char('\n'));
    const qsizetype cut = text.indexOf(QLatin1Char('/'));
    if (cut <= 0 || cut == text.size() - 1)
        return QStringLiteral("Settings/") + (text.isEmpty() ? QStringLiteral("k") : text);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput in(data, size);
    const QString key = KeyPath(in.text('\n'));
    const QString value = in.text('\n');
    const QByteArray file = in.rest();
    const bool readable = SettingsText::Problem(file).isEmpty();

    MemorySettings store(file);
    Options options;
    options.LoadOptions(store);
    options.LoadMenuColours(store);
    AccountStore accounts;
    const int count = setting::readInt(store, setting::SectionSettings, "AcntNum", 0, 0, 3);
    accounts.ResizeAccounts(count);
    for (int n = 1; n <= count; ++n) {
        accounts.LoadAccount(store, n);
        try {
            PortNumber(accounts[n].AcntPort);
        } catch (const Failure&) {
        }
    }

    // Whatever the file held, a value written reads back as it was, from
    // the text and from the text read anew.
    store.text.setValue(key, value);
    FUZZ_CHECK(store.text.value(key) == value);
    const QByteArray written = store.text.bytes();
    FUZZ_CHECK(SettingsText(written).value(key) == value);
    FUZZ_CHECK(!readable || SettingsText::Problem(written).isEmpty());
    store.text.remove(key);
    FUZZ_CHECK(!store.text.value(key).has_value());
    return 0;
}
