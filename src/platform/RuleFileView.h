#pragma once

#include <QString>

namespace velmora {

// frmRuleFile: asks for a new Rules file name. It shows a note, the folder
// and the current name, and a text box that opens with its text selected
// whole and the focus.
class RuleFileView {
public:
    virtual ~RuleFileView() = default;

    virtual void setCaption(const QString& caption) = 0;
    virtual void setIntro(const QString& intro) = 0;
    virtual void setFolder(const QString& folder) = 0;
    virtual void setCurrentName(const QString& name) = 0;
    virtual void setNewName(const QString& name) = 0;
    // Modal: true for Save, with the text as the user left it; false for
    // Cancel or the close box.
    virtual bool exec(QString& newName) = 0;
};

} // namespace velmora
