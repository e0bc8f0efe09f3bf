#include "platform/qt/widgets/FirstUseWindow.h"

#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/ReportingFrame.h"
#include "platform/qt/widgets/TrayPictures.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmora {

FirstUseWindow::FirstUseWindow() {
    window = new ReportingFrame(onClose);
    window->setObjectName("frmFirstUse");
    window->setWindowFlags(Qt::Dialog);
    auto* layout = new QVBoxLayout(window);

    auto* head = new QHBoxLayout;
    auto* picture = new QLabel;
    picture->setPixmap(TrayPictures::Icon({7}).pixmap(48, 48));
    picture->setAlignment(Qt::AlignTop);
    head->addWidget(picture);
    auto* titles = new QVBoxLayout;
    lblWelcome = new QLabel;
    lblWelcome->setObjectName("lblWelcome");
    QFont big = lblWelcome->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    big.setBold(true);
    lblWelcome->setFont(big);
    lblVersion = new QLabel;
    lblVersion->setObjectName("lblVersion");
    lblCopyright = new QLabel;
    lblCopyright->setObjectName("lblCopyright");
    titles->addWidget(lblWelcome);
    titles->addWidget(lblVersion);
    titles->addWidget(lblCopyright);
    titles->setSpacing(2);
    head->addLayout(titles, 1);
    head->setAlignment(picture, Qt::AlignTop);
    layout->addLayout(head);
    layout->addSpacing(10);

    paragraphs = new QVBoxLayout;
    paragraphs->setSpacing(8);
    layout->addLayout(paragraphs);

    layout->addStretch(1);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    close = new QToolButton;
    close->setObjectName("tbrButtons");
    close->setText("Close");
    close->setIcon(Pictures::Keyed("Close"));
    close->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QObject::connect(close, &QToolButton::clicked, window, [this] {
        if (onClose)
            onClose();
    });
    row->addWidget(close);
    layout->addLayout(row);
    window->setMinimumWidth(420);
}

FirstUseWindow::~FirstUseWindow() {
    if (window) {
        window->hide();
        window->deleteLater();
    }
}

void FirstUseWindow::setCaption(const QString& caption) {
    window->setWindowTitle(caption);
}

void FirstUseWindow::setVersion(const QString& version) {
    lblVersion->setText(version);
}

void FirstUseWindow::setCopyright(const QString& notice) {
    lblCopyright->setText(notice);
}

void FirstUseWindow::setWelcome(const QString& welcome) {
    lblWelcome->setText(welcome);
}

void FirstUseWindow::setParagraphs(const QStringList& texts) {
    for (int i = 0; i < texts.size(); ++i) {
        auto* label = new QLabel(texts[i]);
        label->setObjectName(QStringLiteral("lblStep%1").arg(i + 1));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        paragraphs->addWidget(label);
    }
}

void FirstUseWindow::setRaisedButtons(bool raised) {
    close->setAutoRaise(!raised);
}

void FirstUseWindow::showWindow() {
    window->show();
    window->raise();
}

void FirstUseWindow::hideWindow() {
    window->hide();
}

void FirstUseWindow::setOnClose(std::function<void()> handler) {
    onClose = std::move(handler);
}

} // namespace velmora
