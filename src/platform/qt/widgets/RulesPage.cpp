#include "platform/qt/widgets/RulesPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>

namespace velmora {

RulesPage::RulesPage(WidgetControls& controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 2), layout);
    layout->addWidget(PageParts::FramedToolbar(controls, ctl::fraRulesToolbar, ctl::tbrRules));
    auto* fileName = new QLabel;
    fileName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    controls.add(fileName, ctl::lblRulesFileName);
    layout->addWidget(fileName);
    // The rules go on this sheet.
    auto* sheet = new QFrame;
    sheet->setFrameShape(QFrame::StyledPanel);
    layout->addWidget(sheet, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 2));
}

} // namespace velmora
