#pragma once

#include <QLocale>

namespace velmora {

class AutoStart;
class ColourDialog;
class DesktopNotifier;
class Clock;
class EventPump;
class FileDialogs;
class HelpViewer;
class Files;
class InstanceGuard;
class MessageBoxes;
class PopClientFactory;
class Printer;
class ProfileFiles;
class SettingsStore;
class Shell;
class SoundPlayer;
class TimerFactory;
class WindowFactory;

// The platform as the logic reaches it. The composition roots fill this with
// the real implementations; tests fill it with recording fakes, and
// Headless fills what a program has no real one for. None is ever null: the
// context refuses a set with a gap.
struct Services {
    SettingsStore* settings = nullptr;
    MessageBoxes* boxes = nullptr;
    Clock* clock = nullptr;
    TimerFactory* timers = nullptr;
    EventPump* events = nullptr;
    AutoStart* autoStart = nullptr;
    Files* files = nullptr;
    InstanceGuard* instance = nullptr;
    PopClientFactory* pop = nullptr;
    SoundPlayer* sound = nullptr;
    Shell* shell = nullptr;
    HelpViewer* help = nullptr;
    FileDialogs* dialogs = nullptr;
    ColourDialog* colours = nullptr;
    Printer* printer = nullptr;
    ProfileFiles* profiles = nullptr;
    WindowFactory* windows = nullptr;
    DesktopNotifier* notifier = nullptr;
    // Month names and the general date form follow it.
    QLocale locale = QLocale::system();

    // The name of the first member still null; blank when none is.
    const char* missing() const;
};

} // namespace velmora
