#include "host/pcscd_service.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <net/if.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ctapi::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* Program = "/usr/sbin/pcscd";
constexpr const char* DriverFolder = "/etc/reader.conf.d";
constexpr const char* Driver = "/etc/reader.conf.d/vpcd";
constexpr const char* NoDrivers = "/run/no_reader_drivers";
constexpr const char* SocketFolder = "/run/pcscd";
constexpr const char* Socket = "/run/pcscd/pcscd.comm";
constexpr std::uint16_t DriverPort = 0x8C7B;  // of the first slot
constexpr std::size_t ControlLength = 1;      // of the driver's own messages

void WriteFile(const char* file, const std::string& text) {
  std::ofstream(file) << text;
}

bool BringLoopbackUp() {
  const int control = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (control < 0) return false;
  ifreq request{};
  std::strncpy(request.ifr_name, "lo", sizeof request.ifr_name - 1);
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  const bool isUp = ::ioctl(control, SIOCSIFFLAGS, &request) == 0;
  ::close(control);
  return isUp;
}

bool ReadAll(int socket, std::uint8_t* into, std::size_t length) {
  while (length > 0) {
    const ssize_t count = ::recv(socket, into, length, 0);
    if (count <= 0) return false;
    into += count;
    length -= static_cast<std::size_t>(count);
  }
  return true;
}

// Acknowledgements that wait for company cost 40 ms an exchange. The setting is not a lasting one.
void AcknowledgeAtOnce(int socket) {
  const int on = 1;
  (void)::setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

bool WriteMessage(int socket, const std::vector<std::uint8_t>& message) {
  std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(message.size() >> 8),
                                  static_cast<std::uint8_t>(message.size() & 0xFF)};
  bytes.insert(bytes.end(), message.begin(), message.end());
  return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(bytes.size());
}

int Dial() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(DriverPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    const int on = 1;
    (void)::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    // Closed with a reset: a killed driver's end must not go on occupying its port.
    const linger reset{.l_onoff = 1, .l_linger = 0};
    (void)::setsockopt(socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    return socket;
  }
  ::close(socket);
  return -1;
}

constexpr const char* WithoutPolkit = "--disable-polkit";

// Newer versions of the service ask polkit whom to serve, and serve nobody where they cannot reach
// it, as in a test's own surroundings.
bool AsksPolkit() {
  const std::string command = std::string(Program) + " --help 2>&1";
  const auto close = [](FILE* file) { (void)::pclose(file); };
  const std::unique_ptr<FILE, decltype(close)> help(::popen(command.c_str(), "r"), close);
  std::string text;
  std::array<char, 256> line{};
  while (help && std::fgets(line.data(), line.size(), help.get()) != nullptr) text += line.data();
  return text.find(WithoutPolkit) != std::string::npos;
}

}  // namespace

bool EnterOwnNetwork() {
  const uid_t user = ::getuid();
  const gid_t group = ::getgid();
  const int own = user == 0 ? 0 : CLONE_NEWUSER;
  if (::unshare(own | CLONE_NEWNET | CLONE_NEWNS) != 0) return false;
  if (user != 0) {
    WriteFile("/proc/self/setgroups", "deny");
    WriteFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    WriteFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  }
  // Mounts stay in this process too: the service's socket hides nobody else's.
  if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  return ::mount("none", "/run", "tmpfs", 0, nullptr) == 0 && BringLoopbackUp();
}

std::unique_ptr<PcscdService> PcscdService::Start(std::string& reason, Readers readers) {
  if (!fs::exists(Program) || !fs::exists(Driver)) {
    reason = "pcscd or its virtual reader driver is not installed";
    return nullptr;
  }
  const char* const drivers = readers == Readers::Virtual ? DriverFolder : NoDrivers;
  fs::create_directories(NoDrivers);
  fs::create_directories(SocketFolder);
  fs::remove(Socket);
  const char* const withoutPolkit = AsksPolkit() ? WithoutPolkit : nullptr;
  const pid_t process = ::fork();
  if (process == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = ::open("/dev/null", O_RDWR);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    ::execl(Program, Program, "--foreground", "--config", drivers, withoutPolkit, nullptr);
    ::_exit(127);
  }
  std::unique_ptr<PcscdService> service(new PcscdService(process));
  const bool isUp = Eventually([] { return fs::exists(Socket); });
  if (!isUp || ::kill(process, 0) != 0) {
    reason = "pcscd does not start";
    return nullptr;
  }
  return service;
}

PcscdService::~PcscdService() {
  Kill();
}

void PcscdService::Kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
  std::error_code ignored;
  fs::remove_all(SocketFolder, ignored);
}

VirtualCard::VirtualCard(Behaviour behaviour) : behaviour_(std::move(behaviour)) {
  (void)Eventually([this] { return (socket_ = Dial()) >= 0; });
  if (IsIn()) thread_ = std::thread([this] { Serve(); });
}

VirtualCard::~VirtualCard() {
  if (!IsIn()) return;
  ::shutdown(socket_, SHUT_RD);
  thread_.join();
  ::close(socket_);
}

std::vector<VirtualCard::Bytes> VirtualCard::Trace() const {
  const std::lock_guard lock(mutex_);
  return trace_;
}

std::vector<VirtualCard::Bytes> VirtualCard::Commands() const {
  std::vector<Bytes> commands = Trace();
  std::erase_if(commands, [](const Bytes& message) { return message.size() == ControlLength; });
  return commands;
}

void VirtualCard::Note(const Bytes& message) {
  const std::lock_guard lock(mutex_);
  trace_.push_back(message);
}

// Messages are a length of two bytes and a command; one byte alone is a control code.
void VirtualCard::Serve() {
  enum Control : std::uint8_t { PowerOn = 1, Reset = 2, TellAtr = 4 };
  std::array<std::uint8_t, 2> length{};
  for (;;) {
    AcknowledgeAtOnce(socket_);
    if (!ReadAll(socket_, length.data(), length.size())) return;
    Bytes message(static_cast<std::size_t>(length[0]) << 8 | length[1]);
    if (!ReadAll(socket_, message.data(), message.size())) return;
    if (message.size() == ControlLength) {
      if (message[0] == TellAtr) {
        if (!WriteMessage(socket_, behaviour_.Atr)) return;
        continue;
      }
      Note(message);
      if (message[0] == PowerOn || message[0] == Reset) behaviour_.Reset();
      continue;
    }
    Note(message);
    const std::optional<Bytes> answer = behaviour_.Transmit(message);
    if (!answer) {
      ::shutdown(socket_, SHUT_RDWR);
      return;
    }
    if (!WriteMessage(socket_, *answer)) return;
  }
}

bool Eventually(const std::function<bool()>& question, std::chrono::seconds longest) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (!question()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

}  // namespace ctapi::test
