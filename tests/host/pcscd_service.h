#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace ctapi::test {

// Leaves the machine's network: everything this process and its children do from now on stays on a
// loopback of its own. False where the system does not allow it.
[[nodiscard]] bool EnterOwnNetwork();

// The PC/SC service of the system, in the foreground, with the virtual reader driver. In a network
// and a folder for its socket of its own; ends with the object.
class PcscdService {
 public:
  enum class Readers { Virtual, None };
  // Nothing where the service cannot be started here; reason tells why.
  [[nodiscard]] static std::unique_ptr<PcscdService> Start(std::string& reason,
                                                           Readers readers = Readers::Virtual);
  ~PcscdService();
  PcscdService(const PcscdService&) = delete;
  PcscdService& operator=(const PcscdService&) = delete;

  // Ends the service at once.
  void Kill();

 private:
  explicit PcscdService(pid_t process) : process_(process) {}
  pid_t process_;
};

// A card in the driver's first slot: dials the driver and serves it until pulled.
class VirtualCard {
 public:
  using Bytes = std::vector<std::uint8_t>;
  struct Behaviour {
    Bytes Atr{};
    std::function<void()> Reset = [] {};
    // Nothing: the card is pulled during the exchange.
    std::function<std::optional<Bytes>(const Bytes& command)> Transmit{};
  };

  explicit VirtualCard(Behaviour behaviour);
  ~VirtualCard();
  VirtualCard(const VirtualCard&) = delete;
  VirtualCard& operator=(const VirtualCard&) = delete;

  // Whether the driver was reached.
  [[nodiscard]] bool IsIn() const { return socket_ >= 0; }
  // What came from the driver so far, without its regular looks whether the card is still there:
  // commands, and control codes of one byte for power off (0), power on (1) and reset (2).
  [[nodiscard]] std::vector<Bytes> Trace() const;
  // The commands of it.
  [[nodiscard]] std::vector<Bytes> Commands() const;

 private:
  void Serve();
  void Note(const Bytes& message);

  Behaviour behaviour_;
  int socket_ = -1;
  mutable std::mutex mutex_;
  std::vector<Bytes> trace_;
  std::thread thread_;
};

// Repeats the question until it is answered with yes, for a few seconds.
[[nodiscard]] bool Eventually(const std::function<bool()>& question,
                              std::chrono::seconds longest = std::chrono::seconds(8));

}  // namespace ctapi::test
