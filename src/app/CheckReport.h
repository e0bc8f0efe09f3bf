#pragma once

#include "platform/RecordedBoxes.h"

#include <QStringList>

class QTextStream;

namespace velmora {

struct AppContext;

// What one pass of a check left, for the command line: a single JSON line
// with the program's own names, or a summary for people.
struct PassExtras {
    bool autoWalk = false;
    QString autoCheckMessage; // the headline; null when none would show
    QStringList sounds;
    bool ruleReport = false;
    // The tray's ticks after the last pass, with the window minimised.
    struct TrayTick {
        QList<int> picture; // image numbers, bottom first
        QString tip;
    };
    QList<TrayTick> tray;
};

QString PassJson(const AppContext& ctx, int pass, const QList<RecordedBoxes::Box>& dialogs,
                 const PassExtras& extras);
// The same line and its line end, written to `stream` as it is built.
void WritePassJson(QTextStream& stream, const AppContext& ctx, int pass,
                   const QList<RecordedBoxes::Box>& dialogs, const PassExtras& extras);
QString PassSummary(const AppContext& ctx, int pass, const QList<RecordedBoxes::Box>& dialogs,
                    const PassExtras& extras);
// {"dialogs":[...]} for the connection test.
QString DialogsJson(const QList<RecordedBoxes::Box>& dialogs);
QString DialogsSummary(const QList<RecordedBoxes::Box>& dialogs);

// The words the reports use for a box's icon, buttons and answer.
QString IconName(BoxIcon icon);
QString ButtonsName(BoxButtons buttons);
QString AnswerName(BoxAnswer answer);

} // namespace velmora
