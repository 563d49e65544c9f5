#include "Foundation/Dispatch/DispatchQueue.h"

#include "Foundation/Dispatch/WorkerPool.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>

namespace platform {

class DispatchQueue::Line {
 public:
  explicit Line(std::string label) : label_(std::move(label)) {}
  virtual ~Line() = default;
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  [[nodiscard]] const std::string& label() const { return label_; }
  virtual void async(Block block) = 0;
  virtual void runInTurn(Block block) = 0;
  [[nodiscard]] virtual bool isCurrent() const = 0;

 private:
  std::string label_;
};

namespace {

using Line = DispatchQueue::Line;

/// The lines whose blocks the thread is in, innermost first: `sync` nests them.
class CurrentLine {
 public:
  explicit CurrentLine(const Line* line) : line_(line), outer_(innermost) { innermost = this; }
  ~CurrentLine() { innermost = outer_; }
  CurrentLine(const CurrentLine&) = delete;
  CurrentLine& operator=(const CurrentLine&) = delete;

  static bool contains(const Line* line) {
    for (const CurrentLine* current = innermost; current != nullptr; current = current->outer_) {
      if (current->line_ == line) return true;
    }
    return false;
  }

 private:
  static thread_local constinit const CurrentLine* innermost;
  const Line* line_;
  const CurrentLine* outer_;
};

thread_local constinit const CurrentLine* CurrentLine::innermost = nullptr;

class MainLine : public Line {
 public:
  MainLine() : Line("main") {}

  void async(Block block) override { Environment::current().mainLoop().post(std::move(block)); }

  void runInTurn(Block block) override {
    assert(!isCurrent() && "sync on the main queue from the main thread would wait for ever");
    std::packaged_task<void()> task(std::ref(block));
    std::future<void> end = task.get_future();
    async(std::move(task));
    end.get();
  }

  [[nodiscard]] bool isCurrent() const override {
    return Environment::current().mainLoop().isCurrent();
  }
};

class ConcurrentLine : public Line {
 public:
  ConcurrentLine(std::string label, QualityOfService urgency)
      : Line(std::move(label)), urgency_(urgency) {}

  void async(Block block) override {
    WorkerPool::shared().workBegan();
    WorkerPool::shared().submit(urgency_, [this, block = std::move(block)]() mutable {
      runInTurn(std::exchange(block, nullptr));
      WorkerPool::shared().workEnded();
    });
  }

  void runInTurn(Block block) override {
    const CurrentLine current(this);
    block();
  }

  [[nodiscard]] bool isCurrent() const override { return CurrentLine::contains(this); }

 private:
  QualityOfService urgency_;
};

/// One turn goes round: to the worker that runs the waiting blocks, and to each `sync` caller when
/// it comes to the front, which then runs its block on its own thread.
class SerialLine : public Line, public std::enable_shared_from_this<SerialLine> {
 public:
  SerialLine(std::string label, QualityOfService urgency)
      : Line(std::move(label)), urgency_(urgency) {}

  void async(Block block) override {
    WorkerPool::shared().workBegan();
    const std::scoped_lock lock(mutex_);
    waiting_.push_back({.block = std::move(block)});
    if (!std::exchange(turnTaken_, true)) callWorker();
  }

  void runInTurn(Block block) override {
    assert(!isCurrent() && "sync on the queue that is already current would wait for ever");
    struct Turn {
      SerialLine& line;
      explicit Turn(SerialLine& owner) : line(owner) { line.takeTurn(); }
      ~Turn() { line.passTurn(); }
    };
    const Turn turn(*this);
    const CurrentLine current(this);
    block();
  }

  [[nodiscard]] bool isCurrent() const override { return CurrentLine::contains(this); }

 private:
  struct Caller {
    std::condition_variable wake;
    bool hasTurn = false;
  };
  struct Entry {
    Block block = nullptr;
    Caller* caller = nullptr;  // who waits, where there is no block
  };

  void takeTurn() {
    std::unique_lock lock(mutex_);
    if (!std::exchange(turnTaken_, true)) return;
    Caller caller;
    waiting_.push_back({.caller = &caller});
    caller.wake.wait(lock, [&] { return caller.hasTurn; });
  }

  void passTurn() {
    const std::scoped_lock lock(mutex_);
    if (!waiting_.empty() && waiting_.front().block) {
      callWorker();
    } else {
      passTurnToCaller();
    }
  }

  void callWorker() {
    WorkerPool::shared().submit(urgency_, [self = shared_from_this()] { self->runBlocks(); });
  }

  void runBlocks() {
    const CurrentLine current(this);
    while (Block block = nextBlock()) {
      block();
      block = nullptr;
      WorkerPool::shared().workEnded();
    }
  }

  /// Empty when the worker no longer has the turn.
  Block nextBlock() {
    const std::scoped_lock lock(mutex_);
    if (waiting_.empty() || !waiting_.front().block) {
      passTurnToCaller();
      return nullptr;
    }
    Block block = std::move(waiting_.front().block);
    waiting_.pop_front();
    return block;
  }

  void passTurnToCaller() {
    if (waiting_.empty()) {
      turnTaken_ = false;
      return;
    }
    Caller* caller = waiting_.front().caller;
    waiting_.pop_front();
    caller->hasTurn = true;
    caller->wake.notify_one();
  }

  QualityOfService urgency_;
  std::mutex mutex_;
  std::deque<Entry> waiting_;
  bool turnTaken_ = false;
};

}  // namespace

DispatchQueue::DispatchQueue(std::shared_ptr<Line> line) : line_(std::move(line)) {}

DispatchQueue::DispatchQueue(std::string label, QualityOfService qualityOfService)
    : line_(std::make_shared<SerialLine>(std::move(label), qualityOfService)) {}

const DispatchQueue& DispatchQueue::main() {
  static const auto* queue = new DispatchQueue(std::make_shared<MainLine>());
  return *queue;
}

const DispatchQueue& DispatchQueue::global(QualityOfService qualityOfService) {
  const auto make = [](const char* label, QualityOfService urgency) {
    return DispatchQueue(std::make_shared<ConcurrentLine>(label, urgency));
  };
  using enum QualityOfService;
  static const auto* queues =
      new std::array{make("global.userInteractive", userInteractive),
                     make("global.userInitiated", userInitiated), make("global.default", default_),
                     make("global.utility", utility), make("global.background", background)};
  return queues->at(static_cast<std::size_t>(qualityOfService));
}

const std::string& DispatchQueue::label() const {
  return line_->label();
}

void DispatchQueue::async(Block block) const {
  assert(block && "a queue was given an empty block");
  line_->async(std::move(block));
}

void DispatchQueue::asyncAfter(TimeInterval seconds, Block block) const {
  Environment& environment = Environment::current();
  environment.timedWork().schedule(
      environment.mediaTime() + std::max(0.0, seconds),
      [queue = *this, block = std::move(block)]() mutable { queue.async(std::move(block)); });
}

void DispatchQueue::runInTurn(Block block) const {
  line_->runInTurn(std::move(block));
}

bool DispatchQueue::isCurrent() const {
  return line_->isCurrent();
}

}  // namespace platform
