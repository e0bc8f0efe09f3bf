#pragma once

#include <QObject>

class QLineEdit;
class QListWidget;
class QWidget;

namespace velmora {

class WidgetControls;

// fraMain(2): the rules toolbar, which shows only with an account, the
// rules file's name, the list of rules with their check boxes, the rule
// being edited with its description builder, its action and the
// notification values, and the page's buttons.
class RulesPage : public QObject {
public:
    explicit RulesPage(WidgetControls& controls);

    QWidget* frame() const { return page; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The list's check boxes from the text the logic set, and back.
    void showTicks();
    void ticked();
    // A rule that is not enabled shows its frames in dark red.
    void showEnabledColour();
    // The seconds of the Rule Report, one up or down within 0 to 59.
    void stepSeconds(int step);

    WidgetControls& controls;
    QWidget* page = nullptr;
    QListWidget* list = nullptr;
    QLineEdit* ticks = nullptr;
    QWidget* ruleFrame = nullptr;
    QWidget* actionFrame = nullptr;
    QWidget* descriptionLabel = nullptr;
    QLineEdit* secondsBox = nullptr;
    bool showingTicks = false;
};

} // namespace velmora
