// Worker threads: ThreadBase owns one thread, Thread<Job, Arg> binds a job class to it.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "core/job.h"

namespace omniset {

// All operations but run() are for the owner's thread.
class ThreadBase {
 public:
  // exitCode() of a thread that still runs.
  static constexpr unsigned long kStillActive = 259;

  // The thread's body, called in the new thread.
  virtual void run() = 0;

  virtual ~ThreadBase();
  ThreadBase(const ThreadBase&) = delete;
  ThreadBase& operator=(const ThreadBase&) = delete;

  // Raises std::runtime_error "thread already started", Error "CreateThread".
  void start();

  // Sets the stop event and waits for the thread, at most the stop timeout; a thread that does not
  // end in time is reported in the trace and left running. Raises std::runtime_error
  // "stopping stopped thread", Error "Object WaitForSingleObject".
  void stop();

  // Raises Error "GetExitCodeThread", also when the thread was never started.
  unsigned long exitCode() const;

  const std::string& name() const { return name_; }

 protected:
  // `stopEvent` may be null and is not owned.
  ThreadBase(std::string name, int stopTimeoutMs, Event* stopEvent);

  // Ends a thread that still runs. To be called first in the destructor of every derived class:
  // after it the thread no longer touches what that class owns, except for a job that it keeps.
  void terminateIfActive();

  // Called by run() when from then on it touches nothing of this object but the job. Where threads
  // cannot be ended from outside, such a thread is left behind with a share in its job; one that
  // never says so is waited for.
  void keepJob(std::shared_ptr<const void> job);

 private:
  struct Native;

  static void threadEntry(ThreadBase& base, const std::string& name, unsigned long id,
                          Native& native);
  // Called in the thread when its job has returned or thrown: it needs its owner no more, and has
  // only its last lines to trace.
  static void jobEnded(Native& native);

  std::shared_ptr<Native> native_;
  bool started_ = false;
  std::string name_;
  int stopTimeoutMs_;
  Event* stopEvent_;
};

// Owns a job constructed from `arg`, and from the services that are handed to it behind `arg`.
template <class Job, class Arg>
class Thread : public ThreadBase {
 public:
  template <class... Handed>
  Thread(std::string name, int stopTimeoutMs, Arg arg, Handed&&... handed)
      : Thread(std::move(name), stopTimeoutMs,
               std::make_shared<Job>(std::move(arg), std::forward<Handed>(handed)...)) {}
  ~Thread() override { terminateIfActive(); }

  void run() override {
    Job& job = *job_;
    keepJob(job_);
    job.run();
  }

  Job& job() { return *job_; }

 private:
  Thread(std::string name, int stopTimeoutMs, std::shared_ptr<Job> job)
      : ThreadBase(std::move(name), stopTimeoutMs, &job->stopEvent()), job_(std::move(job)) {}

  std::shared_ptr<Job> job_;
};

}  // namespace omniset
