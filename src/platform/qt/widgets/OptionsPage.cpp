#include "platform/qt/widgets/OptionsPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"

#include <QBoxLayout>
#include <QFrame>

namespace velmora {

OptionsPage::OptionsPage(WidgetControls& controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 3), layout);
    // The options go on this sheet.
    auto* sheet = new QFrame;
    sheet->setFrameShape(QFrame::StyledPanel);
    layout->addWidget(sheet, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 3));
}

} // namespace velmora
