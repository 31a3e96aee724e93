#include "NetworkChanges.h"

#include <iphlpapi.h>

namespace upnp {

NetworkChanges::NetworkChanges() {
  request_.hEvent = WSACreateEvent();
  Ask();
}

NetworkChanges::~NetworkChanges() {
  if (asked_) {
    CancelIPChangeNotify(&request_);
    // The request writes into this object until it has ended.
    constexpr DWORD kLongestEnd = 1000;
    WaitForSingleObject(request_.hEvent, kLongestEnd);
  }
  WSACloseEvent(request_.hEvent);
}

/// One request is good for one change.
void NetworkChanges::Ask() {
  HANDLE ignored = nullptr;
  asked_ = NotifyAddrChange(&ignored, &request_) == ERROR_IO_PENDING;
}

bool NetworkChanges::Take() {
  if (!asked_ || WaitForSingleObject(request_.hEvent, 0) != WAIT_OBJECT_0) return false;
  WSAResetEvent(request_.hEvent);
  Ask();
  return true;
}

}  // namespace upnp
