#include "editing/ctlMappingEditor.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/PageStyle.h"
#include "ui/modControlHelper.h"

namespace {

constexpr std::int32_t kTcp = 0;
constexpr std::int32_t kUdp = 1;
constexpr std::int32_t kBoth = 2;
constexpr std::int16_t kThisComputer = -1;

/// A column of the grid: its place in the frame, where the frame is wide enough. A port has room for its five
/// digits.
struct Column {
  ui::Twips left;
  ui::Twips width;
};
constexpr std::array<Column, 7> kColumns{
    {{0, 3075}, {3240, 720}, {4200, 315}, {4620, 720}, {5640, 735}, {6540, 735}, {7500, 555}}};
constexpr std::size_t kDescription = 0, kBegin = 1, kTo = 2, kEnd = 3, kTCP = 4, kUDP = 5, kTarget = 6;
/// The gap between two columns keeps so much of its width when the frame is narrow.
constexpr ui::Twips kSmallestGap = 75;

constexpr ui::Twips kRowDistance = 360;
constexpr ui::Twips kButtonWidth = 1500;

std::string Indexed(const char* name, std::int16_t iRow) {
  return name + ("(" + base::ToText(iRow) + ")");
}

ui::Twips RightOf(const Column& column) {
  return column.left + column.width;
}

/// The first `count` columns, drawn together until they fit into `room`: first the gaps give way, then the
/// description.
std::array<Column, kColumns.size()> Fit(std::size_t count, ui::Twips room) {
  std::array<Column, kColumns.size()> columns = kColumns;
  const ui::Twips missing = std::max(0, RightOf(kColumns[count - 1]) - room);
  ui::Twips yielding = 0;
  for (std::size_t i = 1; i < count; ++i)
    yielding += kColumns[i].left - RightOf(kColumns[i - 1]) - kSmallestGap;
  const ui::Twips fromGaps = std::min(missing, yielding);
  columns[kDescription].width = std::max(0, kColumns[kDescription].width - (missing - fromGaps));
  for (std::size_t i = 1; i < columns.size(); ++i) {
    const ui::Twips gap = kColumns[i].left - RightOf(kColumns[i - 1]);
    columns[i].left = RightOf(columns[i - 1]) + gap - (gap - kSmallestGap) * fromGaps / yielding;
  }
  return columns;
}

/// The number at the left of the text, 0 without one. Fails for one that no port number holds.
std::int32_t PortOf(const ui::TextBox& box) {
  return base::ToInt32(base::LeadingNumber(box.Text()));
}

/// Fails for a text that is no number, or one beyond 16 bits.
std::int16_t TargetOf(const ui::TextBox& box) {
  return box.Text().empty() ? kThisComputer : base::ToInt16(std::string_view(box.Text()));
}

bool CanRead(const ui::TextBox& box, std::size_t column) {
  try {
    column == kTarget ? static_cast<void>(TargetOf(box)) : static_cast<void>(PortOf(box));
    return true;
  } catch (const base::Error&) {
    return false;
  }
}

}  // namespace

ctlMappingEditor::Row::Row(ui::Control* frame, std::int16_t iRow)
    : txtDescription(frame, Indexed("txtDescription", iRow)),
      txtBeginRange(frame, Indexed("txtBeginRange", iRow)),
      lblTo(frame, Indexed("lblTo", iRow), "to", ui::Alignment::kCenter),
      txtEndRange(frame, Indexed("txtEndRange", iRow)),
      chkTCP(frame, Indexed("chkTCP", iRow), "TCP"),
      chkUDP(frame, Indexed("chkUDP", iRow), "UDP"),
      txtTargetIP(frame, Indexed("txtTargetIP", iRow)) {
  lblTo.Transparent(true);
}

ctlMappingEditor::ctlMappingEditor(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 10305, 7320),
      lblTitle(this, "lblTitle", "Mapping Assignments"),
      framMappings(this, "framMappings"),
      lblDescription(&framMappings, "lblDescription", "Description", ui::Alignment::kCenter),
      lblBeginRange(&framMappings, "lblBeginRange", "Begin", ui::Alignment::kCenter),
      lblEndRange(&framMappings, "lblEndRange", "End", ui::Alignment::kCenter),
      cmdShowAdvance(&framMappings, "cmdShowAdvance", "&Show Advance"),
      lblIP(&framMappings, "lblIP", "IP", ui::Alignment::kCenter),
      lblError(this, "lblError"),
      cmdAccept(this, "cmdAccept", "&Accept"),
      cmdCancel(this, "cmdCancel", "&Cancel") {
  HelpContextID(9030);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblError.ForeColor(modCommon::ColorDarkRed());
  cmdAccept.Picture(ui::ResourcePicture("ACCEPT"));
  cmdAccept.Enabled(false);
  cmdCancel.Picture(ui::ResourcePicture("CANCEL"));
  for (std::int16_t iRow = 0; iRow < kRows; ++iRow) Connect(m_Rows.emplace_back(&framMappings, iRow));
  cmdShowAdvance.Click.Connect([this] { ShowAdvance(true); });
  cmdAccept.Click.Connect<&ctlMappingEditor::cmdAccept_Click>(this);
  cmdCancel.Click.Connect([this] { Cancel.Raise(); });
  ShowAdvance(false);
  OnResize();
}

