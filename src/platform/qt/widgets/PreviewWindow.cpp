#include "platform/qt/widgets/PreviewWindow.h"

#include "platform/qt/widgets/Pictures.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

// The window is never smaller than this, in twips.
constexpr int MinimumWidthTwips = 5600;
constexpr int MinimumHeightTwips = 4000;

// The frame's close box unloads the preview, and the frame closes with it:
// a close the window refused would also hold up the program's own quit.
class PreviewFrame : public QWidget {
public:
    PreviewFrame(std::function<void()>& onClose, std::function<void()>& onActivate)
        : onClose(onClose), onActivate(onActivate) {}

protected:
    void closeEvent(QCloseEvent* event) override {
        if (onClose)
            onClose();
        event->accept();
    }

    bool event(QEvent* event) override {
        if (event->type() == QEvent::WindowActivate && onActivate)
            onActivate();
        return QWidget::event(event);
    }

private:
    std::function<void()>& onClose;
    std::function<void()>& onActivate;
};

QLineEdit* Field(QGridLayout* grid, int row, const char* name, const QString& label) {
    auto* caption = new QLabel(label);
    caption->setObjectName(QLatin1String("lblPrv") + QLatin1String(name));
    auto* field = new QLineEdit;
    field->setObjectName(QLatin1String("txtPrv") + QLatin1String(name));
    field->setReadOnly(true);
    caption->setBuddy(field);
    grid->addWidget(caption, row, 0);
    grid->addWidget(field, row, 1);
    return field;
}

QPlainTextEdit* Text(const char* name) {
    auto* text = new QPlainTextEdit;
    text->setObjectName(QLatin1String(name));
    text->setReadOnly(true);
    // Selectable by keyboard as well, so that the text can be read and
    // copied without a mouse.
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    return text;
}

QIcon ButtonPicture(const QString& key) {
    if (key == QLatin1String("Exit Preview"))
        return Pictures::Keyed(QStringLiteral("Close"));
    return Pictures::Keyed(key);
}

} // namespace

PreviewWindow::PreviewWindow() {
    window = new PreviewFrame(onClose, onActivate);
    window->setObjectName("frmPreview");
    window->setWindowFlags(Qt::Window);
    const int dpi = window->logicalDpiX();
    window->setMinimumSize(MinimumWidthTwips * dpi / 1440, MinimumHeightTwips * dpi / 1440);
    window->resize(640, 560);
    auto* layout = new QVBoxLayout(window);

    auto* buttonRow = new QHBoxLayout;
    buttonRow->setSpacing(2);
    for (const char* key : {"Save", "Print", "Delete", "Reply", "Open", "Exit Preview"}) {
        auto* button = new QToolButton;
        const QString k = QLatin1String(key);
        button->setObjectName(QStringLiteral("tbrButtons/") + k);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIcon(ButtonPicture(k));
        button->setAutoRaise(true);
        QObject::connect(button, &QToolButton::clicked, window, [this, button] {
            // The logic goes by the caption, as the user read it.
            if (handlers.buttonClick)
                handlers.buttonClick(button->property("caption").toString());
        });
        buttons.insert(k, button);
        buttonRow->addWidget(button);
    }
    buttonRow->addStretch(1);
    layout->addLayout(buttonRow);

    auto* header = new QHBoxLayout;
    auto* imgEnvelope = new QLabel;
    imgEnvelope->setObjectName("imgEnvelope");
    imgEnvelope->setPixmap(Pictures::Keyed(QStringLiteral("Preview")).pixmap(32, 32));
    header->addWidget(imgEnvelope, 0, Qt::AlignTop);
    auto* grid = new QGridLayout;
    txtPrvFrom = Field(grid, 0, "From", QStringLiteral("&From:"));
    txtPrvTo = Field(grid, 1, "To", QStringLiteral("&To:"));
    txtPrvDate = Field(grid, 2, "Date", QStringLiteral("&Date:"));
    txtPrvSubject = Field(grid, 3, "Subject", QStringLiteral("&Subject:"));
    grid->setColumnStretch(1, 1);
    header->addLayout(grid, 1);
    layout->addLayout(header);

    TabStrip = new QTabWidget;
    TabStrip->setObjectName("TabStrip");
    TabStrip->setAccessibleName(QStringLiteral("Message"));
    rtbBody = Text("rtbBody");
    rtbRawMsg = Text("rtbRawMsg");
    TabStrip->addTab(rtbBody, QString());
    TabStrip->addTab(rtbRawMsg, QString());
    layout->addWidget(TabStrip, 1);
    QObject::connect(TabStrip, &QTabWidget::currentChanged, window, [this](int index) {
        if (!filling && handlers.tabClick)
            handlers.tabClick(index + 1);
    });
}

