#include "platform/qt/widgets/RuleReportWindow.h"

#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/ReportingFrame.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

QString Shown(const QString& text) {
    return QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

QLabel* Named(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    return label;
}

} // namespace

RuleReportWindow::RuleReportWindow() {
    window = new ReportingFrame(onClose);
    window->setObjectName("frmRuleReport");
    window->setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    auto* layout = new QVBoxLayout(window);
    layout->setSizeConstraint(QLayout::SetMinimumSize);

    lblRuleReport = Named("lblRuleReport");
    lblRuleReport->setWordWrap(true);
    layout->addWidget(lblRuleReport);

    tabs = new QTabBar;
    tabs->setObjectName("TabStripRuleReport");
    tabs->setAccessibleName(QStringLiteral("Rule Report"));
    tabs->setExpanding(false);
    layout->addWidget(tabs);
    QObject::connect(tabs, &QTabBar::currentChanged, window, [this](int index) {
        if (!filling && handlers.tabClick)
            handlers.tabClick(index + 1);
    });

    auto* sides = new QGridLayout;
    imgRuleDelete = Named("imgRuleDelete");
    imgRuleDelete->setPixmap(Pictures::Keyed("Delete").pixmap(32, 32));
    imgRuleSpam = Named("imgRuleSpam");
    imgRuleSpam->setPixmap(Pictures::Keyed("Spam").pixmap(32, 32));
    lblRuleDelete = Named("lblRuleDelete");
    lblRuleSpam = Named("lblRuleSpam");
    for (QLabel* label : {lblRuleDelete, lblRuleSpam}) {
        label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        label->setTextFormat(Qt::PlainText);
    }
    sides->addWidget(imgRuleDelete, 0, 0, Qt::AlignTop);
    sides->addWidget(lblRuleDelete, 0, 1);
    sides->addWidget(imgRuleSpam, 0, 0, Qt::AlignTop);
    sides->addWidget(lblRuleSpam, 0, 1);
    sides->setColumnStretch(1, 1);
    layout->addLayout(sides);

    lblRuleReportCaution = Named("lblRuleReportCaution");
    layout->addWidget(lblRuleReportCaution);

    auto* row = new QHBoxLayout;
    lblRuleReportCountDown = Named("lblRuleReportCountDown");
    row->addWidget(lblRuleReportCountDown);
    row->addStretch(1);
    for (const char* key : {"Timer", "DeleteNow", "Exit"}) {
        auto* button = new QToolButton;
        button->setObjectName(QStringLiteral("tbrRuleReport/") + QLatin1String(key));
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        QObject::connect(button, &QToolButton::clicked, window, [this, k = QString(key)] {
            if (handlers.buttonClick)
                handlers.buttonClick(k);
        });
        buttons.insert(QLatin1String(key), button);
        row->addWidget(button);
    }
    layout->addLayout(row);
}

RuleReportWindow::~RuleReportWindow() {
    if (window) {
        window->hide();
        window->deleteLater();
    }
}

void RuleReportWindow::setCaption(const QString& caption) {
    window->setWindowTitle(caption);
}

void RuleReportWindow::setHeading(const QString& heading) {
    lblRuleReport->setText(heading);
}

void RuleReportWindow::setCaution(const QString& caution) {
    lblRuleReportCaution->setText(caution);
}

void RuleReportWindow::setTabs(const QStringList& captions) {
    filling = true;
    while (tabs->count() > 0)
        tabs->removeTab(tabs->count() - 1);
    for (const QString& caption : captions)
        tabs->addTab(caption);
    filling = false;
}

void RuleReportWindow::selectTab(int tab) {
    filling = true;
    tabs->setCurrentIndex(tab - 1);
    filling = false;
}

void RuleReportWindow::setTexts(const QString& deleteText, const QString& spamText, int lines) {
    lblRuleDelete->setText(Shown(deleteText));
    lblRuleSpam->setText(Shown(spamText));
    // Both labels as high as the longer side needs, so a tab switch
    // doesn't resize the window.
    const int height = lblRuleDelete->fontMetrics().lineSpacing() * qMax(1, lines);
    lblRuleDelete->setMinimumHeight(height);
    lblRuleSpam->setMinimumHeight(height);
    window->adjustSize();
}

void RuleReportWindow::showSide(int tab) {
    lblRuleDelete->setVisible(tab == 1);
    imgRuleDelete->setVisible(tab == 1);
    lblRuleSpam->setVisible(tab != 1);
    imgRuleSpam->setVisible(tab != 1);
}

void RuleReportWindow::setCountdown(int seconds) {
    lblRuleReportCountDown->setText(QString::number(seconds));
}

void RuleReportWindow::setButton(const QString& key, const QString& caption, const QString& tip) {
    QToolButton* button = buttons.value(key);
    if (!button)
        return;
    // The blanks that set a caption's width are for the eye alone.
    button->setText(caption.trimmed());
    button->setAccessibleName(caption.trimmed());
    button->setToolTip(tip);
}

void RuleReportWindow::setButtonEnabled(const QString& key, bool enabled) {
    if (QToolButton* button = buttons.value(key))
        button->setEnabled(enabled);
}

void RuleReportWindow::setStayOnTop(bool onTop) {
    const bool shown = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (shown)
        window->show();
    // Where the window system ignores the hint, raising is what is left.
    if (onTop)
        window->raise();
}

void RuleReportWindow::showWindow() {
    window->show();
    window->raise();
}

void RuleReportWindow::hideWindow() {
    window->hide();
}

void RuleReportWindow::setHandlers(Handlers h) {
    handlers = std::move(h);
    onClose = handlers.close;
}

} // namespace velmora
