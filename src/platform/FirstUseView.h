#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace velmora {

// The welcome window of a first start: a caption, the version, the year
// notice, a greeting and the paragraphs of how to begin, with one button
// that closes it. It does not hold the program up.
class FirstUseView {
public:
    virtual ~FirstUseView() = default;

    virtual void setCaption(const QString& caption) = 0;
    virtual void setVersion(const QString& version) = 0;
    virtual void setCopyright(const QString& notice) = 0;
    virtual void setWelcome(const QString& welcome) = 0;
    virtual void setParagraphs(const QStringList& paragraphs) = 0;
    // The toolbar's buttons raised, as the main form's are.
    virtual void setRaisedButtons(bool raised) = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // Called when the user closes it, by its button or its close box.
    virtual void setOnClose(std::function<void()> handler) = 0;
};

} // namespace velmora
