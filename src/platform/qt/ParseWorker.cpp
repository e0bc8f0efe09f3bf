#include "platform/qt/ParseWorker.h"

namespace velmora {

ParseWorker::ParseWorker() {
    // The parser's global tables are set up here, before the thread exists.
    ParseMessage(QByteArray("\r\n"), QDateTime());
    thread = std::thread([this] { run(); });
}

ParseWorker::~ParseWorker() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        stopping = true;
    }
    wake.notify_one();
    thread.join();
}

namespace {

struct Job {
    QByteArray message;
    QDateTime retrievedAt;
    // Whoever takes the job first parses it: the worker in the background,
    // or the program when it needs the result before the worker got there.
    std::atomic<bool> taken{false};
    std::promise<ParsedMessage> promise;
    std::future<ParsedMessage> future = promise.get_future();
};

} // namespace

std::function<ParsedMessage()> ParseWorker::submit(QByteArray message, QDateTime retrievedAt) {
    auto job = std::make_shared<Job>();
    job->message = std::move(message);
    job->retrievedAt = retrievedAt;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        jobs.emplace_back([job] {
            if (!job->taken.exchange(true))
                job->promise.set_value(ParseMessage(job->message, job->retrievedAt));
        });
    }
    wake.notify_one();
    return [job] {
        if (!job->taken.exchange(true))
            return ParseMessage(job->message, job->retrievedAt);
        return job->future.get();
    };
}

void ParseWorker::run() {
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(mutex);
            wake.wait(lock, [this] { return stopping || !jobs.empty(); });
            if (jobs.empty())
                return;
            job = std::move(jobs.front());
            jobs.pop_front();
        }
        job();
    }
}

} // namespace velmora
