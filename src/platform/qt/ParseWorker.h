#pragma once

#include "messages/MimeParser.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

namespace velmora {

// Parses retrieved messages beside the retrieval, on a thread of its own,
// so that the parse of one message overlaps the download of the next. It
// shares nothing with the program but the bytes it is given and the result
// it hands back; the program itself stays on one thread.
class ParseWorker {
public:
    ParseWorker();
    // Finishes what it holds and ends.
    ~ParseWorker();

    // The parse of a message, to be had by calling the result: it waits for
    // the worker, or parses right there if the worker has not begun.
    std::function<ParsedMessage()> submit(QByteArray message, QDateTime retrievedAt);

private:
    void run();

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> jobs;
    bool stopping = false;
    std::thread thread;
};

} // namespace velmora
