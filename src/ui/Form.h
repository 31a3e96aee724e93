#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/Control.h"
#include "ui/Picture.h"
#include "ui/Pixels.h"

namespace ui {

/// Why a window is asked to close. The numbers are settled.
enum class CloseReason : std::int32_t {
  kUser = 0,         ///< close box or system menu
  kCode = 1,         ///< the program itself
  kSessionEnds = 2,  ///< the machine logs off or shuts down
  kTaskManager = 3,
  kOwnerCloses = 5,
};

/// A window. Its life: construction is its initialise step; Load makes the native window and runs OnLoad;
/// Unload asks OnQueryUnload, runs OnUnload and takes the native window away; destruction is its terminate
/// step. Reading or changing its state never loads it; showing it and giving it an icon does.
class Form : public Control {
 public:
  struct Style {
    bool border = true;
    bool resizable = true;
    bool minimiseAndMaximise = true;
    bool toolWindow = false;
    bool inTaskBar = true;
    bool centreOnScreen = true;
    bool centreOnOwner = false;
  };

  Form(std::string name, std::string caption, Style style, Twips width, Twips height);
  ~Form() override;

  const Style& GetStyle() const { return style_; }
  const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  const PictureRef& Icon() const { return icon_; }
  virtual void Icon(PictureRef icon);

  /// What of a borderless window is there, in pixels of the window. None stands for the whole rectangle.
  const std::vector<PixelRun>& Shape() const { return shape_; }
  void Shape(std::vector<PixelRun> shape);
  /// On the monitor where the window is; on the whole screen's scale while it isn't loaded.
  float TwipsPerPixel() const;
  /// Called while a button of the mouse is down: the window is dragged as if by its title bar.
  void DragByMouse();

  bool IsLoaded() const { return loaded_; }
  /// Does nothing when it is loaded. A failure of OnLoad leaves it loaded; when a native window can't be made
  /// it isn't loaded.
  void Load();
  /// Loads, shows and activates the window, also one that is visible already.
  void Show(Form* owner = nullptr);
  /// Shows the window over its owner and returns when it is hidden or unloaded.
  void ShowModal(Form* owner);
  bool IsModal() const { return modal_; }
  /// What it was shown with, until it is unloaded.
  Form* Owner() const { return owner_; }
  void Hide() { Visible(false); }
  using Control::Visible;
  /// Making it visible loads it.
  void Visible(bool visible) override;
  /// The loaded windows that it owns go before it, for the reason kOwnerCloses. False when one of them
  /// refused, and while it is being unloaded already. An unloaded window has nothing to refuse.
  bool Unload(CloseReason reason = CloseReason::kCode);
  /// Handle of the native window, 0 while it isn't loaded.
  std::uintptr_t Handle() const { return GetPeer() ? GetPeer()->Handle() : 0; }

  /// All windows that are loaded now, in the order of loading.
  static std::vector<Form*> LoadedForms();
  /// True when no loaded window refuses the end of the session. What fails meanwhile is traced: a box would
  /// hold up the end.
  static bool QuerySessionEnd();

  /// With the mouse's place in twips.
  base::Event<float, float> MouseMove;
  /// The machine's shell started anew and has lost what the program had put into its task bar. Told to every
  /// loaded window.
  base::Event<> ShellRestarted;

  /// The close box or another request from outside.
  void UserClose(CloseReason reason);
  void UserMouseMove(float x, float y);
  void UserShellRestarted();
  /// The help key: shows the topic of the control with the focus, or of the nearest that it stands on and
  /// that has one.
  void UserHelp();
  /// The new place of the inner area, in twips. Pages hide what they move and show it again; peers learn only
  /// what has changed in the end, so that the control with the focus keeps it.
  void UserResize(const Bounds& bounds);
  /// The window has come to a monitor of another scale.
  void UserScaleChanged();
  /// True when the peer of the control learns only later whether the control is visible.
  bool PutsOffVisibility(Control& control);

 protected:
  virtual void OnLoad() {}
  virtual void OnQueryUnload(bool& cancel, CloseReason reason);
  virtual void OnUnload() {}
  void OnPeerAttached() override { OnResize(); }

 private:
  std::vector<Form*> OwnedForms() const;
  /// Tells the peers of those controls below `control` that have changed.
  static void ShowVisibility(const Control& control, const std::vector<Control*>& changed);

  Style style_;
  std::string caption_;
  PictureRef icon_;
  std::vector<PixelRun> shape_;
  Form* owner_ = nullptr;
  bool loaded_ = false;
  bool modal_ = false;
  bool unloading_ = false;
  bool resizing_ = false;
  /// The controls whose visibility differs from what their peers know.
  std::vector<Control*> putOff_;
};

}  // namespace ui
