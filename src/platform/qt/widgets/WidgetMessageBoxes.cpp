#include "platform/qt/widgets/WidgetMessageBoxes.h"

#include <QMessageBox>

namespace velmora {

BoxAnswer WidgetMessageBoxes::show(const QString& title, const QString& text, BoxIcon icon,
                                   BoxButtons buttons, int defaultButton) {
    QMessageBox box;
    box.setWindowTitle(title);
    // The texts break lines with CR LF; a label wants plain line feeds.
    box.setText(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    box.setIcon(icon == BoxIcon::Critical      ? QMessageBox::Critical
                : icon == BoxIcon::Information ? QMessageBox::Information
                                               : QMessageBox::NoIcon);
    QList<QMessageBox::StandardButton> order;
    switch (buttons) {
    case BoxButtons::Ok:
        order = {QMessageBox::Ok};
        break;
    case BoxButtons::YesNo:
        order = {QMessageBox::Yes, QMessageBox::No};
        break;
    case BoxButtons::YesNoCancel:
        order = {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
        break;
    }
    for (QMessageBox::StandardButton b : order)
        box.addButton(b);
    box.setDefaultButton(order.value(defaultButton - 1, order.first()));
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    case QMessageBox::Cancel:
        return BoxAnswer::Cancel;
    default:
        return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Cancel;
    }
}

} // namespace velmora
