#pragma once

#include "platform/MessageView.h"

namespace velmora {

// The Auto Check Message without a screen; the factory keeps the last one
// made, alive or not, for the test to read.
class FakeMessageView : public MessageView {
public:
    struct State {
        QString caption, headline, lines;
        int lineCount = 0;
        int countdown = -1;
        bool onTop = false;
        bool destroyed = false;
    };
    explicit FakeMessageView(std::shared_ptr<State> state) : s(std::move(state)) {}
    ~FakeMessageView() override { s->destroyed = true; }

    void setCaption(const QString& caption) override { s->caption = caption; }
    void setHeadline(const QString& headline) override { s->headline = headline; }
    void setAccountLines(const QString& text, int lines) override {
        s->lines = text;
        s->lineCount = lines;
    }
    void setCountdownVisible(bool) override {}
    void setCountdown(int seconds) override { s->countdown = seconds; }
    void setNextCheck(const QString&) override {}
    void setStayOnTop(bool onTop) override { s->onTop = onTop; }
    void showWindow() override {}
    void hideWindow() override {}
    void setOnClose(std::function<void()>) override {}

private:
    std::shared_ptr<State> s;
};

class FakeWindowFactory : public WindowFactory {
public:
    std::unique_ptr<MessageView> createMessageView() override {
        last = std::make_shared<FakeMessageView::State>();
        return std::make_unique<FakeMessageView>(last);
    }
    std::shared_ptr<FakeMessageView::State> last;
};

} // namespace velmora
