#include "platform/qt/widgets/EmailPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"

#include <QBoxLayout>
#include <QTabBar>
#include <QTableWidget>

namespace velmora {

EmailPage::EmailPage(WidgetControls& controls)
    : tabs(controls, ctl::TabStripEmail, QStringLiteral("Email accounts")), list(controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 0), layout);
    layout->addWidget(PageParts::FramedToolbar(controls, ctl::fraEmailToolBar, ctl::tbrEmail));
    // The tabs sit on the list they choose for.
    auto* tabbed = new QVBoxLayout;
    tabbed->setSpacing(0);
    tabbed->addWidget(tabs.widget());
    tabbed->addWidget(list.widget(), 1);
    layout->addLayout(tabbed, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 0));
}

} // namespace velmora
