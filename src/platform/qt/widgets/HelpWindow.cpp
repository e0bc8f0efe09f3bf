#include "platform/qt/widgets/HelpWindow.h"

#include <QFile>
#include <QFileInfo>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

namespace velmora {

namespace {

bool HasAnchor(const QTextDocument& document, const QString& name) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.charFormat().anchorNames().contains(name))
            return true;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().anchorNames().contains(name))
                return true;
        }
    }
    return false;
}

} // namespace

HelpWindow::~HelpWindow() {
    if (window)
        delete window;
}

QString HelpWindow::Anchor(int context) {
    return QStringLiteral("topic-%1").arg(context);
}

bool HelpWindow::ShowTopic(const QString& file, int context) {
    // Checked on a document of its own first, so that a topic that is not
    // there leaves an open window showing what it showed.
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    QTextDocument probe;
    probe.setHtml(QString::fromUtf8(source.readAll()));
    const QString anchor = Anchor(context);
    if (!HasAnchor(probe, anchor))
        return false;

    if (!window)
        make();
    QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
    // The file may have changed since it was last shown.
    if (view->source().adjusted(QUrl::RemoveFragment) == url)
        view->reload();
    url.setFragment(anchor);
    view->setSource(url);
    window->show();
    window->raise();
    window->activateWindow();
    return true;
}

void HelpWindow::make() {
    window = new QWidget(nullptr, Qt::Window);
    window->setObjectName(QStringLiteral("frmHelp"));
    window->setWindowTitle(QStringLiteral("Velmora Help"));
    window->resize(620, 520);
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    view = new QTextBrowser;
    view->setObjectName(QStringLiteral("HelpBrowser"));
    view->setAccessibleName(QStringLiteral("Help"));
    // Addresses on the web and mail links go to the desktop; links within
    // the help stay here.
    view->setOpenExternalLinks(true);
    layout->addWidget(view);
}

} // namespace velmora
