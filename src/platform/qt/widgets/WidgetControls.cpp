#include "platform/qt/widgets/WidgetControls.h"

#include "platform/qt/widgets/EditValues.h"
#include "platform/qt/widgets/Pictures.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>

namespace velmora {

namespace {

using K = ControlKind;

// What Qt cannot give back as it was set: the raw caption (a menu's with its
// "|#" picture key), the picture key, and for an action its own tip and its
// own enabled flag (Qt falls back to the text for a tip it lacks, and
// disables an action while it is hidden).
const char* const kCaption = "velmoraCaption";
const char* const kImage = "velmoraImage";
const char* const kTip = "velmoraTip";
const char* const kEnabled = "velmoraEnabled";

constexpr int kLabelPicture = 32;

const std::initializer_list<ControlKind> kCaptioned = {K::Button, K::Label, K::Link,  K::MenuEntry,
                                                       K::Frame,  K::Check, K::Option};
const std::initializer_list<ControlKind> kPictured = {K::Button, K::MenuEntry, K::Header, K::Label};

} // namespace

QString WidgetControls::MenuText(const QString& caption) {
    const qsizetype cut = caption.indexOf(QLatin1String("|#"));
    return cut < 0 ? caption : caption.left(cut);
}

QString WidgetControls::MenuImage(const QString& caption) {
    const qsizetype cut = caption.indexOf(QLatin1String("|#"));
    return cut < 0 ? QString() : caption.mid(cut + 2);
}

void WidgetControls::add(QObject* control, const QString& name) {
    const ControlKind kind = KindOf(name);
    if (controls.contains(name))
        throw UnknownControl(QStringLiteral("'%1' is built twice").arg(name));
    control->setObjectName(name);
    controls.insert(name, control);
    if (kind == K::Button || kind == K::MenuEntry || kind == K::Link) {
        const auto click = [report = reporter, name] {
            report([&name](MainViewEvents& events) { DeliverClick(events, name); });
        };
        if (auto* action = qobject_cast<QAction*>(control))
            QObject::connect(action, &QAction::triggered, action, click);
        else if (auto* button = qobject_cast<QAbstractButton*>(control))
            QObject::connect(button, &QAbstractButton::clicked, button, click);
    } else if (kind == K::Text || kind == K::Check || kind == K::Option || kind == K::Combo ||
               kind == K::Spin) {
        EditValues::WatchUserEdits(control, [report = reporter, name] {
            report([&name](MainViewEvents& events) { events.ValueChanged(name); });
        });
    }
}

QObject* WidgetControls::find(const QString& name) const {
    KindOf(name);
    QObject* control = controls.value(name);
    if (!control)
        throw UnknownControl(QStringLiteral("the window has not built '%1'").arg(name));
    return control;
}

QObject* WidgetControls::find(const QString& name, std::initializer_list<ControlKind> kinds) const {
    Expect(name, kinds);
    return find(name);
}

QStringList WidgetControls::missing() const {
    QStringList names;
    for (const ControlInfo& c : ControlTable()) {
        if (!controls.contains(c.name))
            names.append(c.name);
    }
    return names;
}

void WidgetControls::present(QObject* control) const {
    const QVariant caption = control->property(kCaption);
    const QString image = control->property(kImage).toString();
    const QString text = caption.toString();
    if (auto* action = qobject_cast<QAction*>(control)) {
        if (caption.isValid())
            action->setText(MenuText(text).trimmed());
        const QString key = image.isEmpty() ? MenuImage(text) : image;
        if (caption.isValid() || !image.isEmpty())
            action->setIcon(Pictures::Keyed(key));
    } else if (auto* button = qobject_cast<QAbstractButton*>(control)) {
        // Captions are padded with blanks for width; the layout sees to that.
        if (caption.isValid())
            button->setText(text.trimmed());
        button->setIcon(Pictures::Keyed(image));
    } else if (auto* label = qobject_cast<QLabel*>(control)) {
        if (!image.isEmpty())
            label->setPixmap(Pictures::Keyed(image).pixmap(kLabelPicture, kLabelPicture));
        else
            label->setText(text);
        label->setAccessibleName(text.trimmed());
    } else if (auto* box = qobject_cast<QGroupBox*>(control)) {
        box->setTitle(text);
    } else if (auto* widget = qobject_cast<QWidget*>(control)) {
        widget->setAccessibleName(text.trimmed());
    }
}

void WidgetControls::setEnabled(const QString& name, bool enabled) {
    QObject* control = find(name);
    if (auto* widget = qobject_cast<QWidget*>(control)) {
        widget->setEnabled(enabled);
        return;
    }
    control->setProperty(kEnabled, enabled);
    if (auto* action = qobject_cast<QAction*>(control))
        action->setEnabled(enabled);
}

bool WidgetControls::isEnabled(const QString& name) const {
    const QObject* control = find(name);
    // The control's own flag, whatever its frame says.
    if (auto* widget = qobject_cast<const QWidget*>(control))
        return !widget->testAttribute(Qt::WA_ForceDisabled);
    const QVariant enabled = control->property(kEnabled);
    return !enabled.isValid() || enabled.toBool();
}

void WidgetControls::setVisible(const QString& name, bool visible) {
    QObject* control = find(name);
    if (auto* widget = qobject_cast<QWidget*>(control))
        widget->setVisible(visible);
    else if (auto* action = qobject_cast<QAction*>(control))
        action->setVisible(visible);
    else
        control->setProperty("visible", visible);
}

bool WidgetControls::isVisible(const QString& name) const {
    const QObject* control = find(name);
    // The control's own flag: a button on a hidden page is still "visible".
    if (auto* widget = qobject_cast<const QWidget*>(control))
        return !widget->isHidden();
    if (auto* action = qobject_cast<const QAction*>(control))
        return action->isVisible();
    const QVariant visible = control->property("visible");
    return !visible.isValid() || visible.toBool();
}

void WidgetControls::setCaption(const QString& name, const QString& caption) {
    QObject* control = find(name, kCaptioned);
    control->setProperty(kCaption, caption);
    present(control);
}

QString WidgetControls::caption(const QString& name) const {
    return find(name, kCaptioned)->property(kCaption).toString();
}

void WidgetControls::setToolTip(const QString& name, const QString& tip) {
    QObject* control = find(name);
    if (auto* action = qobject_cast<QAction*>(control)) {
        action->setProperty(kTip, tip);
        action->setToolTip(tip);
    } else {
        control->setProperty("toolTip", tip);
    }
}

QString WidgetControls::toolTip(const QString& name) const {
    const QObject* control = find(name);
    return control->property(qobject_cast<const QAction*>(control) ? kTip : "toolTip").toString();
}

void WidgetControls::setImage(const QString& name, const QString& imageKey) {
    QObject* control = find(name, kPictured);
    control->setProperty(kImage, imageKey);
    present(control);
}

QString WidgetControls::image(const QString& name) const {
    return find(name, kPictured)->property(kImage).toString();
}

void WidgetControls::setFocus(const QString& name) {
    QObject* control = find(name);
    if (auto* action = qobject_cast<QAction*>(control)) {
        // An action takes the focus through the button showing it.
        for (QObject* shown : action->associatedObjects()) {
            if (auto* widget = qobject_cast<QWidget*>(shown)) {
                widget->setFocus(Qt::OtherFocusReason);
                return;
            }
        }
    } else if (auto* widget = qobject_cast<QWidget*>(control)) {
        widget->setFocus(Qt::OtherFocusReason);
    }
}

void WidgetControls::setText(const QString& name, const QString& text) {
    EditValues::SetText(find(name, {K::Text, K::Spin, K::Combo}), text);
}

QString WidgetControls::text(const QString& name) const {
    return EditValues::Text(find(name, {K::Text, K::Spin, K::Combo}));
}

void WidgetControls::setMaxLength(const QString& name, int length) {
    EditValues::SetMaxLength(find(name, {K::Text}), length);
}

void WidgetControls::setChecked(const QString& name, int value) {
    EditValues::SetChecked(find(name, {K::Check}), value == 1);
}

int WidgetControls::checked(const QString& name) const {
    return EditValues::Checked(find(name, {K::Check})) ? 1 : 0;
}

void WidgetControls::setOptionIndex(const QString& array, int index) {
    // Option buttons sharing a frame let go of each other by themselves.
    EditValues::SetChecked(find(Element(array, index), {K::Option}), true);
}

int WidgetControls::optionIndex(const QString& array) const {
    find(Element(array, 0), {K::Option});
    const QString prefix = array + QLatin1Char('(');
    for (auto it = controls.constBegin(); it != controls.constEnd(); ++it) {
        if (it.key().startsWith(prefix) && EditValues::Checked(it.value()))
            return it.key().mid(prefix.size()).chopped(1).toInt();
    }
    return -1;
}

void WidgetControls::setItems(const QString& name, const QStringList& items) {
    EditValues::SetItems(find(name, {K::Combo}), items);
}

QStringList WidgetControls::items(const QString& name) const {
    return EditValues::Items(find(name, {K::Combo}));
}

void WidgetControls::setCurrentIndex(const QString& name, int index) {
    EditValues::SetCurrentIndex(find(name, {K::Combo}), index);
}

int WidgetControls::currentIndex(const QString& name) const {
    return EditValues::CurrentIndex(find(name, {K::Combo}));
}

void WidgetControls::setRange(const QString& name, int minimum, int maximum) {
    EditValues::SetRange(find(name, {K::Spin}), minimum, maximum);
}

void WidgetControls::setColour(const QString& name, quint32 bgr) {
    EditValues::SetColour(find(name, {K::Colour, K::Label, K::Link, K::Frame}), bgr);
}

quint32 WidgetControls::colour(const QString& name) const {
    return EditValues::Colour(find(name, {K::Colour, K::Label, K::Link, K::Frame}));
}

} // namespace velmora
