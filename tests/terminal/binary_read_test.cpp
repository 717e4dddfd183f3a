#include "terminal/binary_read.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>

#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/filled_script.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

using Result = BinaryRead::Result;

// Bytes that tell where in a file they stand.
QByteArray FileOf(qsizetype size) {
  QByteArray file(size, Qt::Uninitialized);
  for (qsizetype i = 0; i < size; ++i) file[i] = static_cast<char>(i * 7 + i / 256);
  return file;
}

const QByteArray& File() {
  static const QByteArray Bytes = FileOf(0x8400);
  return Bytes;
}

// A read and the commands that it has to send; {from+count} are bytes of the file.
struct FileReadCase {
  const char* sentence;
  int offset;
  int count;
  const char* script;
  Result result;
  int received;  // bytes, from `offset` on
  std::optional<ctapi::StatusWord> statusWord;

  friend std::ostream& operator<<(std::ostream& out, const FileReadCase& row) {
    return out << row.sentence;
  }
};

class CtExchangeFileTest : public testing::TestWithParam<FileReadCase> {};

TEST_P(CtExchangeFileTest, SendsTheCommandsAndDeliversTheBytes) {
  const FileReadCase& row = GetParam();
  Dialogue dialogue(Filled(row.script, File()).c_str());
  Link link(dialogue);
  const BinaryRead read = CtExchangeFile(link.session, row.offset, row.count);
  EXPECT_EQ(read.result, row.result);
  EXPECT_EQ(read.Succeeded(), row.result == Result::Success);
  EXPECT_EQ(read.bytes, File().mid(row.offset, row.received));
  EXPECT_EQ(read.statusWord, row.statusWord);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CtExchangeFileTest,
    testing::Values(FileReadCase{"four bytes are asked for at once", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 90 00",
                                 Result::Success, 4, sw::Ok},
                    FileReadCase{"the offset stands in P1 and P2 big-endian", 0x1234, 1,
                                 "> 00 B0 12 34 01\n"
                                 "< {4660+1} 90 00",
                                 Result::Success, 1, sw::Ok},
                    FileReadCase{"252 bytes are asked for at once", 8, 252,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00",
                                 Result::Success, 252, sw::Ok},
                    FileReadCase{"253 bytes are asked for at once", 8, 253,
                                 "> 00 B0 00 08 FD\n"
                                 "< {8+253} 90 00",
                                 Result::Success, 253, sw::Ok},
                    FileReadCase{"254 bytes come in two pieces", 8, 254,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00\n"
                                 "> 00 B0 01 04 02\n"
                                 "< {260+2} 90 00",
                                 Result::Success, 254, sw::Ok},
                    FileReadCase{"two whole pieces need no third", 2, 504,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00",
                                 Result::Success, 504, sw::Ok},
                    FileReadCase{"one byte more than two pieces", 2, 505,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00\n"
                                 "> 00 B0 01 FA 01\n"
                                 "< {506+1} 90 00",
                                 Result::Success, 505, sw::Ok},
                    FileReadCase{"a short answer advances by what came", 2, 600,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+100} 90 00\n"
                                 "> 00 B0 00 66 FC\n"
                                 "< {102+252} 90 00\n"
                                 "> 00 B0 01 62 F8\n"
                                 "< {354+248} 90 00",
                                 Result::Success, 600, sw::Ok},
                    FileReadCase{"a short answer to a single command advances too", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+3} 90 00\n"
                                 "> 00 B0 00 03 01\n"
                                 "< {3+1} 90 00",
                                 Result::Success, 4, sw::Ok},
                    FileReadCase{"end of file with all bytes is success", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 62 82",
                                 Result::Success, 4, sw::EndOfFile},
                    FileReadCase{"a short answer with the end of file is the last", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+200} 62 82",
                                 Result::Success, 200, sw::EndOfFile},
                    FileReadCase{"in a single command as well", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+3} 62 82",
                                 Result::Success, 3, sw::EndOfFile},
                    FileReadCase{"a whole piece with the end of file is not yet the end", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 62 82\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< {252+48} 90 00",
                                 Result::Success, 300, sw::Ok},
                    FileReadCase{"an empty end of file ends the read with what there is", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 62 82",
                                 Result::Success, 252, sw::EndOfFile},
                    FileReadCase{"an empty success ends the read with what there is", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 90 00",
                                 Result::Success, 252, sw::Ok},
                    FileReadCase{"an empty file is read with no bytes", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< 62 82",
                                 Result::Success, 0, sw::EndOfFile},
                    FileReadCase{"more than asked is cut", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+9} 90 00",
                                 Result::Success, 4, sw::Ok},
                    FileReadCase{"more than the piece is cut and the next piece follows", 0, 254,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+256} 90 00\n"
                                 "> 00 B0 00 FC 02\n"
                                 "< {252+2} 90 00",
                                 Result::Success, 254, sw::Ok},
                    FileReadCase{"no access rights", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 69 82",
                                 Result::AccessDenied, 0, sw::SecurityStatus},
                    FileReadCase{"no access rights within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 69 82",
                                 Result::AccessDenied, 0, sw::SecurityStatus},
                    FileReadCase{"another status word fails", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 6B 00",
                                 Result::Failed, 0, sw::WrongOffset},
                    FileReadCase{"another status word fails with data too", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 62 81",
                                 Result::Failed, 0, ctapi::StatusWord(0x6281)},
                    FileReadCase{"the processor card's word is no success here", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 90 01",
                                 Result::Failed, 0, sw::OkProcessorCard},
                    FileReadCase{"another status word within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 6B 00",
                                 Result::Failed, 0, sw::WrongOffset},
                    FileReadCase{"a failed exchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< -> -10",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"a failed exchange within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< -> -8",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"an answer without status word is a failed exchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 90",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"the last offset", 0x7FFF, 1,
                                 "> 00 B0 7F FF 01\n"
                                 "< {32767+1} 90 00",
                                 Result::Success, 1, sw::Ok},
                    FileReadCase{"a piece may reach past the last offset", 0x7FFF, 10,
                                 "> 00 B0 7F FF 0A\n"
                                 "< {32767+10} 90 00",
                                 Result::Success, 10, sw::Ok},
                    FileReadCase{"the offset behind the last sends nothing", 0x8000, 1, "",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"the largest offset sends nothing", 0xFFFF, 65535, "",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"a piece behind the last offset is not sent", 0x7F10, 400,
                                 "> 00 B0 7F 10 FC\n"
                                 "< {32528+252} 90 00",
                                 Result::Failed, 0, std::nullopt},
                    FileReadCase{"nothing asked sends nothing", 0, 0, "", Result::Success, 0,
                                 std::nullopt}),
    SentenceName());

