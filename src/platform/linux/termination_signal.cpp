#include "platform/termination_signal.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kartocheck {

namespace {

constexpr std::array<int, 3> Signals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write to a descriptor; the notifier at the other end of
// the pair carries the request over to the event loop.
std::array<int, 2> pair{-1, -1};

// Whoever asks twice does not want to wait any longer: the second request ends the program as if it
// had never been caught.
volatile std::sig_atomic_t requests = 0;

extern "C" void WriteByte(int signal) {
  if (requests != 0) {
    std::signal(signal, SIG_DFL);
    // Blocked until this handler returns.
    std::raise(signal);
    return;
  }
  requests = 1;
  const int error = errno;
  const char byte = 1;
  [[maybe_unused]] const auto written = ::write(pair[0], &byte, sizeof byte);
  errno = error;
}

std::array<int, 2> OpenPair() {
  std::array<int, 2> sockets{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets.data()) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  return sockets;
}

void Handle(void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : Signals) ::sigaction(signal, &action, nullptr);
}

}  // namespace

class TerminationSignal::Watcher {
 public:
  explicit Watcher(std::function<void()> onRequest) : onRequest_(std::move(onRequest)) {
    pair = OpenPair();
    requests = 0;
    notifier_ = std::make_unique<QSocketNotifier>(pair[1], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
      char byte = 0;
      if (::read(pair[1], &byte, sizeof byte) > 0) onRequest_();
    });
    Handle(&WriteByte);
  }

  ~Watcher() {
    Handle(SIG_DFL);
    notifier_.reset();
    for (int& end : pair) ::close(std::exchange(end, -1));
  }

  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

 private:
  std::function<void()> onRequest_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

TerminationSignal::TerminationSignal(std::function<void()> onRequest)
    : watcher_(std::make_unique<Watcher>(std::move(onRequest))) {}

TerminationSignal::~TerminationSignal() = default;

}  // namespace kartocheck
