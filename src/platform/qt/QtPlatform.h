#pragma once

#include "options/Setting.h"
#include "platform/Services.h"
#include "platform/qt/GuardedTimer.h"
#include "platform/qt/IniProfileFiles.h"
#include "platform/qt/LocalFiles.h"
#include "platform/qt/QtEventPump.h"
#include "platform/qt/QtPopClient.h"
#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/SystemClock.h"
#include "platform/qt/XdgAutoStart.h"

namespace velmora {

// The parts of the platform both programs share; each adds its own boxes,
// window and the rest to the services.
struct QtPlatform {
    explicit QtPlatform(const QString& executableFolder)
        : files(LocalFiles::DataFolderBeside(executableFolder)) {
        files.TidyBeside(QtSettingsStore::FileName(setting::AppPath));
        files.TidyBeside(XdgAutoStart::EntryPath());
    }

    Services services() {
        Services s;
        s.settings = &settings;
        s.clock = &clock;
        s.timers = &timers;
        s.events = &pump;
        s.files = &files;
        s.pop = &pop;
        s.profiles = &profiles;
        return s;
    }

    QtSettingsStore settings;
    SystemClock clock;
    GuardedTimerFactory timers;
    QtEventPump pump;
    LocalFiles files;
    QtPopClientFactory pop;
    IniProfileFiles profiles;
};

} // namespace velmora
