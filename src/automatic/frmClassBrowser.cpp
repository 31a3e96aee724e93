#include "automatic/frmClassBrowser.h"

#include <algorithm>

#include "automatic/modWhatsRunning.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"

namespace {

constexpr const char* kNone = "[None]";
constexpr ui::Form::Style kToolWindow{.resizable = false,
                                      .minimiseAndMaximise = false,
                                      .toolWindow = true,
                                      .inTaskBar = false,
                                      .centreOnScreen = false,
                                      .centreOnOwner = true};
constexpr ui::Twips kLabelWidth = 1300;
constexpr ui::Twips kButtonWidth = 1300;

}  // namespace

frmClassBrowser::frmClassBrowser()
    : Form("frmClassBrowser", "Select a Running Program", kToolWindow, 4680, 4290),
      lslAvailableClasses(this, "lslAvailableClasses"),
      lblWindowTitle(this, "lblWindowTitle", "Window Title:", ui::Alignment::kRight),
      txtWindowTitle(this, "txtWindowTitle"),
      lblWindowClass(this, "lblWindowClass", "Window Class:", ui::Alignment::kRight),
      txtWindowClass(this, "txtWindowClass"),
      cmdAccept(this, "cmdAccept", "&Accept"),
      cmdCancel(this, "cmdCancel", "&Cancel") {
  HelpContextID(9020);
  BackColor(modCommon::ColorBackground());
  for (ui::Label* label : {&lblWindowTitle, &lblWindowClass}) label->Transparent(true);
  for (ui::TextBox* box : {&txtWindowTitle, &txtWindowClass}) box->Locked(true);
  cmdAccept.Picture(ui::ResourcePicture("ACCEPT"));
  cmdCancel.Picture(ui::ResourcePicture("CANCEL"));
  cmdAccept.Picture(ui::ResourcePicture("ACCEPT"));
  cmdAccept.Enabled(false);
  cmdAccept.Default(true);
  cmdCancel.Picture(ui::ResourcePicture("CANCEL"));
  cmdCancel.Cancel(true);
  lslAvailableClasses.Click.Connect<&frmClassBrowser::lslAvailableClasses_Click>(this);
  cmdAccept.Click.Connect<&frmClassBrowser::cmdAccept_Click>(this);
  cmdCancel.Click.Connect<&frmClassBrowser::cmdCancel_Click>(this);
  OnResize();
}

void frmClassBrowser::sWindowClass(std::string sClass) {
  m_sWindowClass = std::move(sClass);
  txtWindowClass.Text(m_sWindowClass);
}

void frmClassBrowser::sWindowTitle(std::string sTitle) {
  m_sWindowTitle = std::move(sTitle);
  txtWindowTitle.Text(m_sWindowTitle);
}

void frmClassBrowser::OnLoad() {
  modWhatsRunning::EnumAvailableWindows(lslAvailableClasses);
  lslAvailableClasses.AddItem(kNone, 0);
  m_bCancel = false;
  cmdAccept.Enabled(false);
}

void frmClassBrowser::lslAvailableClasses_Click() {
  const std::string& sEntry = lslAvailableClasses.Text();
  if (sEntry == kNone) {
    sWindowClass(std::string());
    sWindowTitle(std::string());
  } else {
    sWindowClass(modWhatsRunning::WindowClassFromEntry(sEntry));
    sWindowTitle(modWhatsRunning::WindowTitleFromEntry(sEntry));
  }
  cmdAccept.Enabled(true);
}

void frmClassBrowser::cmdAccept_Click() {
  m_bCancel = false;
  Unload();
}

void frmClassBrowser::cmdCancel_Click() {
  m_bCancel = true;
  Unload();
}

void frmClassBrowser::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  const ui::Twips field = ui::kMargin + kLabelWidth + ui::kMargin;
  cmdCancel.Move(Width() - ui::kMargin - kButtonWidth, Height() - ui::kMargin - ui::kButtonHeight,
                 kButtonWidth, ui::kButtonHeight);
  cmdAccept.Move(cmdCancel.Left() - ui::kMargin - kButtonWidth, cmdCancel.Top(), kButtonWidth,
                 ui::kButtonHeight);
  txtWindowClass.Move(field, cmdCancel.Top() - ui::kMargin - ui::kLineHeight, Width() - field - ui::kMargin,
                      ui::kLineHeight);
  lblWindowClass.Move(ui::kMargin, txtWindowClass.Top() + ui::kLabelDrop, kLabelWidth, ui::kLineHeight);
  txtWindowTitle.Move(field, txtWindowClass.Top() - ui::kMargin - ui::kLineHeight, txtWindowClass.Width(),
                      ui::kLineHeight);
  lblWindowTitle.Move(ui::kMargin, txtWindowTitle.Top() + ui::kLabelDrop, kLabelWidth, ui::kLineHeight);
  lslAvailableClasses.Move(ui::kMargin, ui::kMargin, inner,
                           std::max(0, txtWindowTitle.Top() - 2 * ui::kMargin));
}
