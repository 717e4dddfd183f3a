#include "terminal/binary_read.h"

#include <gtest/gtest.h>
#include <string>

#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/filled_script.h"
#include "support/link_fixture.h"
#include "support/printing.h"

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
  const char* name;
  int offset;
  int count;
  const char* script;
  std::int16_t result;
  int received;  // bytes, from `offset` on
  const char16_t* statusWord;
};

void PrintTo(const FileReadCase& row, std::ostream* out) {
  *out << row.name;
}

template <typename Row>
std::string CaseName(const testing::TestParamInfo<Row>& row) {
  return row.param.name;
}

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
    testing::Values(FileReadCase{"FourBytesAreAskedForAtOnce", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"TheOffsetStandsInP1AndP2BigEndian", 0x1234, 1,
                                 "> 00 B0 12 34 01\n"
                                 "< {4660+1} 90 00",
                                 0, 1, u"9000"},
                    FileReadCase{"TwoHundredFiftyTwoBytesAreAskedForAtOnce", 8, 252,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00",
                                 0, 252, u"9000"},
                    FileReadCase{"TwoHundredFiftyThreeBytesAreAskedForAtOnce", 8, 253,
                                 "> 00 B0 00 08 FD\n"
                                 "< {8+253} 90 00",
                                 0, 253, u"9000"},
                    FileReadCase{"TwoHundredFiftyFourBytesComeInTwoPieces", 8, 254,
                                 "> 00 B0 00 08 FC\n"
                                 "< {8+252} 90 00\n"
                                 "> 00 B0 01 04 02\n"
                                 "< {260+2} 90 00",
                                 0, 254, u"9000"},
                    FileReadCase{"TwoWholePiecesNeedNoThird", 2, 504,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00",
                                 0, 504, u"9000"},
                    FileReadCase{"OneByteMoreThanTwoPieces", 2, 505,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+252} 90 00\n"
                                 "> 00 B0 00 FE FC\n"
                                 "< {254+252} 90 00\n"
                                 "> 00 B0 01 FA 01\n"
                                 "< {506+1} 90 00",
                                 0, 505, u"9000"},
                    FileReadCase{"AShortAnswerAdvancesByWhatCame", 2, 600,
                                 "> 00 B0 00 02 FC\n"
                                 "< {2+100} 90 00\n"
                                 "> 00 B0 00 66 FC\n"
                                 "< {102+252} 90 00\n"
                                 "> 00 B0 01 62 F8\n"
                                 "< {354+248} 90 00",
                                 0, 600, u"9000"},
                    FileReadCase{"AShortAnswerToASingleCommandAdvancesToo", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+3} 90 00\n"
                                 "> 00 B0 00 03 01\n"
                                 "< {3+1} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"EndOfFileWithAllBytesIsSuccess", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+4} 62 82",
                                 0, 4, u"6282"},
                    FileReadCase{"EndOfFileWithDataAdvances", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+200} 62 82\n"
                                 "> 00 B0 00 C8 64\n"
                                 "< {200+100} 90 00",
                                 0, 300, u"9000"},
                    FileReadCase{"AnEmptyEndOfFileEndsTheReadWithWhatThereIs", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 62 82",
                                 0, 252, u"6282"},
                    FileReadCase{"AnEmptySuccessEndsTheReadWithWhatThereIs", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 90 00",
                                 0, 252, u"9000"},
                    FileReadCase{"AnEmptyFileIsReadWithNoBytes", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< 62 82",
                                 0, 0, u"6282"},
                    FileReadCase{"MoreThanAskedIsCut", 0, 4,
                                 "> 00 B0 00 00 04\n"
                                 "< {0+9} 90 00",
                                 0, 4, u"9000"},
                    FileReadCase{"MoreThanThePieceIsCutAndTheNextPieceFollows", 0, 254,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+256} 90 00\n"
                                 "> 00 B0 00 FC 02\n"
                                 "< {252+2} 90 00",
                                 0, 254, u"9000"},
                    FileReadCase{"NoAccessRights", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 69 82",
                                 -2, 0, u"6982"},
                    FileReadCase{"NoAccessRightsWithinAReadDropsWhatCame", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 69 82",
                                 -2, 0, u"6982"},
                    FileReadCase{"AnotherStatusWordFails", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 6B 00",
                                 -1, 0, u"6B00"},
                    FileReadCase{"AnotherStatusWordFailsWithDataToo", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 62 81",
                                 -1, 0, u"6281"},
                    FileReadCase{"TheProcessorCardsWordIsNoSuccessHere", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< {0+2} 90 01",
                                 -1, 0, u"9001"},
                    FileReadCase{"AnotherStatusWordWithinAReadDropsWhatCame", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< 6B 00",
                                 -1, 0, u"6B00"},
                    FileReadCase{"AFailedExchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< -> -10",
                                 -1, 0, u""},
                    FileReadCase{"AFailedExchangeWithinAReadDropsWhatCame", 0, 300,
                                 "> 00 B0 00 00 FC\n"
                                 "< {0+252} 90 00\n"
                                 "> 00 B0 00 FC 30\n"
                                 "< -> -8",
                                 -1, 0, u""},
                    FileReadCase{"AnAnswerWithoutStatusWordIsAFailedExchange", 0, 2,
                                 "> 00 B0 00 00 02\n"
                                 "< 90",
                                 -1, 0, u""},
                    FileReadCase{"TheLastOffset", 0x7FFF, 1,
                                 "> 00 B0 7F FF 01\n"
                                 "< {32767+1} 90 00",
                                 0, 1, u"9000"},
                    FileReadCase{"APieceMayReachPastTheLastOffset", 0x7FFF, 10,
                                 "> 00 B0 7F FF 0A\n"
                                 "< {32767+10} 90 00",
                                 0, 10, u"9000"},
                    FileReadCase{"TheOffsetBehindTheLastSendsNothing", 0x8000, 1, "", -1, 0, u""},
                    FileReadCase{"TheLargestOffsetSendsNothing", 0xFFFF, 65535, "", -1, 0, u""},
                    FileReadCase{"APieceBehindTheLastOffsetIsNotSent", 0x7F10, 400,
                                 "> 00 B0 7F 10 FC\n"
                                 "< {32528+252} 90 00",
                                 -1, 0, u""},
                    FileReadCase{"NothingAskedSendsNothing", 0, 0, "", 0, 0, u""}),
    CaseName<FileReadCase>);

