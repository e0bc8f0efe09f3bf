#include "platform/Services.h"

namespace velmora {

const char* Services::missing() const {
    const std::pair<const void*, const char*> members[] = {
        {settings, "settings"}, {boxes, "boxes"},       {clock, "clock"},
        {timers, "timers"},     {events, "events"},     {autoStart, "autoStart"},
        {files, "files"},       {instance, "instance"}, {pop, "pop"},
        {sound, "sound"},       {shell, "shell"},       {help, "help"},
        {dialogs, "dialogs"},   {colours, "colours"},   {printer, "printer"},
        {profiles, "profiles"}, {windows, "windows"},   {notifier, "notifier"},
    };
    for (const auto& [member, name] : members) {
        if (!member)
            return name;
    }
    return "";
}

} // namespace velmora
