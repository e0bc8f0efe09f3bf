#include "platform/Headless.h"

namespace velmora {

QString ScriptedDialogs::file(const QString& kind, const QString& title, const QString& filter,
                              const QString& initialPath) {
    QString answer = fileAnswers.isEmpty() ? QString() : fileAnswers.takeFirst();
    if (answer == QLatin1String("cancel"))
        answer.clear();
    requests.append({kind, title, filter, initialPath, answer});
    return answer;
}

QString ScriptedDialogs::OpenFile(const QString& title, const QString& filter,
                                  const QString& initialPath) {
    return file(QStringLiteral("open"), title, filter, initialPath);
}

QString ScriptedDialogs::SaveFile(const QString& title, const QString& filter,
                                  const QString& initialPath) {
    return file(QStringLiteral("save"), title, filter, initialPath);
}

bool ScriptedDialogs::PickColour(quint32& colour) {
    const QString answer = colourAnswers.isEmpty() ? QString() : colourAnswers.takeFirst();
    bool ok = false;
    const quint32 value = answer.toUInt(&ok, 0);
    requests.append({QStringLiteral("colour"), QString(), QString(), QString::number(colour),
                     ok ? QString::number(value) : QString()});
    if (ok)
        colour = value & 0x00FFFFFFu;
    return ok;
}

void Headless::fillBlanks(Services& s) {
    if (!s.boxes)
        s.boxes = &boxes;
    if (!s.sound)
        s.sound = &sounds;
    if (!s.shell)
        s.shell = &shell;
    if (!s.help)
        s.help = &help;
    if (!s.printer)
        s.printer = &printer;
    if (!s.dialogs)
        s.dialogs = &dialogs;
    if (!s.colours)
        s.colours = &dialogs;
    if (!s.notifier)
        s.notifier = &notifier;
    if (!s.autoStart)
        s.autoStart = &autoStart;
    if (!s.instance)
        s.instance = &instance;
    if (!s.windows)
        s.windows = &windows;
    if (!s.timers)
        s.timers = &timers;
}

} // namespace velmora
