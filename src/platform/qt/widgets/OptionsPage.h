#pragma once

#include <QHash>
#include <QIcon>

class QToolBar;
class QWidget;

namespace velmora {

class WidgetControls;

// fraMain(3): the tree of the six sections, the section showing, and the
// page's buttons. It also carries the hidden controls through which the
// logic hands over client pictures, the menu style file and the toolbar
// button style.
class OptionsPage {
public:
    explicit OptionsPage(WidgetControls& controls);

    QWidget* frame() const { return page; }

    // A bar of OptionPageButtons(): tbrOptMisc, or a client or sound bar.
    static QToolBar* ButtonBar(WidgetControls& controls, const QString& toolbar);

    // A QMenu style sheet from the menu style file's three colours; blank
    // for a file without them.
    static QString MenuStyleSheet(const QString& styleFile);

private:
    void clientIcon(const QString& request);
    void showClientIcons();
    void menuStyle(const QString& styleFile);
    void buttonStyle(const QString& groups);

    WidgetControls& controls;
    QWidget* page = nullptr;
    QHash<QString, QIcon> clientIcons;
};

} // namespace velmora
