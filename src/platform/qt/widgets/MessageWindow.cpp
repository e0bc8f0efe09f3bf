#include "platform/qt/widgets/MessageWindow.h"

#include "platform/qt/widgets/FirstUseWindow.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/ReportingFrame.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

MessageWindow::MessageWindow() {
    window = new ReportingFrame(onClose);
    window->setObjectName("frmMessage");
    window->setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    auto* layout = new QVBoxLayout(window);
    fraMsg = new QGroupBox;
    fraMsg->setObjectName("fraMsg");
    auto* inner = new QVBoxLayout(fraMsg);
    lblMsg = new QLabel;
    lblMsg->setObjectName("lblMsg");
    lblMsg->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    inner->addWidget(lblMsg);
    lblAutoCheck = new QLabel;
    lblAutoCheck->setObjectName("lblAutoCheck");
    inner->addWidget(lblAutoCheck);
    layout->addWidget(fraMsg);

    auto* row = new QHBoxLayout;
    imgHourGlass = new QLabel;
    imgHourGlass->setPixmap(Pictures::Keyed("Pause").pixmap(16, 16));
    lblMsgCountDown = new QLabel;
    lblMsgCountDown->setObjectName("lblMsgCountDown");
    row->addWidget(imgHourGlass);
    row->addWidget(lblMsgCountDown);
    row->addStretch(1);
    auto* close = new QPushButton("Close");
    close->setObjectName("tbrButtons");
    QObject::connect(close, &QPushButton::clicked, window, [this] {
        if (onClose)
            onClose();
    });
    row->addWidget(close);
    layout->addLayout(row);
}

MessageWindow::~MessageWindow() {
    if (window) {
        window->hide();
        window->deleteLater();
    }
}

void MessageWindow::setCaption(const QString& caption) {
    window->setWindowTitle(caption);
}

void MessageWindow::setHeadline(const QString& headline) {
    fraMsg->setTitle(headline);
}

void MessageWindow::setAccountLines(const QString& text, int lines) {
    lblMsg->setText(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).trimmed());
    // As high as its lines; what does not fit is cut off.
    lblMsg->setFixedHeight(lblMsg->fontMetrics().lineSpacing() * qMax(1, lines) + 4);
    window->adjustSize();
}

void MessageWindow::setCountdownVisible(bool visible) {
    lblMsgCountDown->setVisible(visible);
    imgHourGlass->setVisible(visible);
}

void MessageWindow::setCountdown(int seconds) {
    lblMsgCountDown->setText(QString::number(seconds));
}

void MessageWindow::setNextCheck(const QString& text) {
    lblAutoCheck->setText(text);
}

void MessageWindow::setStayOnTop(bool onTop) {
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
}

void MessageWindow::showWindow() {
    window->show();
    window->raise();
}

void MessageWindow::hideWindow() {
    window->hide();
}

void MessageWindow::setOnClose(std::function<void()> handler) {
    onClose = std::move(handler);
}

std::unique_ptr<MessageView> WidgetWindowFactory::createMessageView() {
    return std::make_unique<MessageWindow>();
}

std::unique_ptr<FirstUseView> WidgetWindowFactory::createFirstUseView() {
    return std::make_unique<FirstUseWindow>();
}

} // namespace velmora
