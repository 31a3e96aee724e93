#pragma once

#include <cstdint>
#include <memory>

namespace ui {

class Control;

/// What has changed in a control. The peer reads the new state from the control itself.
enum class Aspect {
  kBounds,
  kVisible,
  kEnabled,
  kColors,
  kFont,
  kText,   ///< the text, caption or tip
  kValue,  ///< tick, interval, picture: the one value that the kind holds besides its text
  kItems,  ///< rows, nodes, buttons or menu entries as a whole
  kColumns,
  kSelection,  ///< selected rows, node or text
  kReadOnly,
  kOrder,  ///< the control stands behind its neighbours from now on
  kShape,
};

/// Shows a control by one native control. It mirrors the state that the control owns and reports what the
/// user does by calling the control's User... members; it decides nothing, and it never reports its own
/// writes.
class Peer {
 public:
  virtual ~Peer() = default;
  virtual void Changed(Aspect aspect) = 0;
  virtual void SetFocus() {}
  /// The mouse has been pressed: the window follows it until it is released.
  virtual void DragByMouse() {}
  /// How many twips a pixel of the monitor has on which the window is; 0 for all but windows.
  virtual float TwipsPerPixel() const { return 0; }
  /// The native window, 0 for a kind that has none.
  virtual std::uintptr_t Handle() const { return 0; }
};

}  // namespace ui
