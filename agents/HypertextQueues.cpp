#include "HypertextQueues.h"

#include <chrono>
#include <future>

#include <boost/asio/post.hpp>

#include "DocumentUpdate.h"
#include "Log.h"
#include "RylRunLoop.h"

HypertextQueues::HypertextQueues(Hypertext* document, RylRunLoop& loop)
    : document(document), loop(loop), work(boost::asio::make_strand(loop.Context())) {
    agentQueue = std::make_unique<RylOperationQueue>("Agent Operations", work);
    updateQueue = std::make_unique<RylOperationQueue>("Manual Agent Updates", work);
    edictQueue = std::make_unique<RylOperationQueue>("Edict Operations", work);
}

HypertextQueues::~HypertextQueues() = default;

void HypertextQueues::UpdateAgentsNow() {
    Hypertext* doc = document;
    updateQueue->AddOperation([doc] { ::UpdateAgentsNow(doc); });
}

bool HypertextQueues::IsMainQueue() const { return loop.IsLoopThread(); }

bool HypertextQueues::OnMainQueueWithTimeout(double seconds, std::function<void()> block) {
    if (IsMainQueue()) {
        block();
        return true;
    }
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> finished = done->get_future();
    boost::asio::post(loop.Context(), [block = std::move(block), done] {
        block();
        done->set_value();
    });
    if (finished.wait_for(std::chrono::duration<double>(seconds)) != std::future_status::ready) {
        LogLine("OnMainQueueWithTimeout timed out");
        return false;
    }
    return true;
}

long HypertextQueues::Pending() const {
    return agentQueue->OperationCount() + updateQueue->OperationCount() + edictQueue->OperationCount();
}

void HypertextQueues::CancelAll() {
    agentQueue->CancelAllOperations();
    updateQueue->CancelAllOperations();
    edictQueue->CancelAllOperations();
}
