#include "platform/qt/widgets/RuleFileWindow.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

namespace {

// Whenever the dialog comes to the front, the new name is selected whole
// and has the focus, so typing replaces it.
class SelectOnShow : public QObject {
public:
    explicit SelectOnShow(QLineEdit* edit) : QObject(edit), edit(edit) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate) {
            edit->selectAll();
            edit->setFocus(Qt::ActiveWindowFocusReason);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QLineEdit* edit;
};

QLabel* Value(QLabel*& label) {
    label = new QLabel;
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

RuleFileWindow::RuleFileWindow() : window(std::make_unique<QDialog>(QApplication::activeWindow())) {
    QDialog* d = window.get();
    d->setObjectName(QStringLiteral("frmRuleFile"));
    d->setWindowModality(Qt::ApplicationModal);
    auto* layout = new QVBoxLayout(d);

    auto* note = new QGroupBox(QStringLiteral("Please Note"));
    note->setObjectName(QStringLiteral("fraRuleFileIntro"));
    auto* noteLayout = new QVBoxLayout(note);
    lblRuleFileIntro = new QLabel;
    lblRuleFileIntro->setWordWrap(true);
    lblRuleFileIntro->setMinimumWidth(380);
    noteLayout->addWidget(lblRuleFileIntro);
    layout->addWidget(note);

    auto* form = new QGridLayout;
    form->setColumnStretch(1, 1);
    auto* location = new QLabel(QStringLiteral("File Location:"));
    Value(lblRuleFilePathCurrent);
    location->setBuddy(lblRuleFilePathCurrent);
    form->addWidget(location, 0, 0);
    form->addWidget(lblRuleFilePathCurrent, 0, 1);
    auto* current = new QLabel(QStringLiteral("Current FileName:"));
    Value(lblRuleFileNameCurrent);
    current->setBuddy(lblRuleFileNameCurrent);
    form->addWidget(current, 1, 0);
    form->addWidget(lblRuleFileNameCurrent, 1, 1);
    auto* newName = new QLabel(QStringLiteral("Enter &New FileName:"));
    txtRuleFileName = new QLineEdit;
    txtRuleFileName->setObjectName(QStringLiteral("txtRuleFileName"));
    txtRuleFileName->setAccessibleName(QStringLiteral("Enter New FileName"));
    newName->setBuddy(txtRuleFileName);
    form->addWidget(newName, 2, 0);
    form->addWidget(txtRuleFileName, 2, 1);
    layout->addLayout(form);

    auto* buttons = new QDialogButtonBox;
    QPushButton* save = buttons->addButton(QStringLiteral("Save"), QDialogButtonBox::AcceptRole);
    save->setObjectName(QStringLiteral("Save"));
    save->setDefault(true);
    QPushButton* cancel =
        buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("Cancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, d, &QDialog::reject);
    layout->addWidget(buttons);
    d->installEventFilter(new SelectOnShow(txtRuleFileName));
}

RuleFileWindow::~RuleFileWindow() = default;

void RuleFileWindow::setCaption(const QString& caption) {
    window->setWindowTitle(caption);
}

void RuleFileWindow::setIntro(const QString& intro) {
    lblRuleFileIntro->setText(intro);
}

void RuleFileWindow::setFolder(const QString& folder) {
    lblRuleFilePathCurrent->setText(folder);
}

void RuleFileWindow::setCurrentName(const QString& name) {
    lblRuleFileNameCurrent->setText(name);
}

void RuleFileWindow::setNewName(const QString& name) {
    txtRuleFileName->setText(name);
}

bool RuleFileWindow::exec(QString& newName) {
    if (window->exec() != QDialog::Accepted)
        return false;
    newName = txtRuleFileName->text();
    return true;
}

} // namespace velmora
