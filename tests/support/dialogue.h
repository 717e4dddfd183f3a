#pragma once

#include <QByteArray>
#include <QString>

#include <string>
#include <vector>

#include "platform/ct_api.h"

namespace kartocheck::test {

// One step of a written dialogue. Each line is one step; blank lines and what follows a '#' are
// comments:
//
//   open 1            init on port 1 succeeds          open 1 -> -10   ... returns -10
//   baud 9600         CT_get_baudrate tells 9600       baud -> -1      ... fails
//   close             close succeeds                   close -> -8     ... fails
//   > 20 11 00 00 00  the command that must come next; class 20 must go to the terminal, any other
//                     class to the card
//   < 95 00           its response                     < -> -10        ... the call returns -10
//
// In commands and responses 'text' stands for its bytes in ISO-8859-1, and {A}, {B} ... for the
// bytes of the sample record of that name.
struct DialogueStep {
  enum class Kind { Open, Baud, Close, Exchange } kind;
  int line = 0;
  QString source{};  // the step as written
  int number = 0;    // port number or baud rate
  QByteArray command{};
  QByteArray response{};
  int code = 0;
};

// Throws std::invalid_argument at the first line that is no step.
[[nodiscard]] std::vector<DialogueStep> ParseDialogue(const std::string& script);

// A CT-API library that replays a recorded dialogue. An open without a baud line behind it tells
// 9600. A call that is not the next step fails the test with step, expected and actual; so do steps
// that are left over when the dialogue goes away.
class Dialogue final : public CtApi {
 public:
  explicit Dialogue(const std::string& script);
  ~Dialogue() override;

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  const DialogueStep* Expect(DialogueStep::Kind kind, const QString& actual);

  std::vector<DialogueStep> steps_;
  std::size_t next_ = 0;
};

}  // namespace kartocheck::test