void ctlMappingEditor::Connect(Row& row) {
  for (ui::TextBox* box : {&row.txtDescription, &row.txtBeginRange, &row.txtEndRange, &row.txtTargetIP}) {
    box->ForeColor(modCommon::ColorNavy());
    box->Change.Connect<&ctlMappingEditor::EnableAccept>(this);
    box->GotFocus.Connect([box] { modControlHelper::SelectAllText(*box); });
  }
  for (ui::CheckBox* tick : {&row.chkTCP, &row.chkUDP}) {
    tick->Click.Connect<&ctlMappingEditor::EnableAccept>(this);
  }
  row.txtEndRange.LostFocus.Connect([&row] {
    const std::string sBegin = row.txtBeginRange.Text();
    const std::string sEnd = row.txtEndRange.Text();
    if (base::LeadingNumber(sBegin) <= base::LeadingNumber(sEnd)) return;
    row.txtBeginRange.Text(sEnd);
    row.txtEndRange.Text(sBegin);
  });
}

void ctlMappingEditor::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Control* control : std::initializer_list<ui::Control*>{&framMappings, &lblError, &lblBeginRange,
                                                                  &lblDescription, &lblEndRange, &lblIP}) {
    control->BackColor(color);
  }
  for (Row& row : m_Rows) {
    row.chkTCP.BackColor(color);
    row.chkUDP.BackColor(color);
  }
}

void ctlMappingEditor::ShowAdvance(bool bShow) {
  m_bShowAdvance = bShow;
  for (Row& row : m_Rows) row.txtTargetIP.Visible(bShow);
  lblIP.Visible(bShow);
  cmdShowAdvance.Visible(!bShow);
  LayOutColumns();
}

void ctlMappingEditor::SetMappingRow(std::int16_t iRow, const std::string& sDescription,
                                     std::int32_t lBeginPort, std::int32_t lEndPort, std::int32_t Protocal,
                                     std::int16_t iForwardIPAddress, bool bClear) {
  Row& row = m_Rows[static_cast<std::size_t>(iRow)];
  row.txtDescription.Text(bClear ? std::string() : sDescription);
  row.txtBeginRange.Text(bClear ? std::string() : base::ToText(lBeginPort));
  row.txtEndRange.Text(bClear ? std::string() : base::ToText(lEndPort));
  row.txtTargetIP.Text(bClear || iForwardIPAddress == kThisComputer ? std::string()
                                                                    : base::ToText(iForwardIPAddress));
  if (!bClear && Protocal != kTcp && Protocal != kUdp && Protocal != kBoth) return;
  row.chkTCP.Checked(!bClear && Protocal != kUdp);
  row.chkUDP.Checked(!bClear && Protocal != kTcp);
}

void ctlMappingEditor::Populate(const CMapProfile& MapProfile) {
  if (MapProfile.ccMappings().Count() > m_Rows.size()) {
    throw base::Error(base::ErrorNumber::kSubscript,
                      "The grid has no row for mapping " + base::ToText(std::int32_t{kRows + 1}));
  }
  std::int16_t iRow = 0;
  for (const auto& mapping : MapProfile.ccMappings()) {
    SetMappingRow(iRow++, mapping->sDescription(), mapping->lBeginPort(), mapping->lEndPort(),
                  mapping->Protocal(), mapping->iForwardIPAddress(), false);
  }
  while (iRow < kRows) SetMappingRow(iRow++, {}, 0, 0, kTcp, kThisComputer, true);
  cmdAccept.Enabled(false);
  ShowAdvance(false);
}

