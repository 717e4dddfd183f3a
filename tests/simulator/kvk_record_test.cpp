#include "simulator/kvk_record.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

// Two people whose records were made by hand, independently of this builder.
KvkElements PersonA() {
  return {{Element::InsurerName, "AOK Süd"}, {Element::InsurerNumber, "1234567"},
          {Element::Vknr, "00012"},          {Element::InsuredNumber, "123456789"},
          {Element::InsuredStatus, "1000"},  {Element::StatusSupplement, "1"},
          {Element::FirstName, "Änne"},      {Element::LastName, "Größl"},
          {Element::BirthDate, "01021950"},  {Element::PostalCode, "12345"},
          {Element::Town, "Köln"},           {Element::ValidUntil, "1230"}};
}

KvkElements PersonB() {
  return {{Element::InsurerName, "BKK Beispiel Nordwest"},
          {Element::InsurerNumber, "7654321"},
          {Element::Vknr, "17999"},
          {Element::InsuredNumber, "987654321012"},
          {Element::InsuredStatus, "5000"},
          {Element::StatusSupplement, "9"},
          {Element::Title, "Dr."},
          {Element::FirstName, "Jörg-Peter"},
          {Element::NameAffix, "von"},
          {Element::LastName, "Übermaß"},
          {Element::BirthDate, "31121969"},
          {Element::Street, "Hinter den Höfen 12 a"},
          {Element::CountryCode, "D"},
          {Element::PostalCode, "01067"},
          {Element::Town, "Dresden-Löbtau"},
          {Element::ValidUntil, "1128"}};
}

constexpr const char* RecordA =
    "605A8007414F4B20537D648107313233343536378F053030303132820931323334353637"
    "383983043130303090013185045B6E6E65870547727C7E6C880830313032313935308B05"
    "31323334358C044B7C6C6E8D04313233308E01ED";

// The content of record B between the header and the check byte.
constexpr const char* ContentB =
    "8015424B4B20426569737069656C204E6F7264776573748107373635343332318F"
    "053137393939820C393837363534333231303132830435303030900139840344722E850A"
    "4A7C72672D50657465728603766F6E87075D6265726D617E880833313132313936398915"
    "48696E7465722064656E20487C66656E20313220618A01448B0530313036378C0E447265"
    "7364656E2D4C7C627461758D04313132388E01";

constexpr const char* SupplementC = "9108303530333230323492033130399301A0";

KvkSupplement Supplement() {
  return {.Elements = {{Element::ReadingDate, "05032024"}, {Element::ApprovalNumber, "109"}}};
}

TEST(KvkRecord, ShortForm) {
  EXPECT_EQ(ToHex(BuildKvk(PersonA(), KvkForm::Short60)), RecordA);
  EXPECT_EQ(ToHex(BuildKvk(PersonA())), RecordA);
}

TEST(KvkRecord, FormWithALengthByte) {
  const std::string recordB = std::string("6081A1") + ContentB + "90";
  EXPECT_EQ(ToHex(BuildKvk(PersonB(), KvkForm::Long6081)), recordB);
  EXPECT_EQ(ToHex(BuildKvk(PersonB())), recordB);
}

// The check of this form stops one byte early: a XOR over everything before it would be 93.
TEST(KvkRecord, FormWithTwoLengthBytes) {
  EXPECT_EQ(ToHex(BuildKvk(PersonB(), KvkForm::Long6082)),
            std::string("608200A1") + ContentB + "92");
}

TEST(KvkRecord, SupplementOfAMobileTerminal) {
  EXPECT_EQ(ToHex(BuildKvk(PersonB(), KvkForm::Long6081, {}, Supplement())),
            std::string("6081A1") + ContentB + "90" + SupplementC);
}

TEST(KvkRecord, CheckByteOfTheCallers) {
  const KvkElements elements{{Element::InsurerName, "AB"}};
  const auto record = [&elements](CheckByte check) {
    return ToHex(BuildKvk(elements, KvkForm::Short60, check));
  };
  EXPECT_EQ(record({.How = CheckByte::Kind::Given, .Value = 0xFF}), "6007800241428E01FF");
  EXPECT_EQ(record({.How = CheckByte::Kind::Absent}), "600480024142");
  EXPECT_EQ(record({.How = CheckByte::Kind::Empty}), "6006800241428E00");
}

