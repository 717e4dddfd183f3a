#include "host/windows/pcsc_api.h"

#include <gtest/gtest.h>

#include "host/pcsc_transport.h"
#include "host/windows/modules/test_winscard.h"
#include "protocol/windows/wide_text.h"
#include "simulator/bytes.h"
#include "simulator/hex.h"

// Readers behind a client library that does what that of Windows does.
namespace ctapi::host {
namespace {

using ctapi::test::ToHex;

constexpr const char* RequestIcc = "201201000101";

class WindowsPcsc : public testing::Test {
 protected:
  WindowsPcsc() {
    const std::wstring file = WideText(TEST_WINSCARD);
    api_ = LoadPcscApiFrom(file);
    const HMODULE library = ::LoadLibraryW(file.c_str());
    const auto find = reinterpret_cast<test::TestServiceFunction>(
        reinterpret_cast<void*>(::GetProcAddress(library, "TheTestService")));
    service_ = find();
    *service_ = {};
  }

  std::string Ask(TerminalLink& link, Unit unit, const char* command) {
    Bytes response;
    const int code = link.Exchange(unit, *BytesFromHex(command), response);
    return code == 0 ? ToHex(response) : "code " + std::to_string(code);
  }

  std::optional<PcscApi> api_;
  test::TestService* service_ = nullptr;
};

TEST_F(WindowsPcsc, IsThere) {
  ASSERT_TRUE(api_.has_value());
}

TEST_F(WindowsPcsc, WithoutALibraryThereIsNone) {
  EXPECT_FALSE(LoadPcscApiFrom(L"C:\\no such folder\\winscard.dll").has_value());
}

TEST_F(WindowsPcsc, ReadsACard) {
  {
    PcscTransport transport(api_);
    const OpenedLink opened = transport.Open(0);
    ASSERT_EQ(opened.Code, code::Success);
    EXPECT_EQ(transport.InfoOf(0).Name, "Lesgerät Prüf 0");
    EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008000"), "8001019000") << "a card is there";
    EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, RequestIcc), "9001");
    EXPECT_EQ(service_->LastShareMode, DWORD{SCARD_SHARE_EXCLUSIVE});
    EXPECT_EQ(Ask(*opened.Link, Unit::Card, "00A4040C"), "00A4040C9000");
    EXPECT_EQ(service_->LastLengthOfPci, sizeof(SCARD_IO_REQUEST));
    EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "201101010100").substr(0, 4), "3B80")
        << "the card's answer to its reset";
    EXPECT_EQ(service_->LastDisposition, DWORD{SCARD_RESET_CARD});
  }
  EXPECT_EQ(service_->LastDisposition, DWORD{SCARD_UNPOWER_CARD});
  EXPECT_EQ(service_->Connections, 0);
  EXPECT_EQ(service_->Contexts, 0);
}

TEST_F(WindowsPcsc, TellsTheVersionOfTheDriver) {
  PcscTransport transport(api_);
  const OpenedLink opened = transport.Open(0);
  ASSERT_EQ(opened.Code, code::Success);
  const std::string object = Ask(*opened.Link, Unit::Terminal, "2013004600");
  EXPECT_TRUE(object.ends_with(ToHex(Bytes{'1', '.', '5', '.', '2'}) + "9000")) << object;
}

TEST_F(WindowsPcsc, WaitsForACardInTheService) {
  service_->HasCard = false;
  PcscTransport transport(api_);
  const OpenedLink opened = transport.Open(0);
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, RequestIcc), "6200");
  EXPECT_GT(service_->LastTimeout, 0U);
}

TEST_F(WindowsPcsc, AReaderThatIsGoneIsTold) {
  PcscTransport transport(api_);
  const OpenedLink opened = transport.Open(0);
  ASSERT_EQ(opened.Code, code::Success);
  service_->HasReader = false;
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008000"), "code -8");
  EXPECT_EQ(transport.Open(0).Code, code::InvalidParameter);
  EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::NoReader);
}

TEST_F(WindowsPcsc, AServiceThatStopsIsAskedAnew) {
  PcscTransport transport(api_);
  ASSERT_EQ(transport.Open(0).Code, code::Success);
  for (const LONG gone :
       {static_cast<LONG>(SCARD_E_SERVICE_STOPPED), static_cast<LONG>(SCARD_E_NO_SERVICE),
        LONG{ERROR_BROKEN_PIPE}, LONG{RPC_S_SERVER_UNAVAILABLE}, LONG{ERROR_INVALID_HANDLE}}) {
    service_->Listed = gone;
    EXPECT_EQ(transport.Open(0).Code, code::HostError) << gone;
    service_->Listed = SCARD_S_SUCCESS;
    EXPECT_EQ(transport.Open(0).Code, code::Success) << gone;
  }
}

TEST_F(WindowsPcsc, AServiceThatDoesNotRunIsTold) {
  for (const LONG code :
       {static_cast<LONG>(SCARD_E_NO_SERVICE), static_cast<LONG>(SCARD_E_SERVICE_STOPPED)}) {
    service_->Established = code;
    PcscTransport transport(api_);
    EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::NoService);
  }
  service_->Established = ERROR_ACCESS_DENIED;
  PcscTransport transport(api_);
  EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::ServiceRefuses);
}

struct CodeRow {
  LONG Told;
  PcscCode Expected;
};

class WindowsPcscCode : public WindowsPcsc, public testing::WithParamInterface<CodeRow> {};

TEST_P(WindowsPcscCode, IsTranslated) {
  PcscContext context = 0;
  ASSERT_EQ(api_->EstablishContext(context), PcscCode::Success);
  service_->Connected = GetParam().Told;
  PcscCard card = 0;
  std::uint32_t protocol = 0;
  EXPECT_EQ(api_->Connect(context, "Lesgerät Prüf 0", CardSharing::Exclusive, card_protocol::T1,
                          card, protocol),
            GetParam().Expected);
  EXPECT_EQ(api_->ReleaseContext(context), PcscCode::Success);
}

INSTANTIATE_TEST_SUITE_P(
    Host, WindowsPcscCode,
    testing::Values(
        CodeRow{SCARD_E_SHARING_VIOLATION, PcscCode::SharingViolation},
        CodeRow{static_cast<LONG>(SCARD_W_UNRESPONSIVE_CARD), PcscCode::UnresponsiveCard},
        CodeRow{static_cast<LONG>(SCARD_W_REMOVED_CARD), PcscCode::RemovedCard},
        CodeRow{static_cast<LONG>(SCARD_E_UNSUPPORTED_FEATURE), PcscCode::UnsupportedFeature},
        CodeRow{static_cast<LONG>(SCARD_E_UNEXPECTED), PcscCode{0x8010001F}},
        CodeRow{ERROR_NOT_SUPPORTED, PcscCode::UnsupportedFeature},
        CodeRow{ERROR_INVALID_HANDLE, PcscCode::ServiceStopped},
        CodeRow{ERROR_DEVICE_REMOVED, PcscCode::ReaderUnavailable},
        CodeRow{ERROR_ACCESS_DENIED, PcscCode::NoAccess}));

}  // namespace
}  // namespace ctapi::host
