#pragma once

#include "platform/RuleFileView.h"
#include "platform/qt/widgets/MessageWindow.h"

#include <memory>

class QDialog;
class QLabel;
class QLineEdit;

namespace velmora {

// frmRuleFile on screen: a modal dialog with a note, the folder, the
// current name and the new name, and Save and Cancel.
class RuleFileWindow : public RuleFileView {
public:
    RuleFileWindow();
    ~RuleFileWindow() override;

    void setCaption(const QString& caption) override;
    void setIntro(const QString& intro) override;
    void setFolder(const QString& folder) override;
    void setCurrentName(const QString& name) override;
    void setNewName(const QString& name) override;
    bool exec(QString& newName) override;

    QDialog* dialog() const { return window.get(); }

private:
    std::unique_ptr<QDialog> window;
    QLabel* lblRuleFileIntro = nullptr;
    QLabel* lblRuleFilePathCurrent = nullptr;
    QLabel* lblRuleFileNameCurrent = nullptr;
    QLineEdit* txtRuleFileName = nullptr;
};

} // namespace velmora