void ctlMappingEditor::Save(CMapProfile& MapProfile) const {
  std::vector<std::shared_ptr<CMapping>> mappings;
  for (const Row& row : m_Rows) {
    if (!row.IsMapping()) continue;
    const auto mapping = std::make_shared<CMapping>();
    mapping->iForwardIPAddress(TargetOf(row.txtTargetIP));
    mapping->sDescription(row.txtDescription.Text());
    mapping->lBeginPort(PortOf(row.txtBeginRange));
    mapping->lEndPort(PortOf(row.txtEndRange));
    mapping->Protocal(!row.chkUDP.Checked() ? kTcp : row.chkTCP.Checked() ? kBoth : kUdp);
    mappings.push_back(mapping);
  }
  MapProfile.ClearMappings();
  for (auto& mapping : mappings) MapProfile.AddMapping(std::move(mapping));
}

void ctlMappingEditor::SetFocus() {
  m_Rows.front().txtDescription.SetFocus();
}

std::optional<ctlMappingEditor::Unreadable> ctlMappingEditor::FindUnreadable() {
  for (std::size_t i = 0; i < m_Rows.size(); ++i) {
    Row& row = m_Rows[i];
    if (!row.IsMapping()) continue;
    struct Entry {
      ui::TextBox& box;
      std::size_t column;
      const char* sName;
      const char* sWhat;
    };
    for (const Entry& entry :
         {Entry{row.txtBeginRange, kBegin, "Begin", "is no port number."},
          Entry{row.txtEndRange, kEnd, "End", "is no port number."},
          Entry{row.txtTargetIP, kTarget, "IP",
                "is not the last number of an address, such as 12. Leave it empty for this computer."}}) {
      if (CanRead(entry.box, entry.column)) continue;
      return Unreadable{&entry.box, "Row " + base::ToText(static_cast<std::int32_t>(i + 1)) + ", " +
                                        entry.sName + ": \"" + ui::ForMessage(entry.box.Text()) + "\" " +
                                        entry.sWhat};
    }
  }
  return std::nullopt;
}

void ctlMappingEditor::cmdAccept_Click() {
  if (const auto unreadable = FindUnreadable()) {
    ui::ShowMessage(unreadable->sMessage, ui::MessageIcon::kWarning);
    unreadable->box->SetFocus();
    return;
  }
  Accept.Raise();
}

void ctlMappingEditor::SetControlsVisible(bool bVisible) {
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblTitle, &framMappings, &lblError, &cmdAccept, &cmdCancel}) {
    control->Visible(bVisible);
  }
}

void ctlMappingEditor::LayOutColumns() {
  const auto columns = Fit(m_bShowAdvance ? kColumns.size() : kTarget, framMappings.Width() - ui::kMargin);
  const auto place = [&columns](ui::Control& control, std::size_t column, ui::Twips top) {
    control.Move(columns[column].left, top, columns[column].width, ui::kLineHeight);
  };
  place(lblDescription, kDescription, 0);
  place(lblBeginRange, kBegin, 0);
  place(lblEndRange, kEnd, 0);
  place(lblIP, kTarget, 0);
  cmdShowAdvance.Move(columns[kTCP].left, 0, RightOf(columns[kUDP]) - columns[kTCP].left, ui::kLineHeight);
  ui::Twips top = ui::kLineHeight + ui::kMargin;
  for (Row& row : m_Rows) {
    place(row.txtDescription, kDescription, top);
    place(row.txtBeginRange, kBegin, top);
    place(row.lblTo, kTo, top + ui::kLabelDrop);
    place(row.txtEndRange, kEnd, top);
    place(row.chkTCP, kTCP, top);
    place(row.chkUDP, kUDP, top);
    place(row.txtTargetIP, kTarget, top);
    top += kRowDistance;
  }
}

void ctlMappingEditor::OnResize() {
  SetControlsVisible(false);
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  framMappings.Move(ui::kMargin, lblTitle.Bottom() + ui::kMargin, inner + ui::kMargin,
                    ui::kLineHeight + ui::kMargin + kRows * kRowDistance);
  LayOutColumns();
  const ui::Twips buttons =
      std::max(framMappings.Bottom() + ui::kMargin, Height() - ui::kMargin - ui::kPictureButtonHeight);
  cmdCancel.Move(Width() - ui::kMargin - kButtonWidth, buttons, kButtonWidth, ui::kPictureButtonHeight);
  cmdAccept.Move(cmdCancel.Left() - ui::kMargin - kButtonWidth, buttons, kButtonWidth,
                 ui::kPictureButtonHeight);
  lblError.Move(ui::kMargin, buttons, cmdAccept.Left() - 2 * ui::kMargin, ui::kPictureButtonHeight);
  SetControlsVisible(true);
}
