#include "platform/qt/QtFileDialogs.h"

#include <QApplication>
#include <QFileDialog>

namespace velmora {

namespace {

QString Ask(QFileDialog::AcceptMode mode, const QString& title, const QString& filter,
            const QString& initialPath) {
    QFileDialog dialog(QApplication::activeWindow(), title, initialPath, filter);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    dialog.setWindowModality(Qt::ApplicationModal);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    const QStringList chosen = dialog.selectedFiles();
    return chosen.isEmpty() ? QString() : chosen.first();
}

} // namespace

QString QtFileDialogs::OpenFile(const QString& title, const QString& filter,
                                const QString& initialPath) {
    return Ask(QFileDialog::AcceptOpen, title, filter, initialPath);
}

QString QtFileDialogs::SaveFile(const QString& title, const QString& filter,
                                const QString& initialPath) {
    return Ask(QFileDialog::AcceptSave, title, filter, initialPath);
}

} // namespace velmora