PreviewWindow::~PreviewWindow() {
    // Made once for the run and gone with the factory, after the event
    // loop: nothing of it can be on the stack by then.
    delete window;
}

void PreviewWindow::setCaption(const QString& caption) {
    window->setWindowTitle(caption);
}

void PreviewWindow::setFields(const QString& from, const QString& to, const QString& date,
                              const QString& subject) {
    const std::pair<QLineEdit*, QString> fields[] = {
        {txtPrvFrom, from}, {txtPrvTo, to}, {txtPrvDate, date}, {txtPrvSubject, subject}};
    for (const auto& [field, text] : fields) {
        field->setText(text);
        // Long addresses are read from their start.
        field->setCursorPosition(0);
    }
}

void PreviewWindow::setTabs(const QStringList& captions) {
    filling = true;
    for (int i = 0; i < TabStrip->count(); ++i) {
        TabStrip->setTabText(i, captions.value(i));
        TabStrip->widget(i)->setAccessibleName(captions.value(i));
    }
    filling = false;
}

void PreviewWindow::selectTab(int tab) {
    filling = true;
    TabStrip->setCurrentIndex(tab - 1);
    filling = false;
}

void PreviewWindow::setTexts(const QString& body, const QString& raw) {
    // Plain text always: a message is never taken for markup.
    rtbBody->setPlainText(body);
    rtbRawMsg->setPlainText(raw);
}

void PreviewWindow::showSide(int tab) {
    selectTab(tab);
    QPlainTextEdit* text = tab == 2 ? rtbRawMsg : rtbBody;
    text->moveCursor(QTextCursor::Start);
    text->setFocus();
}

void PreviewWindow::setButton(const QString& key, const QString& caption, const QString& tip) {
    QToolButton* button = buttons.value(key);
    if (!button)
        return;
    button->setProperty("caption", caption);
    // The blanks that set a caption's width are for the eye alone.
    button->setText(caption.trimmed());
    button->setAccessibleName(caption.trimmed());
    button->setToolTip(tip);
}

void PreviewWindow::setRaisedButtons(bool raised) {
    for (QToolButton* button : std::as_const(buttons))
        button->setAutoRaise(!raised);
}

void PreviewWindow::showWindow() {
    if (!placed) {
        placed = true;
        if (const QScreen* screen = QGuiApplication::primaryScreen()) {
            QRect frame = window->frameGeometry();
            frame.moveCenter(screen->availableGeometry().center());
            window->move(frame.topLeft());
        }
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void PreviewWindow::hideWindow() {
    window->hide();
}

void PreviewWindow::raiseWindow() {
    if (window->isMinimized())
        window->showNormal();
    window->show();
    window->raise();
    window->activateWindow();
}

void PreviewWindow::focusBody() {
    // Behind the raw text the body cannot take the focus, and does not.
    if (rtbBody->isVisible())
        rtbBody->setFocus();
}

void PreviewWindow::setHandlers(Handlers h) {
    handlers = std::move(h);
    onClose = handlers.close;
    onActivate = handlers.activated;
}

} // namespace velmora
