#include "platform/qt/ParseWorker.h"

#include "messages/Capture.h"
#include "messages/DateText.h"

namespace velmora {

namespace {

struct Job {
    QByteArray message; // let go once parsed, so its memory serves the next
    QDateTime retrievedAt;
    std::shared_ptr<const FieldScanners> scanners;
    std::optional<QLocale> dateLocale;
    // Whoever takes the job first parses it: the worker in the background,
    // or the program when it needs the result before the worker got there.
    std::atomic<bool> taken{false};
    std::promise<ParsedMessage> promise;
    std::future<ParsedMessage> future = promise.get_future();

    ParsedMessage parse() {
        ParsedMessage parsed = ParseMessage(message, retrievedAt);
        if (scanners)
            ScanForRules(parsed, scanners);
        // Written here, the date costs the list nothing once the last
        // message is in.
        if (dateLocale) {
            parsed.dateText = MessageDate(parsed.date, *dateLocale);
            parsed.dateLocale = dateLocale;
        }
        message = QByteArray();
        return parsed;
    }
    // Parses into the promise, unless someone took the job already.
    void run() {
        if (!taken.exchange(true))
            promise.set_value(parse());
    }
};

} // namespace

struct ParseWorker::Queue {
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::shared_ptr<Job>> jobs;
    bool stopping = false;

    // The job retrieved last of those still waiting, if any.
    std::shared_ptr<Job> takeLast() {
        const std::lock_guard<std::mutex> lock(mutex);
        if (jobs.empty())
            return nullptr;
        std::shared_ptr<Job> job = std::move(jobs.back());
        jobs.pop_back();
        return job;
    }
};

ParseWorker::ParseWorker() : queue(std::make_shared<Queue>()) {
    thread = std::thread([queue = queue] {
        // Loading and setting up the MIME library takes milliseconds: here
        // it runs beside whatever the other thread waits for.
        ParseMessage(QByteArray("\r\n"), QDateTime());
        run(*queue);
    });
}

ParseWorker::~ParseWorker() {
    {
        const std::lock_guard<std::mutex> lock(queue->mutex);
        queue->stopping = true;
    }
    queue->wake.notify_one();
    thread.join();
}

std::function<ParsedMessage()> ParseWorker::submit(QByteArray message, QDateTime retrievedAt,
                                                   std::shared_ptr<const FieldScanners> scanners,
                                                   std::optional<QLocale> dateLocale) {
    auto job = std::make_shared<Job>();
    job->message = std::move(message);
    job->retrievedAt = retrievedAt;
    job->scanners = std::move(scanners);
    job->dateLocale = std::move(dateLocale);
    {
        const std::lock_guard<std::mutex> lock(queue->mutex);
        queue->jobs.push_back(job);
    }
    queue->wake.notify_one();
    return [job, weak = std::weak_ptr<Queue>(queue)] {
        if (!job->taken.exchange(true))
            return job->parse();
        // The worker has this one in hand: rather than wait, parse what is
        // still waiting from the far end, where the worker will come last.
        while (job->future.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            const std::shared_ptr<Queue> queue = weak.lock();
            const std::shared_ptr<Job> other = queue ? queue->takeLast() : nullptr;
            if (!other)
                break;
            other->run();
        }
        return job->future.get();
    };
}

void ParseWorker::run(Queue& queue) {
    for (;;) {
        std::shared_ptr<Job> job;
        {
            std::unique_lock<std::mutex> lock(queue.mutex);
            queue.wake.wait(lock, [&queue] { return queue.stopping || !queue.jobs.empty(); });
            if (queue.jobs.empty())
                return;
            job = std::move(queue.jobs.front());
            queue.jobs.pop_front();
        }
        job->run();
    }
}

} // namespace velmora
