#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Socket.h"
#include "log/Intake.h"
#include "log/LogFeed.h"
#include "log/Texts.h"

namespace upnp {

/// Between whom the log travels. Addresses are dotted.
struct SyslogRoute {
  /// Of the adapter that is listened on; the others hear nothing.
  std::string adapterAddress;
  /// Lines from elsewhere are passed over.
  std::string routerAddress;
  /// May be empty.
  std::string wanAddress;
  std::uint16_t port = 514;

  bool operator==(const SyslogRoute&) const = default;
};

/// Receives the router's log on a thread of its own, and brings its rows to the thread that made it, which
/// must have a message loop. There are 50 rows a second at most, whatever arrives.
class SyslogListener {
 public:
  /// All are called on the thread that made the listener.
  struct Handlers {
    /// A failure of these two costs that row and nothing else.
    log::LogFeed::NamePort namePort;
    log::LogFeed::TakeRow takeRow;
    /// For the event `Error`: the port can't be had. The number is Windows'.
    std::function<void(const std::string& message, short number)> error;
  };

  explicit SyslogListener(Handlers handlers);
  ~SyslogListener();
  SyslogListener(const SyslogListener&) = delete;
  SyslogListener& operator=(const SyslogListener&) = delete;

  /// Listens there from now on. Costs nothing when it does already, and tries again when it couldn't; the
  /// same failure is told by the error handler once. False when the port can't be had.
  bool Listen(const SyslogRoute& route);
  void Stop();

  log::ListenerState State() const;
  /// The clock of the state's times.
  static log::Time Now();

 private:
  struct Hub;
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static void Drain(const std::shared_ptr<Hub>& hub);
  bool Fail(int errorNumber);
  void Receive(SOCKET handle) const;
  void TakeDatagrams(SOCKET handle, std::string& buffer, const log::Sides& sides) const;

  SocketLibrary library_;
  std::function<void(const std::string&, short)> error_;
  std::shared_ptr<Hub> hub_;
  SyslogRoute route_;
  std::string problem_;
  std::unique_ptr<UdpSocket> socket_;
  HANDLE stop_ = nullptr;
  std::thread thread_;
};

/// The networks of the adapter with this address, and the router's other side.
log::Sides SidesOf(const std::string& adapterAddress, const std::string& wanAddress);

}  // namespace upnp