TEST(KvkRecord, SupplementWithoutItsParts) {
  const KvkElements elements{{Element::InsurerName, "AB"}};
  const auto supplement = [&elements](const KvkSupplement& added) {
    const Bytes without = BuildKvk(elements);
    const Bytes with = BuildKvk(elements, KvkForm::Automatic, {}, added);
    return ToHex(ByteView(with).subspan(without.size()));
  };
  EXPECT_EQ(supplement({.Elements = {{Element::ApprovalNumber, "103"}},
                        .Check = {.How = CheckByte::Kind::Empty}}),
            "92033130339300");
  EXPECT_EQ(supplement({.Elements = {{Element::ReadingDate, ""}},
                        .Check = {.How = CheckByte::Kind::Absent}}),
            "9100");
  EXPECT_EQ(supplement({.Check = {.How = CheckByte::Kind::Given, .Value = 0x0A}}), "93010A");
}

TEST(KvkRecord, AnEmptyElementHasLengthZero) {
  EXPECT_EQ(
      ToHex(BuildKvk({{Element::Title, ""}}, KvkForm::Short60, {.How = CheckByte::Kind::Absent})),
      "60028400");
}

KvkElements OfLength(std::size_t contentLength) {
  // One element (2 bytes of tag and length) and the check element (3 bytes).
  return {{Element::InsurerName, std::string(contentLength - 5, 'A')}};
}

TEST(KvkRecord, LengthsAtTheBoundsOfTheForms) {
  EXPECT_EQ(ToHex(BuildKvk(OfLength(127))).substr(0, 4), "607F");
  EXPECT_EQ(ToHex(BuildKvk(OfLength(128))).substr(0, 6), "608180");
  EXPECT_EQ(ToHex(BuildKvk(OfLength(127), KvkForm::Long6081)).substr(0, 6), "60817F");
  EXPECT_EQ(ToHex(BuildKvk(OfLength(255))).substr(0, 6), "6081FF");
  EXPECT_THROW((void)BuildKvk(OfLength(128), KvkForm::Short60), std::invalid_argument);
  EXPECT_THROW((void)BuildKvk(OfLength(256)), std::invalid_argument);
  EXPECT_EQ(ToHex(BuildKvk(OfLength(256), KvkForm::Long6082)).substr(0, 8), "60820100");
  EXPECT_THROW((void)BuildKvk({{Element::InsurerName, std::string(256, 'A')}}, KvkForm::Long6082),
               std::invalid_argument);
}

std::string TextAt(const Bytes& record, std::size_t offset, std::size_t length) {
  return {record.begin() + static_cast<std::ptrdiff_t>(offset),
          record.begin() + static_cast<std::ptrdiff_t>(offset + length)};
}

TEST(KvkRecord, FixedFormat) {
  const Bytes record = BuildKvk(PersonB(), KvkForm::Fixed219);
  ASSERT_EQ(record.size(), 219u);
  EXPECT_EQ(TextAt(record, 0, 28), "BKK Beispiel Nordwest       ");
  EXPECT_EQ(TextAt(record, 28, 7), "7654321");
  EXPECT_EQ(TextAt(record, 35, 12), "987654321012");
  EXPECT_EQ(TextAt(record, 47, 5), "17999");
  EXPECT_EQ(TextAt(record, 52, 4), "5000");
  EXPECT_EQ(TextAt(record, 56, 3), "9  ");
  EXPECT_EQ(TextAt(record, 59, 15), "Dr.            ");
  EXPECT_EQ(TextAt(record, 74, 28), "J|rg-Peter                  ");
  EXPECT_EQ(TextAt(record, 102, 15), "von            ");
  EXPECT_EQ(TextAt(record, 117, 28), "]berma~                     ");
  EXPECT_EQ(TextAt(record, 145, 8), "31121969");
  EXPECT_EQ(TextAt(record, 153, 28), "Hinter den H|fen 12 a       ");
  EXPECT_EQ(TextAt(record, 181, 3), "D  ");
  EXPECT_EQ(TextAt(record, 184, 7), "01067  ");
  EXPECT_EQ(TextAt(record, 191, 23), "Dresden-L|btau         ");
  EXPECT_EQ(TextAt(record, 214, 4), "1128");
  EXPECT_EQ(XorOf(record), 0);
}

