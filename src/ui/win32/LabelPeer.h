#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui {
class Label;
}

namespace ui::win32 {

class LabelPeer : public ChildPeer<> {
 public:
  LabelPeer(Label& label, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;

 private:
  Label& label_;
};

}  // namespace ui::win32
