#include "platform/qt/widgets/MessageWindow.h"

#include "platform/qt/widgets/FirstUseWindow.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/PreviewWindow.h"
#include "platform/qt/widgets/ReportingFrame.h"
#include "platform/qt/widgets/RuleFileWindow.h"
#include "platform/qt/widgets/RuleReportWindow.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpacerItem>
#include <QStyle>
#include <QVBoxLayout>

namespace velmora {

namespace {

// The width a window manager's title bar needs to show the whole title: the
// text, the window's icon and three buttons at about a bar's height each,
// and the frame on both sides.
int TitleWidth(const QWidget* window, const QString& title) {
    if (title.isEmpty())
        return 0;
    const QFontMetrics metrics(QApplication::font("QMdiSubWindowTitleBar"));
    const QStyle* style = window->style();
    const int bar =
        qMax(style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window), metrics.height());
    const int frame = style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
    return metrics.horizontalAdvance(title) + 4 * bar + 2 * frame;
}

} // namespace

MessageWindow::MessageWindow() {
    window = new ReportingFrame(onClose);
    window->setObjectName("frmMessage");
    window->setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    layout = new QVBoxLayout(window);
    // Never smaller than what it shows; it grows with its lines.
    layout->setSizeConstraint(QLayout::SetMinimumSize);
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
    // Keeps the window as wide as its title bar needs.
    titleStrut = new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
    layout->addItem(titleStrut);

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
    fit();
}

void MessageWindow::setHeadline(const QString& headline) {
    fraMsg->setTitle(headline);
    fit();
}

void MessageWindow::setAccountLines(const QString& text, int) {
    // The label is as high as all its lines, the heading above the accounts
    // included; the caller's count is of the accounts alone.
    lblMsg->setText(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).trimmed());
    fit();
}

void MessageWindow::fit() {
    const QMargins margins = layout->contentsMargins();
    titleStrut->changeSize(
        qMax(0, TitleWidth(window, window->windowTitle()) - margins.left() - margins.right()), 0,
        QSizePolicy::Minimum, QSizePolicy::Fixed);
    // A label's new text reaches the window's layout only through the frame's
    // layout; both are measured again now, not when the events come round.
    fraMsg->layout()->invalidate();
    fraMsg->updateGeometry();
    layout->activate();
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
    fit();
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

std::unique_ptr<RuleReportView> WidgetWindowFactory::createRuleReportView() {
    return std::make_unique<RuleReportWindow>();
}

WidgetWindowFactory::WidgetWindowFactory() = default;
WidgetWindowFactory::~WidgetWindowFactory() = default;

PreviewView* WidgetWindowFactory::previewView() {
    if (!preview)
        preview = std::make_unique<PreviewWindow>();
    return preview.get();
}

std::unique_ptr<RuleFileView> WidgetWindowFactory::createRuleFileView() {
    return std::make_unique<RuleFileWindow>();
}

} // namespace velmora
