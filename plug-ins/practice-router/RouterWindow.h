#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Look.h"
#include "RouterState.h"

namespace practice {

/// The window in which the router can be watched. It shows a RouterState and changes nothing of it.
class RouterWindow {
 public:
  struct Actions {
    std::function<void()> raiseError;
    std::function<void()> configure;
  };

  /// `state` must outlive the window. The window starts hidden. Where no window can be made, on a machine
  /// without a screen, every operation does nothing.
  RouterWindow(const RouterState& state, Actions actions);
  ~RouterWindow();
  RouterWindow(const RouterWindow&) = delete;
  RouterWindow& operator=(const RouterWindow&) = delete;

  HWND Handle() const { return window_; }
  /// Shows the window without taking the focus from another.
  void Appear();
  /// Shows the window in front of all others.
  void BringToFront();
  /// Shows what the state is now, but for the port-forwarding table.
  void Refresh();
  /// Shows the port-forwarding table as it is now.
  void RefreshTable();

 private:
  enum Fact { kWanAddress, kStatus, kWarning, kDmzHost, kLog, kForwarding, kFactCount };
  struct FactLabels {
    HWND name = nullptr;
    HWND value = nullptr;
    COLORREF colour = kNavy;
  };

  /// A list view that asks for its texts, and the widest text of each column so far.
  struct List {
    HWND handle = nullptr;
    std::vector<std::wstring> captions;
    std::size_t stretched = 0;  ///< the column that takes the room that is left
    std::vector<int> widest;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnCommand(int id);

  HWND AddChild(const wchar_t* className, const wchar_t* text, DWORD style, int id);
  HWND AddLabel(const wchar_t* text);
  void AddList(List& list, int id, std::vector<std::wstring> captions, std::size_t stretched);
  void CreateControls();
  void ApplyLook();

  void Layout();
  int LayoutFacts(int left, int top, int width);
  int FactNameWidth(Fact first, Fact end) const;
  void FitColumns(const List& list);
  SIZE SmallestWindow() const;

  void ShowFact(Fact fact, const std::wstring& value, COLORREF colour);
  void MeasureCaptions(List& list);
  void MeasureRow(List& list, std::size_t row);
  void FillCell(NMLVDISPINFOW& info);
  std::wstring Cell(const List& list, std::size_t row, std::size_t column) const;
  COLORREF ColourOf(HWND label) const;

  const RouterState& state_;
  Actions actions_;
  std::unique_ptr<Look> look_;
  HWND window_ = nullptr;
  HWND title_ = nullptr;
  HWND help_ = nullptr;
  HWND tableHeading_ = nullptr;
  HWND callsHeading_ = nullptr;
  List table_;
  List calls_;
  HWND raiseError_ = nullptr;
  HWND configure_ = nullptr;
  std::array<FactLabels, kFactCount> facts_;
};

}  // namespace practice
