#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace velmora {

// The values of the editing widgets, by their type: QLineEdit and
// QPlainTextEdit (text), QCheckBox and QRadioButton (checked), QComboBox and
// QListWidget (items, index, text), QSpinBox (range, text) and any other
// widget as a colour box (its background). Setting a value raises no signal
// the logic hears; a widget of another type is a fault of the window and
// raises UnknownControl.
namespace EditValues {

void SetText(QObject* widget, const QString& text);
QString Text(const QObject* widget);
// 0 for no limit.
void SetMaxLength(QObject* widget, int length);
void SetChecked(QObject* widget, bool checked);
bool Checked(const QObject* widget);
// New items leave no item chosen.
void SetItems(QObject* widget, const QStringList& items);
QStringList Items(const QObject* widget);
// -1 for none, as is an index beyond the items.
void SetCurrentIndex(QObject* widget, int index);
int CurrentIndex(const QObject* widget);
void SetRange(QObject* widget, int minimum, int maximum);
void SetColour(QObject* widget, quint32 bgr);
quint32 Colour(const QObject* widget);

// Calls `changed` after each change the user makes by hand, never for a
// value set above. Widgets that cannot be edited are left alone.
void WatchUserEdits(QObject* widget, std::function<void()> changed);

} // namespace EditValues
} // namespace velmora
