#include "platform/qt/widgets/AccountsPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"

#include <QBoxLayout>
#include <QFrame>
#include <QTabBar>

namespace velmora {

AccountsPage::AccountsPage(WidgetControls& controls)
    : tabs(controls, ctl::TabStripAcnts, QStringLiteral("Accounts")) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 1), layout);
    layout->addWidget(PageParts::FramedToolbar(controls, ctl::fraAcntToolBar, ctl::tbrAcnts));
    auto* tabbed = new QVBoxLayout;
    tabbed->setSpacing(0);
    tabbed->addWidget(tabs.widget());
    // The account's settings go on this sheet.
    auto* sheet = new QFrame;
    sheet->setFrameShape(QFrame::StyledPanel);
    tabbed->addWidget(sheet, 1);
    layout->addLayout(tabbed, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 1));
}

} // namespace velmora
