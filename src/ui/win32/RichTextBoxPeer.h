#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/RichTextBox.h"
#include "ui/win32/ChildWindow.h"

namespace ui::win32 {

/// What is added at the end leaves the user's selection and the place that is being read as they are, unless
/// the end was in sight: then it stays in sight.
class RichTextBoxPeer : public ChildPeer<> {
 public:
  RichTextBoxPeer(RichTextBox& box, Surroundings& surroundings);

  void ScaleChanged() override;

 protected:
  void Show(Aspect aspect) override;
  void Sync() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  LRESULT OnNotify(NMHDR& header) override;
  COLORREF DefaultGround() const override { return GetSysColor(COLOR_WINDOW); }

 private:
  void ShowColors();
  void ShowFont();
  void ShowScale();
  void LoadDocument();
  /// Adds what isn't shown yet.
  void AddRuns();
  void AddRun(std::string_view text, const RichTextBox::Run& run);
  void SetSelection(LONG begin, LONG end);
  bool EndIsInSight() const;
  void ReadSelection();

  RichTextBox& box_;
  std::int32_t shownGeneration_ = -1;
  /// Characters of the control's text that are shown.
  std::size_t shownLength_ = 0;
  bool writing_ = false;
};

}  // namespace ui::win32
