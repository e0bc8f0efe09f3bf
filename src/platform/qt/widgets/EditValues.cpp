#include "platform/qt/widgets/EditValues.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/BgrColour.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QSpinBox>

namespace velmora::EditValues {

namespace {

// A plain text box has no limit of its own; the limit rides on the widget.
const char* const kMaxLength = "velmoraMaxLength";

[[noreturn]] void Refuse(const QObject* widget, const char* what) {
    throw UnknownControl(QStringLiteral("'%1' has no %2")
                             .arg(widget ? widget->objectName() : QString(), QLatin1String(what)));
}

template <typename T> T* As(QObject* widget) {
    return qobject_cast<T*>(widget);
}

template <typename T> const T* As(const QObject* widget) {
    return qobject_cast<const T*>(widget);
}

} // namespace

void SetText(QObject* widget, const QString& text) {
    const QSignalBlocker block(widget);
    if (auto* edit = As<QLineEdit>(widget)) {
        edit->setText(text);
    } else if (auto* plain = As<QPlainTextEdit>(widget)) {
        const int limit = plain->property(kMaxLength).toInt();
        plain->setPlainText(limit > 0 ? text.left(limit) : text);
    } else if (auto* spin = As<QSpinBox>(widget)) {
        spin->setValue(text.trimmed().toInt());
    } else if (auto* combo = As<QComboBox>(widget)) {
        if (combo->isEditable())
            combo->setEditText(text);
        else
            combo->setCurrentIndex(combo->findText(text));
    } else if (auto* list = As<QListWidget>(widget)) {
        const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
        list->setCurrentRow(found.isEmpty() ? -1 : list->row(found.first()));
    } else {
        Refuse(widget, "text");
    }
}

QString Text(const QObject* widget) {
    if (auto* edit = As<QLineEdit>(widget))
        return edit->text();
    if (auto* plain = As<QPlainTextEdit>(widget))
        return plain->toPlainText();
    if (auto* spin = As<QSpinBox>(widget))
        return QString::number(spin->value());
    if (auto* combo = As<QComboBox>(widget))
        return combo->currentText();
    if (auto* list = As<QListWidget>(widget))
        return list->currentItem() ? list->currentItem()->text() : QString();
    Refuse(widget, "text");
}

void SetMaxLength(QObject* widget, int length) {
    if (auto* edit = As<QLineEdit>(widget)) {
        const QSignalBlocker block(widget);
        // QLineEdit's own default stands for "no limit".
        edit->setMaxLength(length > 0 ? length : 32767);
    } else if (As<QPlainTextEdit>(widget)) {
        widget->setProperty(kMaxLength, length);
    } else {
        Refuse(widget, "maximum length");
    }
}

void SetChecked(QObject* widget, bool checked) {
    auto* button = As<QAbstractButton>(widget);
    if (!button || !button->isCheckable())
        Refuse(widget, "check mark");
    const QSignalBlocker block(widget);
    button->setChecked(checked);
}

bool Checked(const QObject* widget) {
    auto* button = As<QAbstractButton>(widget);
    if (!button || !button->isCheckable())
        Refuse(widget, "check mark");
    return button->isChecked();
}

void SetItems(QObject* widget, const QStringList& items) {
    const QSignalBlocker block(widget);
    if (auto* combo = As<QComboBox>(widget)) {
        combo->clear();
        combo->addItems(items);
        combo->setCurrentIndex(-1);
    } else if (auto* list = As<QListWidget>(widget)) {
        list->clear();
        list->addItems(items);
        list->setCurrentRow(-1);
    } else {
        Refuse(widget, "items");
    }
}

QStringList Items(const QObject* widget) {
    QStringList items;
    if (auto* combo = As<QComboBox>(widget)) {
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
    } else if (auto* list = As<QListWidget>(widget)) {
        for (int i = 0; i < list->count(); ++i)
            items.append(list->item(i)->text());
    } else {
        Refuse(widget, "items");
    }
    return items;
}

void SetCurrentIndex(QObject* widget, int index) {
    const int count = int(Items(widget).size());
    if (index < -1 || index >= count)
        index = -1;
    const QSignalBlocker block(widget);
    if (auto* combo = As<QComboBox>(widget))
        combo->setCurrentIndex(index);
    else if (auto* list = As<QListWidget>(widget))
        list->setCurrentRow(index);
}

int CurrentIndex(const QObject* widget) {
    if (auto* combo = As<QComboBox>(widget))
        return combo->currentIndex();
    if (auto* list = As<QListWidget>(widget))
        return list->currentRow();
    Refuse(widget, "items");
}

void SetRange(QObject* widget, int minimum, int maximum) {
    auto* spin = As<QSpinBox>(widget);
    if (!spin)
        Refuse(widget, "range");
    const QSignalBlocker block(widget);
    spin->setRange(minimum, maximum);
}

void SetColour(QObject* widget, quint32 bgr) {
    auto* w = As<QWidget>(widget);
    if (!w)
        Refuse(widget, "colour");
    QPalette palette = w->palette();
    palette.setColor(w->backgroundRole(), ToQColor(bgr & 0x00FFFFFFu));
    w->setPalette(palette);
    w->setAutoFillBackground(true);
}

quint32 Colour(const QObject* widget) {
    auto* w = As<QWidget>(widget);
    if (!w)
        Refuse(widget, "colour");
    return ToBgr(w->palette().color(w->backgroundRole()));
}

void WatchUserEdits(QObject* widget, std::function<void()> changed) {
    const auto report = [changed = std::move(changed)] {
        changed();
    };
    if (auto* edit = As<QLineEdit>(widget)) {
        QObject::connect(edit, &QLineEdit::textEdited, edit, report);
    } else if (auto* plain = As<QPlainTextEdit>(widget)) {
        QObject::connect(plain, &QPlainTextEdit::textChanged, plain, report);
    } else if (auto* button = As<QAbstractButton>(widget)) {
        QObject::connect(button, &QAbstractButton::clicked, button, report);
    } else if (auto* combo = As<QComboBox>(widget)) {
        QObject::connect(combo, &QComboBox::activated, combo, report);
        if (QLineEdit* line = combo->lineEdit())
            QObject::connect(line, &QLineEdit::textEdited, combo, report);
    } else if (auto* list = As<QListWidget>(widget)) {
        QObject::connect(list, &QListWidget::currentRowChanged, list, report);
    } else if (auto* spin = As<QSpinBox>(widget)) {
        QObject::connect(spin, &QSpinBox::valueChanged, spin, report);
    }
}

} // namespace velmora::EditValues
