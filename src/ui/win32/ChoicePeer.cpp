#include "ui/win32/ChoicePeer.h"

#include "ui/Choice.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

/// Sent to oneself when the user has chosen in the open list.
constexpr UINT kChosen = WM_APP + 3;

}  // namespace

struct ChoicePeer::Messages {
  const char* className;
  DWORD style;
  DWORD extendedStyle;
  UINT reset;
  UINT add;
  UINT select;
  UINT selected;
  WORD changed;
  WORD doubleClick;

  static const Messages& Of(Kind kind) {
    static constexpr Messages kCombo{"COMBOBOX",
                                     CBS_DROPDOWNLIST | WS_VSCROLL,
                                     0,
                                     CB_RESETCONTENT,
                                     CB_ADDSTRING,
                                     CB_SETCURSEL,
                                     CB_GETCURSEL,
                                     CBN_SELCHANGE,
                                     CBN_DBLCLK};
    static constexpr Messages kList{"LISTBOX",        LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL,
                                    WS_EX_CLIENTEDGE, LB_RESETCONTENT,
                                    LB_ADDSTRING,     LB_SETCURSEL,
                                    LB_GETCURSEL,     LBN_SELCHANGE,
                                    LBN_DBLCLK};
    return kind == Kind::kComboBox ? kCombo : kList;
  }
};

ChoicePeer::ChoicePeer(Choice& choice, Surroundings& surroundings)
    : ChildPeer(choice, surroundings), choice_(choice), messages_(Messages::Of(choice.GetKind())) {
  CreateNative(messages_.className, messages_.style, messages_.extendedStyle, std::string());
  SyncLater();
}

void ChoicePeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kItems:
      itemsStale_ = true;
      SyncLater();
      break;
    case Aspect::kSelection:
      SyncLater();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void ChoicePeer::Sync() {
  if (itemsStale_) {
    itemsStale_ = false;
    const DrawingPause pause(Window());
    Send(messages_.reset);
    for (std::int32_t i = 0; i < choice_.ListCount(); ++i) {
      Send(messages_.add, 0, reinterpret_cast<LPARAM>(choice_.List(i).c_str()));
    }
  }
  Send(messages_.select, static_cast<WPARAM>(choice_.ListIndex()));
}

RECT ChoicePeer::NativeBounds() const {
  RECT bounds = ChildPeer::NativeBounds();
  // The bounds of a combo box reach down to the end of its list; how high it stands follows from its font.
  if (choice_.GetKind() == Kind::kComboBox) bounds.bottom += FormScale().Pixels(4000);
  return bounds;
}

void ChoicePeer::ReportSelection() {
  reported_ = true;
  choice_.UserSelect(Send<std::int32_t>(messages_.selected));
}

LRESULT ChoicePeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kChosen) return PassOn(message, wParam, lParam);
  if (!reported_) ReportSelection();
  return 0;
}

void ChoicePeer::OnCommand(WORD code, WORD) {
  if (code == messages_.changed) {
    ReportSelection();
  } else if (code == messages_.doubleClick) {
    choice_.UserDblClick();
  } else if (choice_.GetKind() == Kind::kComboBox) {
    OnDropDown(code);
  }
}

void ChoicePeer::OnDropDown(WORD code) {
  switch (code) {
    case CBN_DROPDOWN:
      open_ = true;
      reported_ = false;
      break;
    case CBN_SELENDOK:
      // Choosing the row that is chosen already changes no selection. Whether this choice does, the native
      // box reports after this.
      if (open_) PostMessageA(Window(), kChosen, 0, 0);
      break;
    case CBN_CLOSEUP:
      open_ = false;
      break;
    default:
      break;
  }
}

}  // namespace ui::win32
