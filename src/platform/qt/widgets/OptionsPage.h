#pragma once

class QWidget;

namespace velmora {

class WidgetControls;

// fraMain(3): the options, and the page's buttons.
class OptionsPage {
public:
    explicit OptionsPage(WidgetControls& controls);

    QWidget* frame() const { return page; }

private:
    QWidget* page = nullptr;
};

} // namespace velmora
