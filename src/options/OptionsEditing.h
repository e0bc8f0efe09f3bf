#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

struct AppContext;
struct Options;

// The Options page. The controls hold the working copy; the record changes
// only on a save.

// What the page shows whatever the record: the tree, captions, ranges.
void ArrangeOptionsPage(AppContext& ctx);
// At start-up, once the record is read: the menu style file follows the
// record, the page and the client pictures are filled.
void StartOptionsPage(AppContext& ctx);
// Copies the record into the controls, then runs the dirty check.
void LoadOptionsPage(AppContext& ctx);
// The working copy as the controls hold it.
Options WorkingOptions(AppContext& ctx);
// The first key, in the order of the record's table, where the two differ;
// blank when none does.
QString FirstDifference(const Options& working, const Options& record);
void OptionsDirtyCheck(AppContext& ctx);
void UpdateOptionTexts(AppContext& ctx);

// What holds a control of the Options page (its section, the page) or of
// the Accounts page's client and sound bars, innermost first; empty for
// any other control.
QStringList OptionsContainers(const QString& control);

// A control of the page changed by the user's hand; false for a control
// that is not the page's.
bool OptionsControlChanged(AppContext& ctx, const QString& control);
// tbrOptMisc, tbrClient and tbrSound; false for any other toolbar.
bool OptionsButtonClick(AppContext& ctx, const QString& toolbar, const QString& key);
// The three colour boxes; false for any other label.
bool OptionsLinkClick(AppContext& ctx, const QString& label);

} // namespace velmora
