#pragma once

#include "platform/MainView.h"

class QTabBar;

namespace velmora {

class WidgetControls;

// An account tab strip over a QTabBar. A tab the user selects is reported
// as TabClick; one the logic selects is not. A tab number beyond the strip
// is ignored, and reads blank.
class WidgetTabStrip : public TabStripView {
public:
    // `name` is TabStripEmail or TabStripAcnts; `role` names the strip for
    // screen readers.
    WidgetTabStrip(WidgetControls& controls, const QString& name, const QString& role);

    QTabBar* widget() const { return bar; }

    void clear() override;
    void addTab(const QString& caption, const QString& imageKey) override;
    int count() const override;
    void setCaption(int tab, const QString& caption) override;
    QString caption(int tab) const override;
    void setImage(int tab, const QString& imageKey) override;
    QString image(int tab) const override;
    void select(int tab) override;
    int selected() const override;
    void beginDrag() override;

private:
    // The bar's index of tab `tab`; -1 when there is none.
    int index(int tab) const;
    void name(int index);

    QTabBar* bar;
};

} // namespace velmora
