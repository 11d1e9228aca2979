#include "macros/WindowCalls.h"

#include <QMetaObject>
#include <QObject>
#include <stdexcept>

namespace poweranalysis {

void WindowCalls::Post(std::function<void()> work) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (window_ != nullptr) {
    QMetaObject::invokeMethod(window_, std::move(work), Qt::QueuedConnection);
  }
}

void WindowCalls::CarryOut(std::function<void()> work) {
  const auto call = std::make_shared<Call>();
  Post([self = shared_from_this(), call, work = std::move(work)] { self->Begin(*call, work); });
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock,
                [&] { return call->done || window_ == nullptr || (stopped_ && !call->begun); });
  if (!call->done) {
    call->abandoned = true;
    throw std::runtime_error(window_ == nullptr ? "The macro has ended" : "The macro was stopped");
  }
}

void WindowCalls::Begin(Call& call, const std::function<void()>& work) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (call.abandoned || stopped_ || window_ == nullptr) {
      return;
    }
    call.begun = true;
  }
  work();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    call.done = true;
  }
  changed_.notify_all();
}

void WindowCalls::Stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopped_ = true;
  }
  changed_.notify_all();
}

void WindowCalls::Close() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopped_ = true;
    window_ = nullptr;
  }
  changed_.notify_all();
}

}  // namespace poweranalysis
