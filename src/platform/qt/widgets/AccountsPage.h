#pragma once

#include "platform/qt/widgets/WidgetTabStrip.h"

class QWidget;

namespace velmora {

// fraMain(1): the toolbar, a tab for each account, the account's settings
// below them and the page's buttons.
class AccountsPage {
public:
    explicit AccountsPage(WidgetControls& controls);

    QWidget* frame() const { return page; }
    // What the no-accounts banner covers.
    QWidget* covered() const { return fields; }

    WidgetTabStrip tabs;

private:
    QWidget* page = nullptr;
    QWidget* fields = nullptr;
};

} // namespace velmora
