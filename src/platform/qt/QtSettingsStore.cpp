#include "platform/qt/QtSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace velmora {

namespace {

QString GroupOf(const QString& section) {
    return QString(section).replace('\\', '/');
}

std::unique_ptr<QSettings> Make(const QString& appPath) {
    const qsizetype cut = appPath.indexOf('\\');
    const QString organisation = cut < 0 ? appPath : appPath.left(cut);
    const QString application = cut < 0 ? QString() : appPath.mid(cut + 1);
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, organisation,
                                       application);
}

constexpr QFile::Permissions OwnerOnly = QFile::ReadOwner | QFile::WriteOwner;

} // namespace

QSettings& QtSettingsStore::open(const QString& appPath) {
    auto& slot = files[appPath];
    if (!slot && !fixedFile.isEmpty())
        slot = std::make_unique<QSettings>(fixedFile, QSettings::IniFormat);
    if (!slot)
        slot = Make(appPath);
    return *slot;
}

QString QtSettingsStore::FileName(const QString& appPath) {
    return Make(appPath)->fileName();
}

QString QtSettingsStore::GetSetting(const QString& appPath, const QString& section,
                                    const QString& key, const QString& defaultValue) {
    QSettings& s = open(appPath);
    const QVariant value = s.value(GroupOf(section) + '/' + key);
    if (!value.isValid())
        return defaultValue;
    // An unquoted value with commas, as a hand edit may leave it, reads as a
    // list.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(',');
    return value.toString();
}

void QtSettingsStore::SaveSetting(const QString& appPath, const QString& section,
                                  const QString& key, const QString& value) {
    QSettings& s = open(appPath);
    s.setValue(GroupOf(section) + '/' + key, value);
    commit(s);
}

void QtSettingsStore::DeleteSetting(const QString& appPath, const QString& section,
                                    const QString& key) {
    QSettings& s = open(appPath);
    s.remove(GroupOf(section) + '/' + key);
    commit(s);
}

// Written through at once, so that a crash loses nothing. The file is made
// owner-only before the first write, and the replacement keeps that mode.
void QtSettingsStore::commit(QSettings& settings) {
    const QString path = settings.fileName();
    if (!QFileInfo::exists(path)) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.setPermissions(OwnerOnly);
    }
    settings.sync();
    QFile::setPermissions(path, OwnerOnly);
}

} // namespace velmora
