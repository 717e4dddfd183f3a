#include "terminal/binary_read.h"

#include <gtest/gtest.h>
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
  std::int16_t result;
  int received;  // bytes, from `offset` on
  const char16_t* statusWord;

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
  EXPECT_EQ(read.Succeeded(), row.result == 0);
  EXPECT_EQ(read.bytes, File().mid(row.offset, row.received));
  EXPECT_EQ(read.statusWord, row.statusWord);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CtExchangeFileTest,
    testing::Values(FileReadCase{"four bytes are asked for at once", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"the offset stands in P1 and P2 big-endian", 0x1234, 1,
                                 "> 00 B0 12 34 01\n"
                                 "< {4660+1} 90 00",
                                 0, 1, u"9000"},
                    FileReadCase{"252 bytes are asked for at once", 8, 252,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00",
                                 0, 252, u"9000"},
                    FileReadCase{"253 bytes are asked for at once", 8, 253,
                                 "> 00 B0 00 08 FD\n"
                                 "< {8+253} 90 00",
                                 0, 253, u"9000"},
                    FileReadCase{"254 bytes come in two pieces", 8, 254,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00\n"
                                 "> 00 B0 01 04 02\n"
                                 "< {260+2} 90 00",
                                 0, 254, u"9000"},
                    FileReadCase{"two whole pieces need no third", 2, 504,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00",
                                 0, 504, u"9000"},
                    FileReadCase{"one byte more than two pieces", 2, 505,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00\n"
                                 "> 00 B0 01 FA 01\n"
                                 "< {506+1} 90 00",
                                 0, 505, u"9000"},
                    FileReadCase{"a short answer advances by what came", 2, 600,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+100} 90 00\n"
                                 "> 00 B0 00 66 FC\n"
                                 "< {102+252} 90 00\n"
                                 "> 00 B0 01 62 F8\n"
                                 "< {354+248} 90 00",
                                 0, 600, u"9000"},
                    FileReadCase{"a short answer to a single command advances too", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+3} 90 00\n"
                                 "> 00 B0 00 03 01\n"
                                 "< {3+1} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"end of file with all bytes is success", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 62 82",
                                 0, 4, u"6282"},
                    FileReadCase{"end of file with data advances", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+200} 62 82\n"
                                 "> 00 B0 00 C8 64\n"
                                 "< {200+100} 90 00",
                                 0, 300, u"9000"},
                    FileReadCase{"an empty end of file ends the read with what there is", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 62 82",
                                 0, 252, u"6282"},
                    FileReadCase{"an empty success ends the read with what there is", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 90 00",
                                 0, 252, u"9000"},
                    FileReadCase{"an empty file is read with no bytes", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< 62 82",
                                 0, 0, u"6282"},
                    FileReadCase{"more than asked is cut", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+9} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"more than the piece is cut and the next piece follows", 0, 254,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+256} 90 00\n"
                                 "> 00 B0 00 FC 02\n"
                                 "< {252+2} 90 00",
                                 0, 254, u"9000"},
                    FileReadCase{"no access rights", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 69 82",
                                 -2, 0, u"6982"},
                    FileReadCase{"no access rights within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 69 82",
                                 -2, 0, u"6982"},
                    FileReadCase{"another status word fails", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 6B 00",
                                 -1, 0, u"6B00"},
                    FileReadCase{"another status word fails with data too", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 62 81",
                                 -1, 0, u"6281"},
                    FileReadCase{"the processor card's word is no success here", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 90 01",
                                 -1, 0, u"9001"},
                    FileReadCase{"another status word within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 6B 00",
                                 -1, 0, u"6B00"},
                    FileReadCase{"a failed exchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< -> -10",
                                 -1, 0, u""},
                    FileReadCase{"a failed exchange within a read drops what came", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< -> -8",
                                 -1, 0, u""},
                    FileReadCase{"an answer without status word is a failed exchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 90",
                                 -1, 0, u""},
                    FileReadCase{"the last offset", 0x7FFF, 1,
                                 "> 00 B0 7F FF 01\n"
                                 "< {32767+1} 90 00",
                                 0, 1, u"9000"},
                    FileReadCase{"a piece may reach past the last offset", 0x7FFF, 10,
                                 "> 00 B0 7F FF 0A\n"
                                 "< {32767+10} 90 00",
                                 0, 10, u"9000"},
                    FileReadCase{"the offset behind the last sends nothing", 0x8000, 1, "", -1, 0,
                                 u""},
                    FileReadCase{"the largest offset sends nothing", 0xFFFF, 65535, "", -1, 0, u""},
                    FileReadCase{"a piece behind the last offset is not sent", 0x7F10, 400,
                                 "> 00 B0 7F 10 FC\n"
                                 "< {32528+252} 90 00",
                                 -1, 0, u""},
                    FileReadCase{"nothing asked sends nothing", 0, 0, "", 0, 0, u""}),
    SentenceName());

