#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "HarbourlineLook.h"
#include "RowList.h"
#include "Worker.h"

namespace upnp {

/// The dialog behind IServer_Configure: the routers that were found, and which of them is to be used.
class ConfigureDialog {
 public:
  struct Choice {
    std::string device;  ///< identifier of the router; empty: the plug-in chooses
    std::uint16_t syslogPort = 514;
    bool trace = false;  ///< what the plug-in does is written to a file
  };

  /// `choice` is the one so far. `arrivals` tells whether lines of the router's log arrive. The worker must
  /// outlive the dialog.
  ConfigureDialog(Worker& worker, Choice choice, std::function<std::wstring()> arrivals);

  /// Runs until the user is done, over `owner`, which may be null. True when the user accepted.
  bool Run(HWND owner);
  /// What the user accepted.
  const Choice& Result() const { return choice_; }

  /// The dialog on the screen, null outside Run.
  HWND Handle() const { return dialog_; }

 private:
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnCommand(int id);
  bool Accept();
  void CreateControls();
  void ApplyLook();
  void Layout();
  void Search();
  void Refresh();
  void ShowRouters(const Report& report);
  void Tell(int id, const std::wstring& text);
  std::wstring Advice(const Known& known) const;

  Worker& worker_;
  Choice choice_;
  std::function<std::wstring()> arrivals_;
  std::vector<std::string> devices_;  ///< of the rows; the first row is the plug-in's own choice
  std::unique_ptr<harbourline::Look> look_;
  RowList list_;
  std::shared_ptr<Task> search_;
  std::map<int, std::wstring> told_;  ///< by the label's identifier
  HWND dialog_ = nullptr;
};

}  // namespace upnp