struct RecordReadCase {
  const char* sentence;
  quint16 p1p2;
  int bufferSize;
  const char* script;
  Result result;
  int received;
  std::optional<ctapi::StatusWord> statusWord;

  friend std::ostream& operator<<(std::ostream& out, const RecordReadCase& row) {
    return out << row.sentence;
  }
};

class CtExchangeRecordTest : public testing::TestWithParam<RecordReadCase> {};

TEST_P(CtExchangeRecordTest, SendsTheCommandsAndDeliversTheBytes) {
  const RecordReadCase& row = GetParam();
  Dialogue dialogue(Filled(row.script, File()).c_str());
  Link link(dialogue);
  const BinaryRead read = CtExchangeRecord(link.session, row.p1p2, row.bufferSize);
  EXPECT_EQ(read.result, row.result);
  EXPECT_EQ(read.Succeeded(), row.result == Result::Success);
  EXPECT_EQ(read.bytes, File().first(row.received));
  EXPECT_EQ(read.statusWord, row.statusWord);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CtExchangeRecordTest,
    testing::Values(RecordReadCase{"a short record is one command", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 90 00",
                                   Result::Success, 69, sw::Ok},
                    RecordReadCase{"the processor card's word is success", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 90 01",
                                   Result::Success, 69, sw::OkProcessorCard},
                    RecordReadCase{"end of file with data is success", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 62 82",
                                   Result::Success, 69, sw::EndOfFile},
                    RecordReadCase{"end of file without data is a failure", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< 62 82",
                                   Result::Failed, 0, sw::EndOfFile},
                    RecordReadCase{"no bytes are success", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 90 00",
                                   Result::Success, 0, sw::Ok},
                    RecordReadCase{"255 bytes are not continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+255} 90 00",
                                   Result::Success, 255, sw::Ok},
                    RecordReadCase{"257 bytes are not continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+257} 90 00",
                                   Result::Success, 257, sw::Ok},
                    RecordReadCase{"an answer may fill the buffer", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+1250} 90 00",
                                   Result::Success, 1250, sw::Ok},
                    RecordReadCase{"512 bytes are not continued", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+512} 90 00",
                                   Result::Success, 512, sw::Ok},
                    RecordReadCase{"an answer larger than the buffer is a failure", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+601} 90 00",
                                   Result::Failed, 0, std::nullopt},
                    RecordReadCase{"256 bytes that fill the buffer", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+256} 90 00",
                                   Result::Success, 256, sw::Ok},
                    RecordReadCase{"256 bytes are continued until a short answer", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+40} 90 00",
                                   Result::Success, 552, sw::Ok},
                    RecordReadCase{"continued until an empty answer", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 90 00",
                                   Result::Success, 256, sw::Ok},
                    RecordReadCase{"continued until the end of file", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 62 82",
                                   Result::Success, 266, sw::EndOfFile},
                    RecordReadCase{"end of file with a whole piece is continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 62 82\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 90 00",
                                   Result::Success, 266, sw::Ok},
                    RecordReadCase{"continued until an empty end of file", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 62 82",
                                   Result::Success, 256, sw::Ok},
                    RecordReadCase{"continued until another status word", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 6B 00",
                                   Result::Success, 256, sw::Ok},
                    RecordReadCase{"continued until the buffer is full", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+88} 90 00",
                                   Result::Success, 600, sw::Ok},
                    RecordReadCase{"what passes the buffer is cut from a later piece", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+256} 90 00",
                                   Result::Success, 600, sw::Ok},
                    RecordReadCase{"a whole piece that fills the buffer ends the read", 0x8300, 512,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00",
                                   Result::Success, 512, sw::Ok},
                    RecordReadCase{"not released", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 65 01",
                                   Result::Failed, 0, sw::ReadFailed},
                    RecordReadCase{"not found", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< 6A 82",
                                   Result::Failed, 0, sw::NotFound},
                    RecordReadCase{"not allowed with data is a failure all the same", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 69 00",
                                   Result::Failed, 0, sw::NotAllowed},
                    RecordReadCase{"a failed exchange", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< -> -127",
                                   Result::Failed, 0, std::nullopt},
                    RecordReadCase{"a failed exchange of the continuation drops what came", 0x8100,
                                   850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< -> -10",
                                   Result::Failed, 0, std::nullopt}),
    SentenceName());

// A card that gives one byte a command is read to its end all the same.
TEST(BinaryReadTest, OneByteAnAnswerStillDeliversTheWholeBlock) {
  FakeApi api;
  int commands = 0;
  api.data = [&commands](std::uint8_t&, std::uint8_t&, std::span<const std::uint8_t> command,
                         std::span<std::uint8_t> response, std::uint16_t& length) {
    ++commands;
    const int offset = command[2] * 256 + command[3];
    response[0] = static_cast<std::uint8_t>(File()[offset]);
    response[1] = 0x90;
    response[2] = 0x00;
    length = 3;
    return std::int8_t{0};
  };
  Link link(api);
  const BinaryRead read = CtExchangeFile(link.session, 2, 848);
  EXPECT_EQ(read.bytes, File().mid(2, 848));
  EXPECT_EQ(commands, 848);
}

}  // namespace
}  // namespace kartocheck::test
