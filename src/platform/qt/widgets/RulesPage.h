#pragma once

class QWidget;

namespace velmora {

class WidgetControls;

// fraMain(2): the rules toolbar, which shows only with an account, the
// rules file's name and the page's buttons.
class RulesPage {
public:
    explicit RulesPage(WidgetControls& controls);

    QWidget* frame() const { return page; }

private:
    QWidget* page = nullptr;
};

} // namespace velmora
