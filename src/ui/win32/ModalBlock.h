#pragma once

namespace ui {
class Form;
}

namespace ui::win32 {

/// While it lives, the user can't reach the other windows that were loaded when it was made: it stands beside
/// a window or a question that wants its answer first. Windows that are loaded later are free.
class ModalBlock {
 public:
  /// `free` is the window that stays within reach; null for none.
  explicit ModalBlock(const Form* free);
  ~ModalBlock();
  ModalBlock(const ModalBlock&) = delete;
  ModalBlock& operator=(const ModalBlock&) = delete;
};

}  // namespace ui::win32
