#include "platform/qt/widgets/OptionsPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QBoxLayout>
#include <QFrame>
#include <QPushButton>
#include <QToolBar>

namespace velmora {

namespace {

// A label that opens what it names: a flat button, so the keyboard and
// screen readers reach it like any other.
QPushButton* Link(WidgetControls& controls, const QString& name) {
    auto* link = new QPushButton;
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    link->setStyleSheet(QStringLiteral("QPushButton { color: palette(link); text-decoration: "
                                       "underline; text-align: left; }"));
    controls.add(link, name);
    return link;
}

// The About section's ways out: the home page, the support address, the
// ReadMe and the check for updates.
QWidget* AboutLinks(WidgetControls& controls) {
    auto* about = new QWidget;
    auto* layout = new QVBoxLayout(about);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(Link(controls, ctl::lblAboutWebSite), 0, Qt::AlignLeft);
    layout->addWidget(Link(controls, ctl::lblAboutEmail), 0, Qt::AlignLeft);
    layout->addWidget(PageParts::Toolbar(controls, ctl::tbrOptAbout));
    return about;
}

} // namespace

OptionsPage::OptionsPage(WidgetControls& controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 3), layout);
    // The options go on this sheet.
    auto* sheet = new QFrame;
    sheet->setFrameShape(QFrame::StyledPanel);
    auto* sections = new QVBoxLayout(sheet);
    sections->addStretch(1);
    sections->addWidget(AboutLinks(controls));
    layout->addWidget(sheet, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 3));
}

} // namespace velmora
