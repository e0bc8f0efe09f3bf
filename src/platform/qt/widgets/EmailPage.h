#pragma once

#include "platform/qt/widgets/WidgetMessageList.h"
#include "platform/qt/widgets/WidgetTabStrip.h"

class QWidget;

namespace velmora {

// fraMain(0): the toolbar, a tab for each account, the account's messages
// and the page's buttons.
class EmailPage {
public:
    explicit EmailPage(WidgetControls& controls);

    QWidget* frame() const { return page; }

    WidgetTabStrip tabs;
    WidgetMessageList list;

private:
    QWidget* page = nullptr;
};

} // namespace velmora
