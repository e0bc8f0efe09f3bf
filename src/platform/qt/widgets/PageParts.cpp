#include "platform/qt/widgets/PageParts.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QAction>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QToolBar>
#include <QVBoxLayout>

namespace velmora::PageParts {

namespace {

constexpr int kIcon = 20;

} // namespace

void KeyboardReachable(QToolBar* bar, QAction* action) {
    // Toolbar buttons take no focus by default; Tab should reach them.
    if (QWidget* button = bar->widgetForAction(action))
        button->setFocusPolicy(Qt::TabFocus);
}

QWidget* Frame(WidgetControls& controls, const QString& name, QBoxLayout*& layout) {
    auto* frame = new QWidget;
    controls.add(frame, name);
    layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    return frame;
}

QToolBar* Toolbar(WidgetControls& controls, const QString& toolbar) {
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(kIcon, kIcon));
    bar->setFloatable(false);
    bar->setMovable(false);
    controls.add(bar, toolbar);
    for (const ToolbarButton& b : ToolbarButtonTable()) {
        if (b.toolbar != toolbar)
            continue;
        QAction* action = bar->addAction(b.key);
        controls.add(action, Button(toolbar, b.key));
        KeyboardReachable(bar, action);
    }
    return bar;
}

QWidget* FramedToolbar(WidgetControls& controls, const QString& frame, const QString& toolbar) {
    QBoxLayout* layout = nullptr;
    QWidget* holder = Frame(controls, frame, layout);
    layout->addWidget(Toolbar(controls, toolbar));
    return holder;
}

QWidget* PageButtonRow(WidgetControls& controls, int page) {
    // A toolbar, so that on a narrow screen what does not fit goes into its
    // overflow menu rather than off the window's edge.
    auto* row = new QToolBar;
    row->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    row->setIconSize(QSize(kIcon, kIcon));
    row->setFloatable(false);
    row->setMovable(false);
    for (const PageButton& b : PageButtonTable()) {
        if (b.page != page)
            continue;
        QAction* action = row->addAction(b.key);
        controls.add(action, Element(ctl::tbrButtons, b.index));
        KeyboardReachable(row, action);
    }
    return row;
}

QToolBar* SmallBar(WidgetControls& controls, const QString& toolbar,
                   const QVector<ToolbarButton>& table, bool pictures) {
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(pictures ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextOnly);
    if (pictures)
        bar->setIconSize(QSize(16, 16));
    bar->setFloatable(false);
    bar->setMovable(false);
    controls.add(bar, toolbar);
    for (const ToolbarButton& b : table) {
        if (b.toolbar != toolbar)
            continue;
        QAction* action = bar->addAction(b.key);
        controls.add(action, Button(toolbar, b.key));
        KeyboardReachable(bar, action);
    }
    return bar;
}

ColourBox::ColourBox(int width, int height) {
    setFixedSize(width, height);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void ColourBox::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect box = rect().adjusted(3, 3, -4, -4);
    p.fillRect(box, palette().color(backgroundRole()));
    p.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    p.drawRect(box);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect();
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
    }
}

} // namespace velmora::PageParts