TEST(KvkRecord, FixedFormatWithSupplement) {
  const Bytes bare = BuildKvk(PersonB(), KvkForm::Fixed219);
  const Bytes shorter = BuildKvk(PersonB(), KvkForm::Fixed231, {}, Supplement());
  ASSERT_EQ(shorter.size(), 231u);
  EXPECT_EQ(ToHex(ByteView(shorter).first(219)), ToHex(bare));
  EXPECT_EQ(TextAt(shorter, 219, 11), "05032024109");
  EXPECT_EQ(XorOf(ByteView(shorter).subspan(219)), 0);

  const Bytes longer = BuildKvk(PersonB(), KvkForm::Fixed255, {}, Supplement());
  ASSERT_EQ(longer.size(), 255u);
  EXPECT_EQ(TextAt(longer, 219, 35), "05032024109                        ");
  EXPECT_EQ(XorOf(ByteView(longer).subspan(219)), 0);
}

TEST(KvkRecord, FixedFormatWithoutSupplementHasBlanksThere) {
  const Bytes record = BuildKvk(PersonB(), KvkForm::Fixed231);
  ASSERT_EQ(record.size(), 231u);
  EXPECT_EQ(TextAt(record, 219, 11), std::string(11, ' '));
}

TEST(KvkRecord, FixedFormatCheckByteOfTheCallers) {
  const auto last = [](CheckByte check) {
    return BuildKvk(PersonA(), KvkForm::Fixed219, check).back();
  };
  EXPECT_EQ(last({.How = CheckByte::Kind::Given, .Value = 0x20}), 0x20);
  EXPECT_EQ(last({.How = CheckByte::Kind::Given, .Value = 0xA5}), 0xA5);
  EXPECT_EQ(last({.How = CheckByte::Kind::Absent}), 0x20);
  EXPECT_EQ(last({.How = CheckByte::Kind::Empty}), 0x20);
}

TEST(KvkRecord, FixedFormatRefusesWhatDoesNotFit) {
  EXPECT_THROW((void)BuildKvk({{Element::ValidUntil, "12345"}}, KvkForm::Fixed219),
               std::invalid_argument);
  EXPECT_THROW((void)BuildKvk(PersonA(), KvkForm::Fixed219, {}, Supplement()),
               std::invalid_argument);
  EXPECT_THROW((void)BuildKvk(PersonA(), KvkForm::Fixed231, {},
                              KvkSupplement{.Elements = {{Element::ApprovalNumber, "1033"}}}),
               std::invalid_argument);
}

TEST(KvkRecord, ElementsOfTheOtherPartAreRefused) {
  const KvkElements supplement{{Element::ReadingDate, "05032024"}};
  EXPECT_THROW((void)BuildKvk(supplement), std::invalid_argument);
  EXPECT_THROW((void)BuildKvk(PersonA(), KvkForm::Automatic, {},
                              KvkSupplement{.Elements = {{Element::Town, "Köln"}}}),
               std::invalid_argument);
  EXPECT_THROW((void)BuildKvk({{Element::Checksum, "A"}}), std::invalid_argument);
}

TEST(Din66003, WritesUmlautsInTheGermanVariant) {
  EXPECT_EQ(ToHex(Din66003("ÄÖÜäöüß")), "5B5C5D7B7C7D7E");
  EXPECT_EQ(ToHex(Din66003("")), "");
  EXPECT_EQ(ToHex(Din66003("A @^_`z")), "4120405E5F607A");
}

struct Unwritable {
  const char* Name;
  const char* Text;
};

class UnwritableText : public testing::TestWithParam<Unwritable> {};

TEST_P(UnwritableText, IsRefused) {
  EXPECT_THROW((void)Din66003(GetParam().Text), std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Rows, UnwritableText,
                         testing::Values(Unwritable{"Bracket", "a[b"}, Unwritable{"Brace", "}"},
                                         Unwritable{"Tilde", "~"}, Unwritable{"Accent", "é"},
                                         Unwritable{"Control", "a\nb"},
                                         Unwritable{"CutUtf8", "a\xC3"},
                                         Unwritable{"Latin1", "\xE4"}),
                         test::RowName<Unwritable>);

}  // namespace
}  // namespace ctapi
