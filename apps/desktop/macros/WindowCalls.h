#pragma once

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

class QObject;

namespace poweranalysis {

// Carries calls of another thread over to the thread of a QObject, and waits for each. Unlike a
// blocking queued connection the wait can be given up, so the window may stop or outlive its
// caller at any time, even inside such a call, and neither waits for the other forever.
class WindowCalls : public std::enable_shared_from_this<WindowCalls> {
 public:
  explicit WindowCalls(QObject& window) : window_(&window) {}

  // The result of `work`, or what it raised. Raises std::runtime_error when the wait was given up:
  // the work is then not begun any more, or ends unheeded. So it must own all that it uses beside
  // the window.
  template <class Work>
  auto Do(Work work) {
    using Task = std::packaged_task<std::invoke_result_t<Work>()>;
    const auto task = std::make_shared<Task>(std::move(work));
    auto result = task->get_future();
    CarryOut([task] { (*task)(); });
    return result.get();
  }
  // As Do, without waiting; nothing after Close.
  void Post(std::function<void()> work);

  // From now on nothing new is begun; what runs is waited for.
  void Stop();
  // From now on the window is not touched, and nothing is waited for. On the window's thread, or
  // when no call is under way.
  void Close();

 private:
  struct Call {
    bool begun = false;
    bool done = false;
    bool abandoned = false;
  };

  void CarryOut(std::function<void()> work);
  void Begin(Call& call, const std::function<void()>& work);

  std::mutex mutex_;
  std::condition_variable changed_;
  QObject* window_;  // null once closed
  bool stopped_ = false;
};

}  // namespace poweranalysis