struct RecordReadCase {
  const char* sentence;
  quint16 p1p2;
  int bufferSize;
  const char* script;
  std::int16_t result;
  int received;
  const char16_t* statusWord;

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
  EXPECT_EQ(read.Succeeded(), row.result == 0);
  EXPECT_EQ(read.bytes, File().first(row.received));
  EXPECT_EQ(read.statusWord, row.statusWord);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CtExchangeRecordTest,
    testing::Values(RecordReadCase{"a short record is one command", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 90 00",
                                   0, 69, u"9000"},
                    RecordReadCase{"the processor card's word is success", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 90 01",
                                   0, 69, u"9001"},
                    RecordReadCase{"end of file with data is success", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 62 82",
                                   0, 69, u"6282"},
                    RecordReadCase{"end of file without data is a failure", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< 62 82",
                                   -1, 0, u"6282"},
                    RecordReadCase{"no bytes are success", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 90 00",
                                   0, 0, u"9000"},
                    RecordReadCase{"255 bytes are not continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+255} 90 00",
                                   0, 255, u"9000"},
                    RecordReadCase{"257 bytes are not continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+257} 90 00",
                                   0, 257, u"9000"},
                    RecordReadCase{"an answer may fill the buffer", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+1250} 90 00",
                                   0, 1250, u"9000"},
                    RecordReadCase{"512 bytes are not continued", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+512} 90 00",
                                   0, 512, u"9000"},
                    RecordReadCase{"an answer larger than the buffer is a failure", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+601} 90 00",
                                   -1, 0, u""},
                    RecordReadCase{"256 bytes that fill the buffer", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+256} 90 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"256 bytes are continued until a short answer", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+40} 90 00",
                                   0, 552, u"9000"},
                    RecordReadCase{"continued until an empty answer", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 90 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"continued until the end of file", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 62 82",
                                   0, 266, u"6282"},
                    RecordReadCase{"end of file with a whole piece is continued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 62 82\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 90 00",
                                   0, 266, u"9000"},
                    RecordReadCase{"continued until an empty end of file", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 62 82",
                                   0, 256, u"9000"},
                    RecordReadCase{"continued until another status word", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 6B 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"continued until the buffer is full", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+88} 90 00",
                                   0, 600, u"9000"},
                    RecordReadCase{"what passes the buffer is cut from a later piece", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+256} 90 00",
                                   0, 600, u"9000"},
                    RecordReadCase{"a whole piece that fills the buffer ends the read", 0x8300, 512,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00",
                                   0, 512, u"9000"},
                    RecordReadCase{"not released", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 65 01",
                                   -1, 0, u"6501"},
                    RecordReadCase{"not found", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< 6A 82",
                                   -1, 0, u"6A82"},
                    RecordReadCase{"not allowed with data is a failure all the same", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 69 00",
                                   -1, 0, u"6900"},
                    RecordReadCase{"a failed exchange", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< -> -127",
                                   -1, 0, u""},
                    RecordReadCase{"a failed exchange of the continuation drops what came", 0x8100,
                                   850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< -> -10",
                                   -1, 0, u""}),
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
