#include "gui/support/practice.h"

namespace kartocheck::test::practice {

namespace {

std::string Open(int pn) {
  return "open " + std::to_string(pn) + "\n";
}

std::string CardIsThere(int pn) {
  return Open(pn) + R"(
    > 20 12 01 00 01 01           # REQUEST ICC: there is a card or record
    < 62 01
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    close
  )";
}

}  // namespace

std::string Identification(int pn) {
  return Open(pn) + R"(
    > 20 13 00 81 00              # GET STATUS, functional units
    < 90 00
    > 20 13 00 46 00              # GET STATUS, manufacturer: DENRV PKT-S 01.05
    < 46 0F 44 45 4E 52 56 50 4B 54 2D 53 30 31 2E 30 35 90 00
    close
  )";
}

std::string SlotIsEmpty(int pn) {
  return Open(pn) + R"(
    > 20 12 01 00 01 01           # REQUEST ICC: no card
    < 62 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 69 85
    close
  )";
}

std::string CardRead(int pn, const std::string& record) {
  return CardIsThere(pn) + Open(pn) + R"(
    > 20 11 00 00 00              # RESET CT
    < 90 00
    > 20 12 01 00 01 01           # REQUEST ICC: memory card
    < 90 00
    > 20 11 01 00                 # RESET CT, slot 1
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 00 B0 00 00 00              # READ BINARY
    < )" +
         record +
         R"( 90 00
    > 20 11 00 00 00              # RESET CT
    < 90 00
    close
  )";
}

std::string NoCard(int pn) {
  return SlotIsEmpty(pn) + Open(pn) + R"(
    > 20 11 00 00 00              # RESET CT
    < 90 00
    > 20 12 01 00 01 01           # REQUEST ICC: no card
    < 62 00
    > 20 11 00 00 00              # RESET CT
    < 90 00
    close
  )";
}

std::string MobileIdentification(int pn) {
  return Open(pn) + R"(
    > 20 13 00 81 00              # GET STATUS is not known
    < 6D 00
    > 20 11 00 00 00              # RESET CT: mobile terminal
    < 95 00
    close
  )";
}

std::string MobileRead(int pn, const std::string& record) {
  return CardIsThere(pn) + Open(pn) + R"(
    > 20 11 00 00 00              # RESET CT: mobile terminal
    < 95 00
    > 20 12 01 00 01 01           # REQUEST ICC: record of a KVK
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 00 B0 00 00 00              # READ BINARY
    < )" +
         record +
         R"( 90 00
    > 00 0E 00 00                 # ERASE BINARY
    < 90 00
    > 20 15 01 01 01 01           # EJECT ICC
    < 90 00
    > 20 11 00 00 00              # RESET CT
    < 95 00
    close
  )";
}

const std::string AnnesCard =
    "605A8007414F4B20537D648107313233343536378F053030303132820931323334353637"
    "383983043130303090013185045B6E6E65870547727C7E6C880830313032313935308B05"
    "31323334358C044B7C6C6E8D04313233308E01ED";

const std::string JoergsRecord =
    "6081A18015424B4B20426569737069656C204E6F7264776573748107373635343332318F"
    "053137393939820C393837363534333231303132830435303030900139840344722E850A"
    "4A7C72672D50657465728603766F6E87075D6265726D617E880833313132313936398915"
    "48696E7465722064656E20487C66656E20313220618A01448B0530313036378C0E447265"
    "7364656E2D4C7C627461758D04313132388E0190"
    "9108303530333230323492033130399301A0";

}  // namespace kartocheck::test::practice
