#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/Peer.h"
#include "ui/Picture.h"
#include "ui/Pixels.h"

namespace ui {

class Control;
struct FileDialog;
class Menu;
struct Message;
enum class MessageResult;

/// Makes native controls and runs the message loop.
class Toolkit {
 public:
  virtual ~Toolkit() = default;
  /// The peer for the control's kind; null where a kind needs none. The parent's peer exists already.
  virtual std::unique_ptr<Peer> CreatePeer(Control& control) = 0;
  /// Handles events as long as `condition` holds; it is asked after each event.
  virtual void RunWhile(const std::function<bool()>& condition) = 0;
  /// Handles the events that wait now.
  virtual void ProcessPendingEvents() = 0;
};

/// Windows that the machine draws and that wait for an answer.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual MessageResult ShowMessage(const Message& message) = 0;
  /// Shows the entries below `menu` at the mouse and waits until the menu is closed. The chosen entry, or
  /// null.
  virtual Menu* ShowPopupMenu(Menu& menu, Control& owner) = 0;
  /// False when the user cancelled.
  virtual bool ShowFileDialog(FileDialog& dialog) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void Clear() = 0;
  virtual void SetText(const std::string& text) = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;
  virtual float TwipsPerPixelX() const = 0;
  virtual float TwipsPerPixelY() const = 0;
  /// Handle of the picture as a small icon, 0 for no picture; the screen keeps it for as long as it lives.
  virtual std::uintptr_t SmallIcon(const PictureRef& picture) = 0;
  /// A picture that isn't an icon, in its own size. No pixels when there is none or it can't be read.
  virtual Pixels PixelsOf(const PictureRef& picture) const = 0;
  /// The bytes that the program carries under that name, besides its icons; none for a name that it doesn't
  /// know.
  virtual std::vector<std::byte> Resource(const std::string& name) const = 0;
};

/// All that the interface asks of the machine. The entry puts the native answers in place, tests the headless
/// ones.
struct Interface {
  Toolkit* toolkit = nullptr;
  Dialogs* dialogs = nullptr;
  Clipboard* clipboard = nullptr;
  Screen* screen = nullptr;
  /// Shows a topic of the help in front of a window; 0 is its contents. The program puts it in place.
  std::function<void(std::uintptr_t window, std::int32_t topic)> help;
};

Interface& TheInterface();

}  // namespace ui
