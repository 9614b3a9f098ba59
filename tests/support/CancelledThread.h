#pragma once

#include <pthread.h>

namespace Support {

/// Runs a function in a new thread, and returns whether the thread was cancelled before the function
/// returned.
template <class Function>
bool IsCancelled(Function function) {
  pthread_t thread;
  const auto run = [](void* data) -> void* {
    (*static_cast<Function*>(data))();
    return nullptr;
  };
  if (pthread_create(&thread, nullptr, run, &function) != 0) return false;
  void* result = nullptr;
  return pthread_join(thread, &result) == 0 && result == PTHREAD_CANCELED;
}

/// Runs a function in a thread that has already been cancelled, and returns whether the cancellation took
/// effect only after the function had returned.
template <class Function>
bool FinishesBeforeItIsCancelled(Function function) {
  bool finished = false;
  const bool cancelled = IsCancelled([&] {
    pthread_cancel(pthread_self());
    function();
    finished = true;
    pthread_testcancel();
  });
  return finished && cancelled;
}

}  // namespace Support
