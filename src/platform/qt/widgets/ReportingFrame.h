#pragma once

#include <QCloseEvent>
#include <QWidget>
#include <functional>

namespace velmora {

// The frame of a secondary window: its close box is reported, not obeyed,
// so the logic closes the window as it does for the window's own button.
class ReportingFrame : public QWidget {
public:
    explicit ReportingFrame(std::function<void()>& onClose) : onClose(onClose) {}

protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        if (onClose)
            onClose();
    }

private:
    std::function<void()>& onClose;
};

} // namespace velmora
