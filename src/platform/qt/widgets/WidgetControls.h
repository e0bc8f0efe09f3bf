#pragma once

#include "platform/Controls.h"
#include "platform/MainView.h"
#include "platform/MainViewEvents.h"

#include <QHash>

#include <memory>

class QObject;

namespace velmora {

// Hands a report to the receiver of the window's events, if there is one.
// Each connection holds its own copy: when the window takes its widgets
// down, the registry is already gone and the copies find no receiver.
class EventReporter {
public:
    template <typename Report> void operator()(Report&& report) const {
        if (MainViewEvents* events = *receiver)
            report(*events);
    }

private:
    friend class WidgetControls;
    std::shared_ptr<MainViewEvents*> receiver = std::make_shared<MainViewEvents*>(nullptr);
};

// The named controls of a widget window: each name of ControlTable() is a
// widget or action with that object name, registered here as it is built.
// The operations follow the control's kind as the headless view does, and
// reach the widget by its type.
class WidgetControls : public MainView {
public:
    ~WidgetControls() override { *reporter.receiver = nullptr; }

    void setEvents(MainViewEvents* receiver) { *reporter.receiver = receiver; }
    const EventReporter& report() const { return reporter; }

    // Names `control`, which must be one of ControlTable(), and reports its
    // clicks (buttons and menu entries) and the user's edits (editing kinds).
    void add(QObject* control, const QString& name);
    // UnknownControl for a name not in ControlTable(), or one not built.
    QObject* find(const QString& name) const;
    // The names of ControlTable() the window has not built.
    QStringList missing() const;

    void setEnabled(const QString& control, bool enabled) override;
    bool isEnabled(const QString& control) const override;
    void setVisible(const QString& control, bool visible) override;
    bool isVisible(const QString& control) const override;
    void setCaption(const QString& control, const QString& caption) override;
    QString caption(const QString& control) const override;
    void setToolTip(const QString& control, const QString& tip) override;
    QString toolTip(const QString& control) const override;
    void setImage(const QString& control, const QString& imageKey) override;
    QString image(const QString& control) const override;
    void setFocus(const QString& control) override;

    void setText(const QString& control, const QString& text) override;
    QString text(const QString& control) const override;
    void setMaxLength(const QString& control, int length) override;
    void setChecked(const QString& control, int value) override;
    int checked(const QString& control) const override;
    void setOptionIndex(const QString& array, int index) override;
    int optionIndex(const QString& array) const override;
    void setItems(const QString& control, const QStringList& items) override;
    QStringList items(const QString& control) const override;
    void setCurrentIndex(const QString& control, int index) override;
    int currentIndex(const QString& control) const override;
    void setRange(const QString& control, int minimum, int maximum) override;
    void setColour(const QString& control, quint32 bgr) override;
    quint32 colour(const QString& control) const override;

    // What a menu caption shows, and the picture key it carries behind "|#".
    static QString MenuText(const QString& caption);
    static QString MenuImage(const QString& caption);

private:
    QObject* find(const QString& name, std::initializer_list<ControlKind> kinds) const;
    // Shows the control's caption and picture as they now stand.
    void present(QObject* control) const;

    QHash<QString, QObject*> controls;
    EventReporter reporter;
};

} // namespace velmora
