#pragma once

#include <windows.h>

#include "ui/Peer.h"

namespace ui {
class Timer;
}

namespace ui::win32 {

class UtilityWindow;

class TimerPeer : public Peer {
 public:
  TimerPeer(Timer& timer, UtilityWindow& utility);
  ~TimerPeer() override;
  void Changed(Aspect aspect) override;

 private:
  Timer& timer_;
  UtilityWindow& utility_;
  UINT_PTR running_ = 0;
};

}  // namespace ui::win32
