#pragma once

#include <QAbstractButton>
#include <QString>
#include <QVector>

class QAction;
class QBoxLayout;
class QToolBar;
class QWidget;

namespace velmora {

class WidgetControls;
struct ToolbarButton;

// The parts the pages share.
namespace PageParts {

// A page or frame named `name`, laid out top to bottom without margins.
QWidget* Frame(WidgetControls& controls, const QString& name, QBoxLayout*& layout);
// The toolbar `toolbar` with its buttons from ToolbarButtonTable().
QToolBar* Toolbar(WidgetControls& controls, const QString& toolbar);
// The same toolbar alone in the frame `frame`.
QWidget* FramedToolbar(WidgetControls& controls, const QString& frame, const QString& toolbar);
// The row of tbrButtons elements that belong to `page`, at its foot.
QWidget* PageButtonRow(WidgetControls& controls, int page);
// A small bar `toolbar` with its buttons from `table`: captions only, or
// with 16-pixel pictures beside them.
QToolBar* SmallBar(WidgetControls& controls, const QString& toolbar,
                   const QVector<ToolbarButton>& table, bool pictures);
// Lets Tab reach the button showing `action`.
void KeyboardReachable(QToolBar* bar, QAction* action);

// A colour box: a square of its background colour that takes a click and
// the keyboard's focus. Its frame alone tells a box that takes no click.
class ColourBox : public QAbstractButton {
public:
    ColourBox(int width, int height);

protected:
    void paintEvent(QPaintEvent*) override;
};

} // namespace PageParts
} // namespace velmora
