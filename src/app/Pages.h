#pragma once

#include <QString>
#include <QVector>

namespace velmora {

struct AppContext;

// The main buttons that switch the pages, and the row of page buttons below
// each page, as the window is built from them.
struct MainButton {
    QString key;
    QString caption;
    QString tip;
};
struct PageButton {
    int index;
    int page;
    QString key;
    QString caption;
    QString tip;
    QString image;
};
// A button of a page's own toolbar (tbrEmail, tbrAcnts, tbrRules).
struct ToolbarButton {
    QString toolbar;
    QString key;
    QString caption;
    QString tip;
};
const QVector<MainButton>& MainButtonTable();
const QVector<PageButton>& PageButtonTable();
const QVector<ToolbarButton>& ToolbarButtonTable();

// Names of the controls of a control array element and of a toolbar button.
QString Element(const QString& array, int index);
QString Button(const QString& toolbar, const QString& key);

// One-time arrangement of the main window at load.
void ArrangeMainWindow(AppContext& ctx);

void tbrMainButtons_ButtonClick(AppContext& ctx, const QString& key);
void tbrButtons_ButtonClick(AppContext& ctx, int index);
// Shows a page without changing CurrentPage; nothing while the Email page
// is current or a connection test runs.
void ShowPage(AppContext& ctx, int page);
void SetAccountState(AppContext& ctx);
void ShowNoAccountState(AppContext& ctx);
void StartClientProgram(AppContext& ctx);
void ShowHelp(AppContext& ctx, int context);

} // namespace velmora
