#pragma once

#include "messages/MimeParser.h"
#include "rules/NeedleScanner.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

namespace velmora {

// Parses retrieved messages beside the retrieval, on a thread of its own,
// so that the parse of one message overlaps the download of the next, and
// scans the fields for the rules' needles. It shares nothing with the
// program but the bytes it is given, the scanners, which never change, and
// the result it hands back; the program itself stays on one thread.
class ParseWorker {
public:
    ParseWorker();
    // Finishes what it holds and ends.
    ~ParseWorker();

    // The parse of a message, to be had by calling the result: it parses
    // right there if the worker has not begun; otherwise, while the worker
    // is at it, it parses others still waiting, then takes the worker's.
    // With a locale, the date is also written as the message list shows it.
    std::function<ParsedMessage()> submit(QByteArray message, QDateTime retrievedAt,
                                          std::shared_ptr<const FieldScanners> scanners = {},
                                          std::optional<QLocale> dateLocale = {});

private:
    struct Queue;
    static void run(Queue& queue);

    std::shared_ptr<Queue> queue;
    std::thread thread;
};

} // namespace velmora
