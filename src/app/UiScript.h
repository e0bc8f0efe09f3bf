#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

class QTextStream;

namespace velmora {

struct AppContext;
struct Headless;
class MainViewEvents;
class StateView;

// Runs a script of user actions, one a line, against the real logic in a
// window without a screen, and reports what the program showed and asked
// for as one JSON object (and with `trace` one line per action before it).
// The verbs:
//   click CONTROL            a button, toolbar key, menu entry, column header,
//                            the tray picture or a tab strip's current tab
//   set CONTROL TEXT         type into a text box (the rest of the line)
//   check CONTROL 0|1        option ARRAY INDEX        choose CONTROL INDEX|TEXT
//   tab STRIP N              row N [N...]              dblclick lvwEmail N
//   answer Yes|No|Cancel|OK  file PATH|cancel          colour VALUE|cancel
//   tick TIMER [COUNT]       wait MS
// Blank lines and lines starting with '#' are passed over. Returns 0, or 2
// with the line and the reason on `err` for an unknown verb or control.
struct UiScriptRun {
    AppContext& ctx;
    StateView& view;
    Headless& headless;
    MainViewEvents& events;
};
int RunUiScript(UiScriptRun run, const QString& script, bool trace, QTextStream& out,
                QTextStream& err);

// The report of a script: what the program showed and asked for, and the
// state of each control the script touched.
QJsonObject UiStateJson(const AppContext& ctx, const StateView& view, const Headless& headless,
                        const QStringList& touched, const QJsonArray& refused);

} // namespace velmora
