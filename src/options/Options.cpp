#include "options/Options.h"

#include "options/Setting.h"

#include <QHash>

namespace velmora {

namespace {

using O = Options;

const Options& defaults() {
    static const Options record;
    return record;
}

const QVector<Options::Key>& keyTable() {
    static const QVector<Options::Key> table = {
        {"RunStartUp", &O::RunStartUp},
        {"EmailCheckStartUp", &O::EmailCheckStartUp},
        {"StartUpDelay", &O::StartUpDelay},
        {"MinimizeStartUp", &O::MinimizeStartUp},
        {"UseInterval", &O::UseInterval},
        {"NoCheck", &O::NoCheck},
        {"NoCheckTimeBegin", nullptr, &O::NoCheckTimeBegin},
        {"NoCheckTimeEnd", nullptr, &O::NoCheckTimeEnd},
        {"ShowEmailMsgBox", &O::ShowEmailMsgBox},
        {"MsgBoxTime", &O::MsgBoxTime},
        {"ShowEmail", &O::ShowEmail},
        {"Hours", &O::Hours},
        {"Minutes", &O::Minutes},
        {"DefaultClient", nullptr, &O::DefaultClient},
        {"DefaultSound", nullptr, &O::DefaultSound},
        {"RunSize", &O::RunSize},
        {"PlaySound", &O::PlaySound},
        {"DTheme", &O::DTheme},
        {"TopColour", &O::TopColour, nullptr, true},
        {"MiddleColour", &O::MiddleColour, nullptr, true},
        {"BottomColour", &O::BottomColour, nullptr, true},
        {"ShowNewOnly", &O::ShowNewOnly},
        {"RestoreColWidth", &O::RestoreColWidth},
        {"ButtonStyle", &O::ButtonStyle},
        {"ApplyStyle", &O::ApplyStyle},
        {"FromToolTips", &O::FromToolTips},
        {"ToToolTips", &O::ToToolTips},
        {"SubjectToolTips", &O::SubjectToolTips},
        {"MessageSort", &O::MessageSort},
        {"SortColumn", &O::SortColumn},
        {"SortOrder", &O::SortOrder},
        {"CloseButton", &O::CloseButton},
        {"QuickCheck", &O::QuickCheck},
        {"DeleteConfirmation", &O::DeleteConfirmation},
        {"SuppressConnectErrors", &O::SuppressConnectErrors},
        {"SuppressRetrieveErrors", &O::SuppressRetrieveErrors},
        {"ConnectTimeOut", &O::ConnectTimeOut},
        {"MaxMessageSize", &O::MaxMessageSize},
        {"SortColumnLastUsed", nullptr, &O::SortColumnLastUsed},
        {"RulesIniFileName", nullptr, &O::RulesIniFileName},
    };
    return table;
}

} // namespace

const Options::Key& Options::key(const QString& name) {
    static const QHash<QString, const Key*> byName = [] {
        QHash<QString, const Key*> map;
        for (const Key& k : keyTable())
            map.insert(k.name, &k);
        return map;
    }();
    const Key* found = byName.value(name);
    Q_ASSERT_X(found, "Options::key", qPrintable(name));
    return *found;
}

const QStringList& Options::loadOrder() {
    static const QStringList order = {"RunStartUp",
                                      "EmailCheckStartUp",
                                      "StartUpDelay",
                                      "MinimizeStartUp",
                                      "UseInterval",
                                      "NoCheck",
                                      "NoCheckTimeBegin",
                                      "NoCheckTimeEnd",
                                      "ShowEmailMsgBox",
                                      "MsgBoxTime",
                                      "ShowEmail",
                                      "Hours",
                                      "Minutes",
                                      "DefaultClient",
                                      "DefaultSound",
                                      "RunSize",
                                      "PlaySound",
                                      "ShowNewOnly",
                                      "ButtonStyle",
                                      "ApplyStyle",
                                      "FromToolTips",
                                      "ToToolTips",
                                      "SubjectToolTips",
                                      "MessageSort",
                                      "SortColumn",
                                      "SortColumnLastUsed",
                                      "SortOrder",
                                      "CloseButton",
                                      "QuickCheck",
                                      "DeleteConfirmation",
                                      "SuppressConnectErrors",
                                      "SuppressRetrieveErrors",
                                      "ConnectTimeOut",
                                      "RulesIniFileName",
                                      "MaxMessageSize"};
    return order;
}

const QStringList& Options::saveOrder() {
    static const QStringList order = {"RunStartUp",
                                      "EmailCheckStartUp",
                                      "StartUpDelay",
                                      "MinimizeStartUp",
                                      "UseInterval",
                                      "NoCheck",
                                      "NoCheckTimeBegin",
                                      "NoCheckTimeEnd",
                                      "ShowEmailMsgBox",
                                      "MsgBoxTime",
                                      "ShowEmail",
                                      "Hours",
                                      "Minutes",
                                      "DefaultClient",
                                      "DefaultSound",
                                      "RunSize",
                                      "PlaySound",
                                      "DTheme",
                                      "TopColour",
                                      "MiddleColour",
                                      "BottomColour",
                                      "ShowNewOnly",
                                      "RestoreColWidth",
                                      "ButtonStyle",
                                      "ApplyStyle",
                                      "FromToolTips",
                                      "ToToolTips",
                                      "SubjectToolTips",
                                      "MessageSort",
                                      "SortColumn",
                                      "SortOrder",
                                      "CloseButton",
                                      "QuickCheck",
                                      "DeleteConfirmation",
                                      "SuppressConnectErrors",
                                      "SuppressRetrieveErrors",
                                      "ConnectTimeOut"};
    return order;
}

void Options::readKey(SettingsStore& settings, const QString& name) {
    const Key& k = key(name);
    if (k.text) {
        this->*k.text =
            setting::readText(settings, setting::SectionOptions, name, defaults().*k.text);
    } else if (k.wide) {
        this->*k.number =
            setting::readInt32(settings, setting::SectionOptions, name, defaults().*k.number);
    } else {
        this->*k.number =
            setting::readInt(settings, setting::SectionOptions, name, defaults().*k.number);
    }
}

void Options::writeKey(SettingsStore& settings, const QString& name) const {
    setting::saveText(settings, setting::SectionOptions, name, valueText(name));
}

QString Options::valueText(const QString& name) const {
    const Key& k = key(name);
    return k.text ? this->*k.text : QString::number(this->*k.number);
}

void Options::setValueText(const QString& name, const QString& value) {
    const Key& k = key(name);
    if (k.text)
        this->*k.text = value;
    else
        this->*k.number = value.toInt();
}

void Options::LoadOptions(SettingsStore& settings) {
    for (const QString& name : loadOrder()) {
        readKey(settings, name);
        if (name == QLatin1String("Minutes"))
            ComputeInterval();
    }
}

void Options::WriteOptions(SettingsStore& settings) const {
    for (const QString& name : saveOrder())
        writeKey(settings, name);
}

void Options::LoadMenuColours(SettingsStore& settings) {
    for (const char* name : {"DTheme", "TopColour", "MiddleColour", "BottomColour"})
        readKey(settings, QString::fromLatin1(name));
}

} // namespace velmora
