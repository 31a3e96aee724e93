#include "ui/win32/RichTextBoxPeer.h"

#include <richedit.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/win32/Text.h"
#include "ui/win32/Fonts.h"

namespace ui::win32 {
namespace {

constexpr DWORD kStyle = ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY | WS_VSCROLL;
constexpr LONG kEnd = std::numeric_limits<LONG>::max();

/// The native class; the library that registers it stays loaded. Older systems have the older one only.
const char* RichEditClass() {
  static const char* const name = LoadLibraryA("msftedit.dll")   ? "RICHEDIT50W"
                                  : LoadLibraryA("riched20.dll") ? "RichEdit20A"
                                                                 : "";
  return name;
}

DWORD CALLBACK ReadDocument(DWORD_PTR cookie, BYTE* buffer, LONG size, LONG* read) {
  auto& rest = *reinterpret_cast<std::string_view*>(cookie);
  const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(size));
  std::memcpy(buffer, rest.data(), count);
  rest.remove_prefix(count);
  *read = static_cast<LONG>(count);
  return 0;
}

/// The native box counts a line end and a character of two bytes as one.
std::int32_t PlaceInText(std::string_view text, LONG characters) {
  std::size_t place = 0;
  for (; characters > 0 && place < text.size(); --characters) {
    const bool two =
        text.substr(place, 2) == "\r\n" || IsDBCSLeadByte(static_cast<BYTE>(text[place])) != FALSE;
    place += two ? 2 : 1;
  }
  return static_cast<std::int32_t>(place);
}

}  // namespace

RichTextBoxPeer::RichTextBoxPeer(RichTextBox& box, Surroundings& surroundings)
    : ChildPeer(box, surroundings), box_(box) {
  CreateNative(RichEditClass(), kStyle, WS_EX_CLIENTEDGE, std::string());
  Send(EM_EXLIMITTEXT, 0, kEnd);
  Send(EM_SETEVENTMASK, 0, ENM_SELCHANGE);
  ShowColors();
  ShowScale();
  SyncLater();
}

void RichTextBoxPeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kColors:
      ShowColors();
      break;
    case Aspect::kFont:
      ShowFont();
      break;
    case Aspect::kText:
      SyncLater();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void RichTextBoxPeer::ShowColors() {
  Send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(Ground()));
  // Text on the same ground as what it stands on needs no edge around it.
  const LONG_PTR before = GetWindowLongPtrA(Window(), GWL_EXSTYLE);
  const LONG_PTR edge = Ground() == GroundBehind() ? 0 : WS_EX_CLIENTEDGE;
  if ((before & WS_EX_CLIENTEDGE) == edge) return;
  SetWindowLongPtrA(Window(), GWL_EXSTYLE, (before & ~static_cast<LONG_PTR>(WS_EX_CLIENTEDGE)) | edge);
  SetWindowPos(Window(), nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void RichTextBoxPeer::ShowFont() {
  const Font& font = box_.Font();
  CHARFORMAT2W format{};
  format.cbSize = sizeof format;
  format.dwMask = CFM_FACE | CFM_SIZE | CFM_CHARSET;
  format.yHeight = static_cast<LONG>(std::lround(font.points * 20));
  format.bCharSet = DEFAULT_CHARSET;
  platform::win32::ToUtf16(Fonts::InstalledName(font.name)).copy(format.szFaceName, LF_FACESIZE - 1);
  // A document has fonts of its own.
  if (box_.Document().empty()) Send(EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&format));
  format.dwMask |= CFM_BOLD;
  format.dwEffects = font.bold ? CFE_BOLD : 0u;
  Send(EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
}

void RichTextBoxPeer::ScaleChanged() {
  ChildPeer::ScaleChanged();
  ShowScale();
}

void RichTextBoxPeer::ShowScale() {
  // The native box itself knows the scale of the screen as a whole only.
  const int wanted = FormScale().DotsPerInch();
  const int own = Scale::OfScreen().DotsPerInch();
  const bool same = wanted == own;
  Send(EM_SETZOOM, static_cast<WPARAM>(same ? 0 : wanted), same ? 0 : own);
}

void RichTextBoxPeer::Sync() {
  const Writing writing(writing_);
  const DrawingPause pause(Window());
  if (box_.Generation() != shownGeneration_ || shownLength_ == 0) {
    shownGeneration_ = box_.Generation();
    shownLength_ = 0;
    SetWindowTextA(Window(), "");
    ShowFont();
    box_.Document().empty() ? AddRuns() : LoadDocument();
    SetSelection(0, 0);
    Send(WM_VSCROLL, SB_TOP);
    return;
  }
  CHARRANGE selection{};
  POINT place{};
  Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  Send(EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&place));
  const bool follow = EndIsInSight();
  AddRuns();
  SetSelection(selection.cpMin, selection.cpMax);
  if (follow) {
    Send(WM_VSCROLL, SB_BOTTOM);
  } else {
    Send(EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&place));
  }
}

void RichTextBoxPeer::LoadDocument() {
  std::string_view rest = box_.Document();
  EDITSTREAM stream{};
  stream.dwCookie = reinterpret_cast<DWORD_PTR>(&rest);
  stream.pfnCallback = ReadDocument;
  Send(EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
}

void RichTextBoxPeer::AddRuns() {
  std::size_t begin = 0;
  for (const RichTextBox::Run& run : box_.Runs()) {
    const std::size_t end = begin + run.text.size();
    if (end > shownLength_) {
      const std::size_t shown = shownLength_ > begin ? shownLength_ - begin : 0;
      AddRun(std::string_view(run.text).substr(shown), run);
    }
    begin = end;
  }
  shownLength_ = begin;
}

void RichTextBoxPeer::AddRun(std::string_view text, const RichTextBox::Run& run) {
  SetSelection(kEnd, kEnd);
  CHARRANGE begin{};
  Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&begin));
  const std::wstring wide = platform::win32::ToUtf16(text);
  SendMessageW(Window(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide.c_str()));
  SetSelection(begin.cpMin, kEnd);
  CHARFORMAT2W format{};
  format.cbSize = sizeof format;
  format.dwMask = CFM_COLOR | CFM_BOLD;
  format.dwEffects = run.bold ? CFE_BOLD : 0u;
  if (run.color == kDefaultColor) format.dwEffects |= CFE_AUTOCOLOR;
  format.crTextColor = static_cast<COLORREF>(run.color) & 0xFFFFFF;
  Send(EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
}

void RichTextBoxPeer::SetSelection(LONG begin, LONG end) {
  CHARRANGE range{begin, end};
  Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

bool RichTextBoxPeer::EndIsInSight() const {
  RECT inner{};
  GetClientRect(Window(), &inner);
  GETTEXTLENGTHEX utf16{GTL_DEFAULT, 1200};
  const auto characters = Send(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&utf16));
  POINTL end{};
  Send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&end), characters);
  return end.y < inner.bottom;
}

void RichTextBoxPeer::ReadSelection() {
  CHARRANGE selection{};
  Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  box_.UserSelStart(PlaceInText(box_.Text(), selection.cpMin));
}

LRESULT RichTextBoxPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  // Tab, Enter and Escape are the window's, and a visit by the tab key selects nothing.
  if (message == WM_GETDLGCODE) return DLGC_WANTARROWS;
  return PassOn(message, wParam, lParam);
}

LRESULT RichTextBoxPeer::OnNotify(NMHDR& header) {
  if (header.code == EN_SELCHANGE && !writing_) ReadSelection();
  return 0;
}

}  // namespace ui::win32
