#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace kartocheck::test {

// A card terminal at the other end of a serial line. The line is a pseudo-terminal; a thread of its
// own answers each resynchronisation request (12 C0 00 D2) that comes at the terminal's rate, and
// lets every other rate go unheard.
class SerialLineTerminal {
 public:
  struct Behaviour {
    int baud = 0;         // 0: silent at every rate
    QByteArray answer{};  // to a resynchronisation request
    int unpluggedAt = 0;  // baud: the device disappears when a request comes at this rate
  };

  explicit SerialLineTerminal(Behaviour behaviour);
  ~SerialLineTerminal();

  SerialLineTerminal(const SerialLineTerminal&) = delete;
  SerialLineTerminal& operator=(const SerialLineTerminal&) = delete;

  // The device file of the PC's end.
  [[nodiscard]] const QString& Device() const { return device_; }

  // Rates in baud at which a request came, in order; 0 where the line is not set to eight data bits
  // and one stop bit.
  [[nodiscard]] std::vector<int> RequestedRates() const;

 private:
  void Serve();
  [[nodiscard]] bool Hear(const QByteArray& bytes);

  const Behaviour behaviour_;
  int line_ = -1;
  QString device_;
  QByteArray heard_;
  mutable std::mutex guard_;
  std::vector<int> rates_;
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

}  // namespace kartocheck::test
