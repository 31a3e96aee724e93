#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "HarbourlineLook.h"
#include "RowList.h"
#include "Worker.h"

namespace upnp {

/// Shows the whole table of the router: whose each mapping is, for whom, and until when.
class TableWindow {
 public:
  /// The worker must outlive the window. The window starts hidden.
  explicit TableWindow(Worker& worker);
  ~TableWindow();
  TableWindow(const TableWindow&) = delete;
  TableWindow& operator=(const TableWindow&) = delete;

  /// Shows the window in front of all others, and reads the table anew.
  void BringToFront();

 private:
  /// What a reading brought, written by the worker before its task is done.
  struct Reading {
    TableReading table;
    std::string localAddress;
    std::string router;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void CreateControls();
  void Layout();
  void Read();
  void LookWhetherRead();
  void Tell(const std::wstring& text);

  Worker& worker_;
  std::unique_ptr<harbourline::Look> look_;
  HWND window_ = nullptr;
  HWND title_ = nullptr;
  HWND help_ = nullptr;
  HWND again_ = nullptr;
  RowList list_;
  std::shared_ptr<Task> task_;
  std::shared_ptr<Reading> reading_;
};

}  // namespace upnp