struct RecordReadCase {
  const char* name;
  quint16 p1p2;
  int bufferSize;
  const char* script;
  std::int16_t result;
  int received;
  const char16_t* statusWord;
};

void PrintTo(const RecordReadCase& row, std::ostream* out) {
  *out << row.name;
}

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
    testing::Values(RecordReadCase{"AShortRecordIsOneCommand", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 90 00",
                                   0, 69, u"9000"},
                    RecordReadCase{"TheProcessorCardsWordIsSuccess", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 90 01",
                                   0, 69, u"9001"},
                    RecordReadCase{"EndOfFileWithDataIsSuccess", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+69} 62 82",
                                   0, 69, u"6282"},
                    RecordReadCase{"EndOfFileWithoutDataIsAFailure", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< 62 82",
                                   -1, 0, u"6282"},
                    RecordReadCase{"NoBytesAreSuccess", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 90 00",
                                   0, 0, u"9000"},
                    RecordReadCase{"TwoHundredFiftyFiveBytesAreNotContinued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+255} 90 00",
                                   0, 255, u"9000"},
                    RecordReadCase{"TwoHundredFiftySevenBytesAreNotContinued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+257} 90 00",
                                   0, 257, u"9000"},
                    RecordReadCase{"AnAnswerMayFillTheBuffer", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+1250} 90 00",
                                   0, 1250, u"9000"},
                    RecordReadCase{"FiveHundredTwelveBytesAreNotContinued", 0x8200, 1250,
                                   "> 00 B0 82 00 00\n"
                                   "< {0+512} 90 00",
                                   0, 512, u"9000"},
                    RecordReadCase{"AnAnswerLargerThanTheBufferIsAFailure", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+601} 90 00",
                                   -1, 0, u""},
                    RecordReadCase{"TwoHundredFiftySixBytesThatFillTheBuffer", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+256} 90 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"TwoHundredFiftySixBytesAreContinuedUntilAShortAnswer", 0x8100,
                                   850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+40} 90 00",
                                   0, 552, u"9000"},
                    RecordReadCase{"ContinuedUntilAnEmptyAnswer", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 90 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"ContinuedUntilTheEndOfFile", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 62 82",
                                   0, 266, u"6282"},
                    RecordReadCase{"EndOfFileWithAWholePieceIsContinued", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 62 82\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+10} 90 00",
                                   0, 266, u"9000"},
                    RecordReadCase{"ContinuedUntilAnEmptyEndOfFile", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 62 82",
                                   0, 256, u"9000"},
                    RecordReadCase{"ContinuedUntilAnotherStatusWord", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< 6B 00",
                                   0, 256, u"9000"},
                    RecordReadCase{"ContinuedUntilTheBufferIsFull", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+88} 90 00",
                                   0, 600, u"9000"},
                    RecordReadCase{"WhatPassesTheBufferIsCutFromALaterPiece", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00\n"
                                   "> 00 B0 02 00 00\n"
                                   "< {512+256} 90 00",
                                   0, 600, u"9000"},
                    RecordReadCase{"AWholePieceThatFillsTheBufferEndsTheRead", 0x8300, 512,
                                   "> 00 B0 83 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< {256+256} 90 00",
                                   0, 512, u"9000"},
                    RecordReadCase{"NotReleased", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< 65 01",
                                   -1, 0, u"6501"},
                    RecordReadCase{"NotFound", 0x8300, 600,
                                   "> 00 B0 83 00 00\n"
                                   "< 6A 82",
                                   -1, 0, u"6A82"},
                    RecordReadCase{"NotAllowedWithDataIsAFailureAllTheSame", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< {0+69} 69 00",
                                   -1, 0, u"6900"},
                    RecordReadCase{"AFailedExchange", 0x8C00, 256,
                                   "> 00 B0 8C 00 00\n"
                                   "< -> -127",
                                   -1, 0, u""},
                    RecordReadCase{"AFailedExchangeOfTheContinuationDropsWhatCame", 0x8100, 850,
                                   "> 00 B0 81 00 00\n"
                                   "< {0+256} 90 00\n"
                                   "> 00 B0 01 00 00\n"
                                   "< -> -10",
                                   -1, 0, u""}),
    CaseName<RecordReadCase>);

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
